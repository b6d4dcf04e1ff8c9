#pragma once
#include <vlGraphics/Compositor.h>
#include <vlGraphics/LogManager.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/System.h>
#include <vlGraphics/Texture.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vlGraphics {

/** A surface of any kind that a test sets as it likes; keeps the pictures it is given. */
class TestSurface final : public PresentSurface {
public:
    explicit TestSurface(std::uint32_t width, std::uint32_t height, Kind kind = Kind::none)
        : size{width, height}, kind_(kind) {}
    Kind getKind() const override { return kind_; }
    std::uint32_t getWindow() const override { return window; }
    Size getSize() const override { return size; }
    bool isExposed() const override { return exposed; }
    void present(vlImages::Image picture) override { pictures.push_back(std::move(picture)); }

    Size size;
    bool exposed = true;
    std::uint32_t window = 0;
    std::vector<vlImages::Image> pictures;

private:
    Kind kind_;
};

using Rgba = std::array<std::uint8_t, 4>;

/// A pixel of an 8-bit picture as red, green, blue, alpha.
Rgba pixelAt(const vlImages::Image& image, std::uint32_t x, std::uint32_t y);
/// The 8-bit value that a linear colour has in an sRGB picture.
std::uint8_t encoded(float linear);

/** The whole engine with validation on; any message of it fails the test. */
class EngineTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Draws one frame with the context's compositor.
    static void drawFrame(RenderContext& context);
    static vlImages::Image drawAndRead(RenderContext& context);
    RenderContext& makeContext(TestSurface& surface);
    /// An empty compositor that the context draws with.
    static Compositor& makeCompositor(RenderContext& context, std::string_view name = "test");
    /// One operation that renders to the back buffer and its depth buffer, after clearing both.
    static TargetOperations& addBackBuffer(Compositor& compositor, const vlMaths::Vector& color);

    /// A compiled shader with the world matrix as its instance data.
    static Shader&
    makeShader(std::string_view name, std::string_view vertex, std::string_view pixel);
    /// Positions of three floats, drawn in their order.
    static Mesh& makeMesh(std::string_view name, const std::vector<vlMaths::Vector>& positions);
    static Entity& makeEntity(const Mesh& mesh, const Shader& shader, const vlMaths::Vector& at);
    /// To be drawn where the mesh itself is.
    static void addEntity(RenderQueue& queue, const Mesh& mesh, const Shader& shader);
    /// Draws the mesh in a queue of its own, which culls nothing, after what is there.
    static RenderScenePass&
    addDraw(TargetOperations& operations, const Mesh& mesh, const Shader& shader);
    /// With one level, and numbers as they are.
    static Texture& makeTarget(std::string_view name,
                               FORMAT format,
                               RENDER_FLAG flag,
                               std::uint32_t width,
                               std::uint32_t height);

    static Handle<Texture> handleOf(const Texture& texture) {
        return TextureManager::getInstance()->handleOf(texture.getName());
    }
    static Handle<Shader> handleOf(const Shader& shader) {
        return ShaderManager::getInstance()->handleOf(shader.getName());
    }
    /// That no resource has yet.
    static std::string newName();
    /// Lines of the log that contain the text.
    std::size_t logged(std::string_view text) const;

    /// A vertex stage that places what it is given.
    static constexpr std::string_view place =
            "float4 main(float3 p : POSITION) : SV_POSITION { return float4(p, 1); }";

    std::vector<std::string> log_;

private:
    class Log final : public vlLog::Logger {
    public:
        explicit Log(std::vector<std::string>& lines) : lines_(lines) {}
        void log(vlMemory::StringView text) override { lines_.emplace_back(text); }

    private:
        std::vector<std::string>& lines_;
    };
    Log receiver_{log_};
    std::uint64_t messagesBefore_ = 0;
};

} // namespace vlGraphics
