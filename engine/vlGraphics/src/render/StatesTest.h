#pragma once
#include "render/EngineTest.h"

#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace vlGraphics {

/// A rectangle of clip space at one depth, or from a left to a right depth.
struct Rectangle {
    float left = -1, right = 1, top = 1, bottom = -1;
    float leftDepth = 0.5F, rightDepth = 0.5F;
    bool clockwise = true;
};

inline constexpr Rgba black{0, 0, 0, 255};
inline constexpr Rgba white{255, 255, 255, 255};
inline constexpr Rgba red{255, 0, 0, 255};
inline constexpr Rgba green{0, 255, 0, 255};

/** A picture of 16 by 16 pixels, cleared to black, and passes over it in a visible order, each with
 *  states of its own. */
class StatesTest : public EngineTest {
protected:
    static constexpr std::uint32_t side = 16;
    static constexpr std::string_view place =
            "float4 main(float3 p : POSITION) : SV_POSITION { return float4(p, 1); }";

    void SetUp() override {
        EngineTest::SetUp();
        if (HasFatalFailure()) return;
        context_ = &makeContext(surface_);
        operations_ = &addBackBuffer(makeCompositor(*context_), {0, 0, 0, 1});
        clear_ = static_cast<ClearTargetsPass*>(operations_->getPass(0));
    }

    static std::string newName() { return "test" + std::to_string(++names_); }
    /// A pixel stage that writes one colour.
    static std::string colored(std::string_view color) {
        return "float4 main() : SV_TARGET { return float4(" + std::string(color) + "); }";
    }
    static const Mesh& meshOf(const Rectangle& at) {
        std::vector<vlMaths::Vector> corners{{at.left, at.top, at.leftDepth},
                                             {at.right, at.top, at.rightDepth},
                                             {at.right, at.bottom, at.rightDepth},
                                             {at.left, at.top, at.leftDepth},
                                             {at.right, at.bottom, at.rightDepth},
                                             {at.left, at.bottom, at.leftDepth}};
        if (!at.clockwise) std::reverse(corners.begin(), corners.end());
        return makeMesh(newName(), corners);
    }
    /// Draws the mesh in a queue of its own after what is there.
    static RenderScenePass&
    addPass(TargetOperations& operations, const Mesh& mesh, const Shader& shader) {
        const std::string name = newName();
        RenderQueue& queue = *RenderQueueManager::getInstance()->createOrRetrieve(name);
        queue.getRenderStrategy().setFrustumCull(false);
        EntityRenderInfo info;
        info.mesh = MeshManager::getInstance()->handleOf(mesh.getName());
        info.shader = ShaderManager::getInstance()->handleOf(shader.getName());
        Entity& entity = *queue.addEntity();
        entity.setRenderInfo(info);
        entity.setParentNode(NodeManager::getInstance()->createOrRetrieve(name));
        RenderScenePass& pass = *operations.addRenderScenePass(TargetOperations::atEnd);
        pass.setRenderQueue(RenderQueueManager::getInstance()->handleOf(name));
        return pass;
    }
    RenderScenePass& addPass(const Rectangle& at, std::string_view color) {
        return addPass(*operations_, meshOf(at), makeShader(newName(), place, colored(color)));
    }

    static RasterState& rasterOf(RenderScenePass& pass) {
        RasterStateManager& manager = *RasterStateManager::getInstance();
        RasterState& state = *manager.createOrRetrieve(newName());
        pass.setRasterState(manager.handleOf(state.getName()));
        return state;
    }
    static DepthStencilState& depthOf(RenderScenePass& pass) {
        DepthStencilStateManager& manager = *DepthStencilStateManager::getInstance();
        DepthStencilState& state = *manager.createOrRetrieve(newName());
        pass.setDepthStencilState(manager.handleOf(state.getName()));
        return state;
    }
    static BlendState& blendOf(RenderScenePass& pass) {
        BlendStateManager& manager = *BlendStateManager::getInstance();
        BlendState& state = *manager.createOrRetrieve(newName());
        pass.setBlendState(manager.handleOf(state.getName()));
        return state;
    }

    static Texture& makeTarget(FORMAT format,
                               RENDER_FLAG flag,
                               std::uint32_t width = side,
                               std::uint32_t height = side) {
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve(newName());
        texture.setWidth(width);
        texture.setHeight(height);
        texture.setFormat(format);
        texture.setRenderFlag(flag);
        texture.setGammaCorrected(false);
        const auto loaded = texture.load();
        EXPECT_TRUE(loaded.has_value()) << loaded.error().message;
        return texture;
    }
    static Handle<Texture> handleOf(const Texture& texture) {
        return TextureManager::getInstance()->handleOf(texture.getName());
    }

    Rgba drawnAt(std::uint32_t x, std::uint32_t y) { return pixelAt(drawAndRead(*context_), x, y); }
    /// Lines of the log that contain the text.
    std::size_t logged(std::string_view text) const {
        return static_cast<std::size_t>(
                std::count_if(log_.begin(), log_.end(), [text](const std::string& line) {
                    return line.find(text) != std::string::npos;
                }));
    }

    TestSurface surface_{side, side};
    RenderContext* context_ = nullptr;
    TargetOperations* operations_ = nullptr;
    ClearTargetsPass* clear_ = nullptr;

private:
    static inline int names_ = 0;
};

} // namespace vlGraphics
