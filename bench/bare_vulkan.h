#pragma once
#include <vlMaths/Matrix.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace bench {

struct BareMesh {
    std::span<const std::byte> vertices;
    std::span<const std::uint32_t> indices; ///< empty: the vertices in their order
    std::uint32_t firstInstance = 0;
    std::uint32_t instanceCount = 0;
};

/// Of the vertices.
struct BareAttribute {
    std::uint32_t location = 0;
    std::uint32_t floats = 0; ///< two or three
    std::uint32_t offset = 0; ///< bytes
};

/// Of set 0.
struct BareBinding {
    enum class Kind : std::uint8_t { constants, texture, sampler };
    std::uint32_t number = 0;
    Kind kind = Kind::constants;
};

/// The spans are read when it is taken, not later.
struct BareProgram {
    std::span<const std::uint32_t> vertexSpirv; ///< WORLD_MATRIX at locations 8 to 11
    std::span<const std::uint32_t> pixelSpirv;
    std::vector<BareBinding> bindings;
};

/** All that the bare loop draws. The spans are read while the loop is made, not later. */
struct BareScene {
    std::string_view deviceName; ///< begins with the name of the device to draw on
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t vertexStride = 0; ///< bytes
    std::vector<BareAttribute> attributes;
    BareProgram program;
    std::vector<std::span<const std::byte>> constants; ///< by binding; zeros behind
    std::span<const std::byte> texels;                 ///< RGBA8 sRGB, a square; none: one black
    std::array<float, 4> clearColor{};
    std::vector<BareMesh> meshes;
    std::span<const vlMaths::Matrix> instances;
};

/** The least that draws a scene of instanced meshes: one pipeline, one buffer, one draw a mesh, two
 * frames in flight, targets BGRA8 sRGB and D32, an instance and a device of its own; one texture
 * for all, and samplers that filter and wrap. What an engine adds to this is what the engine costs.
 * Ends the program with a line where Vulkan fails. One thread. */
class BareVulkan {
public:
    static std::unique_ptr<BareVulkan> create(const BareScene& scene);
    virtual ~BareVulkan() = default;
    BareVulkan(const BareVulkan&) = delete;
    BareVulkan& operator=(const BareVulkan&) = delete;

    /// Frames are drawn with it from now on. Waits for those before, whose program goes.
    virtual void setProgram(const BareProgram& program) = 0;
    /// Waits for the frame before the last one; what follows is recording.
    virtual void beginFrame() = 0;
    /// Where this frame's own instances are written; without it the frame draws the scene's.
    virtual std::span<vlMaths::Matrix> instances() = 0;
    /// Records and submits.
    virtual void endFrame() = 0;
    virtual void waitIdle() = 0;
    /// The last picture, BGRA8, rows tightly packed.
    virtual std::vector<std::byte> readBack() = 0;

protected:
    BareVulkan() = default;
};

} // namespace bench
