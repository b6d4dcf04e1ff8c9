#pragma once
#include "render/AccessOrder.h"
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

/// A shader as the draws, or the dispatch, of one pass use it.
struct BoundShader {
    const Program::Gpu* program = nullptr; ///< null: it cannot be used
    std::array<VkDescriptorSet, 8> sets{};
    std::uint32_t setCount = 0;
    std::uint32_t instanceLayout = 0;
    std::uint32_t instanceStride = 0;
    bool onlyWorldMatrix = false; ///< an entity's data is just its matrix
    std::vector<ResourceAccess> access;
};

/** Makes the descriptor sets of the shaders of a pass: once for each, with the pass's values in
 *  their constant buffers. What is not bound, or does not fit what the program wants, is replaced
 * by what stands in for it. Graphics thread only. */
class ShaderBinder {
public:
    enum class Use : std::uint8_t { draw, dispatch };

    /// The pass's inputs stay valid until the next begin().
    void begin(const PassInputs& inputs, Use use);
    /// Must come before the pass's rendering begins: it finds out what the pass reads and writes.
    /// The reference is valid until the next begin().
    const BoundShader& bind(const Shader& shader, PassRecorder& recorder);
    /// Records what has to come before the commands of the pass, ending a rendering where it must:
    /// textures become readable, earlier writes to buffers visible.
    void settle(PassRecorder& recorder);

private:
    friend class DescriptorWriter;
    BoundShader make(const Shader& shader, PassRecorder& recorder);
    bool writeSets(const Shader& shader, PassRecorder& recorder, BoundShader& bound);

    PassInputs inputs_;
    Use use_ = Use::draw;
    std::unordered_map<const Shader*, BoundShader> bound_;
    // What the pass uses.
    std::vector<vulkan::GpuImage*> read_;    ///< those that are not readable yet
    std::vector<vulkan::GpuImage*> written_; ///< those that are not writable yet
    std::vector<ResourceAccess> access_;     ///< of all its shaders
    bool usesScratch_ = false;
};

} // namespace vlGraphics::render
