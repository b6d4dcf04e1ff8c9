#pragma once
#include <vlGraphics/Buffer.h>
#include <vlGraphics/ConstantBuffer.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/ShaderInstanceMemorySlot.h>
#include <vlGraphics/Texture.h>

#include <memory>
#include <variant>
#include <vector>

namespace vlGraphics {

class RenderQueue;

/// What a t register reads: a texture, a buffer's elements, or what a render queue hands out (its
/// scene, to trace rays through).
using ShaderResource = std::variant<Handle<Texture>, Handle<Buffer>, Handle<RenderQueue>>;

/// A resource bound at a (slot, space) address, as HLSL's register(t<slot>, space<space>) writes
/// it.
template <class Reference> struct ShaderBinding {
    Reference resource;
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
};
using TextureBinding = ShaderBinding<ShaderResource>;
using SamplerBinding = ShaderBinding<Handle<Sampler>>;
using UavBinding = ShaderBinding<Handle<Buffer>>;

/** A program and the resources bound to it: textures and buffers to read, samplers, buffers to
 * write, constant buffers and per-instance data. Addresses that the program does not use are kept
 * and ignored; those that it uses and that nothing is bound to read the engine's defaults (texture,
 * sampler) or zeros; what is written there is lost. Adding at a taken address, or changing to one,
 * is refused: false. No program reaches addresses past `lastSlot` and `lastSpace`. */
class Shader final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "shader";
    static constexpr std::uint32_t startMaxInstances = 1024;
    static constexpr std::uint32_t lastSlot = 127;
    static constexpr std::uint32_t lastSpace = 7;

    Shader();
    ~Shader() override;

    Handle<Program> getProgramHandle() const { return program_; }
    /// Null when none is set or it is gone.
    Program* getProgram() const;
    void setProgram(Handle<Program> program);
    void setProgram(const Program* program);

    bool addTexture(ShaderResource resource, std::uint32_t slot, std::uint32_t space);
    bool setTexture(std::uint32_t index, ShaderResource resource);
    bool forgetTexture(std::uint32_t slot, std::uint32_t space);
    bool changeTextureSlot(std::uint32_t index, std::uint32_t slot);
    bool changeTextureSpace(std::uint32_t index, std::uint32_t space);
    bool changeTextureAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space);
    /// Null past the last.
    const TextureBinding* getTexturePerIndex(std::uint32_t index) const;

    bool addSampler(Handle<Sampler> sampler, std::uint32_t slot, std::uint32_t space);
    bool setSampler(std::uint32_t index, Handle<Sampler> sampler);
    bool forgetSampler(std::uint32_t slot, std::uint32_t space);
    bool changeSamplerSlot(std::uint32_t index, std::uint32_t slot);
    bool changeSamplerSpace(std::uint32_t index, std::uint32_t space);
    bool changeSamplerAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space);
    const SamplerBinding* getSamplerPerIndex(std::uint32_t index) const;

    bool addUavBuffer(Handle<Buffer> buffer, std::uint32_t slot, std::uint32_t space);
    bool setUavBuffer(std::uint32_t index, Handle<Buffer> buffer);
    bool forgetUavBuffer(std::uint32_t slot, std::uint32_t space);
    bool changeUavBufferSlot(std::uint32_t index, std::uint32_t slot);
    bool changeUavBufferSpace(std::uint32_t index, std::uint32_t space);
    bool changeUavBufferAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space);
    const UavBinding* getUavBufferPerIndex(std::uint32_t index) const;

    /// Null when the address is taken. Valid until buffers are added or deleted.
    ConstantBuffer* addConstantBuffer(std::uint32_t slot, std::uint32_t space);
    bool deleteConstantBuffer(std::uint32_t slot, std::uint32_t space);
    ConstantBuffer* getConstantBuffer(std::uint32_t slot, std::uint32_t space);
    ConstantBuffer* getConstantBufferPerIndex(std::uint32_t index);
    const ConstantBuffer* getConstantBufferPerIndex(std::uint32_t index) const;
    bool changeConstantBufferSlot(std::uint32_t index, std::uint32_t slot);
    bool changeConstantBufferSpace(std::uint32_t index, std::uint32_t space);
    bool changeConstantBufferAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space);

    /// Entities drawn by one call at most; 1 to 65536.
    std::uint32_t getMaxInstancePerBuffer() const { return maxInstances_; }
    bool setMaxInstancePerBuffer(std::uint32_t count);
    ShaderInstanceMemorySlot* addInstanceMemorySlot();
    bool deleteInstanceMemorySlot(std::uint32_t index);
    bool changeInstanceMemorySlotOrder(std::uint32_t index, std::uint32_t other);
    ShaderInstanceMemorySlot* getInstanceMemorySlot(std::uint32_t index);
    const ShaderInstanceMemorySlot* getInstanceMemorySlot(std::uint32_t index) const;
    std::uint32_t getInstanceMemorySlotCount() const {
        return static_cast<std::uint32_t>(instanceSlots_.size());
    }
    /// Bytes of one entity's data.
    std::uint32_t getInstanceStride() const;

    /// The linked program can draw entities: vertex and pixel stages.
    bool isUsableScene() const;
    /// It can draw one that covers the picture: no vertex input is of an entity's own.
    bool isUsablePost() const;
    bool isUsableCompute() const;
    bool isUsableRaytracing() const;

private:
    /// Passes on whether something was done, having marked the shader changed if so.
    bool noteIf(bool done);

    Handle<Program> program_;
    std::vector<TextureBinding> textures_;
    std::vector<SamplerBinding> samplers_;
    std::vector<UavBinding> uavBuffers_;
    std::vector<ConstantBuffer> constantBuffers_;
    std::vector<ShaderInstanceMemorySlot> instanceSlots_;
    std::uint32_t maxInstances_ = startMaxInstances;
};

class ShaderManager final : public ResourceManager<Shader>,
                            public vlCommon::MaybeSingletonClass<ShaderManager> {};

} // namespace vlGraphics
