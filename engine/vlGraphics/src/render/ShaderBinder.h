#pragma once
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Shader.h>

#include <array>
#include <unordered_map>
#include <vector>

namespace vlGraphics::vulkan {
class GpuImage;
}

namespace vlGraphics::render {

class PassRecorder;

/// A shader as the draws of one pass use it.
struct BoundShader {
    const Program::Gpu* program = nullptr; ///< null: it cannot be drawn with
    std::array<VkDescriptorSet, 8> sets{};
    std::uint32_t setCount = 0;
    std::uint32_t instanceLayout = 0;
    std::uint32_t instanceStride = 0;
    bool onlyWorldMatrix = false; ///< an entity's data is just its matrix
};

/** Makes the descriptor sets of the shaders of a pass: once for each, with the pass's values in
 *  their constant buffers. Graphics thread only. */
class ShaderBinder {
public:
    /// The pass's inputs stay valid until the next begin().
    void begin(const PassInputs& inputs);
    /// Must come before the pass's rendering begins: it finds out which textures are to be made
    /// readable. The reference is valid until the next begin().
    const BoundShader& bind(const Shader& shader, PassRecorder& recorder);
    /// Textures that are read but not readable yet; none of them is a target of the pass.
    const std::vector<vulkan::GpuImage*>& unreadable() const { return unreadable_; }

private:
    struct Writer;
    BoundShader make(const Shader& shader, PassRecorder& recorder);
    bool writeSets(const Shader& shader, PassRecorder& recorder, BoundShader& bound);

    PassInputs inputs_;
    std::unordered_map<const Shader*, BoundShader> bound_;
    std::vector<vulkan::GpuImage*> unreadable_;
};

} // namespace vlGraphics::render
