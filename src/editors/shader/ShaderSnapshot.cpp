#include "editors/shader/ShaderSnapshot.h"

#include "editors/shader/PassSlotTypes.h"
#include "editors/shader/ShaderWanted.h"

#include <vlGraphics/RenderQueue.h>

#include <algorithm>
#include <array>

namespace vlEditor::ShaderSnapshot {
namespace {

using vlGraphics::ReflectedResource;
using vlGraphics::RESOURCE_CLASS;
using vlGraphics::RESOURCE_SHAPE;
using vlGraphics::Shader;

std::string nameOf(vlGraphics::Handle<vlGraphics::Texture> texture) {
    return std::string(vlGraphics::TextureManager::getInstance()->nameOf(texture));
}
std::string nameOf(vlGraphics::Handle<vlGraphics::Buffer> buffer) {
    return std::string(vlGraphics::BufferManager::getInstance()->nameOf(buffer));
}
std::string nameOf(vlGraphics::Handle<vlGraphics::RenderQueue> queue) {
    return std::string(vlGraphics::RenderQueueManager::getInstance()->nameOf(queue));
}
std::string nameOf(vlGraphics::Handle<vlGraphics::Sampler> sampler) {
    return std::string(vlGraphics::SamplerManager::getInstance()->nameOf(sampler));
}
std::string nameOf(const vlGraphics::ShaderResource& resource) {
    return std::visit([](auto handle) { return nameOf(handle); }, resource);
}

template <class Binding>
std::vector<ShaderResourceBindingUiData>
bindings(const Shader& shader, const Binding* (Shader::*at)(std::uint32_t) const) {
    std::vector<ShaderResourceBindingUiData> all;
    for (std::uint32_t i = 0; const Binding* binding = (shader.*at)(i); ++i)
        all.push_back({nameOf(binding->resource), binding->space, binding->slot});
    return all;
}

ShaderPassSlotUiData snapshotOf(const vlGraphics::ShaderPassMemorySlot& slot) {
    using Type = vlGraphics::PASS_SLOT_TYPE;
    ShaderPassSlotUiData data;
    data.type = PassSlotTypes::codeOf(slot);
    ShaderPassSlotState& state = data.engine;
    if (slot.getType() == Type::VECTOR) {
        const vlMaths::Vector vector = slot.getDataAsVector();
        state.value = {vector.x, vector.y, vector.z, vector.w};
    }
    if (slot.getType() == Type::MATRIX) state.value = slot.getDataAsMatrix().elements;
    if (slot.getType() == Type::TIME) putModulo(slot.getTimeModuloMs(), state.value);
    if (PassSlotTypes::isCamera(data.type))
        state.resourceName = vlGraphics::CameraManager::getInstance()->nameOf(slot.getCamera());
    if (PassSlotTypes::isTexture(data.type)) state.resourceName = nameOf(slot.getTexture());
    data.value = state.value;
    data.resourceName = state.resourceName;
    return data;
}

std::string shapeText(const ReflectedResource& resource) {
    static constexpr std::array<std::pair<RESOURCE_SHAPE, std::string_view>, 14> names{
            {{RESOURCE_SHAPE::CONSTANT_BUFFER, "cbuffer"},
             {RESOURCE_SHAPE::SAMPLER, "SamplerState"},
             {RESOURCE_SHAPE::STRUCTURED_BUFFER, "StructuredBuffer"},
             {RESOURCE_SHAPE::BYTE_ADDRESS_BUFFER, "ByteAddressBuffer"},
             {RESOURCE_SHAPE::TEXEL_BUFFER, "Buffer"},
             {RESOURCE_SHAPE::TEXTURE_1D, "Texture1D"},
             {RESOURCE_SHAPE::TEXTURE_1D_ARRAY, "Texture1DArray"},
             {RESOURCE_SHAPE::TEXTURE_2D, "Texture2D"},
             {RESOURCE_SHAPE::TEXTURE_2D_ARRAY, "Texture2DArray"},
             {RESOURCE_SHAPE::TEXTURE_2D_MS, "Texture2DMS"},
             {RESOURCE_SHAPE::TEXTURE_2D_MS_ARRAY, "Texture2DMSArray"},
             {RESOURCE_SHAPE::TEXTURE_3D, "Texture3D"},
             {RESOURCE_SHAPE::TEXTURE_CUBE, "TextureCube"},
             {RESOURCE_SHAPE::TEXTURE_CUBE_ARRAY, "TextureCubeArray"}}};
    const auto found =
            std::ranges::find(names, resource.shape, [](const auto& row) { return row.first; });
    // What the compiler cannot tell is called as its register is.
    static constexpr std::array<std::string_view, 4> byClass{
            "cbuffer", "Texture", "SamplerState", "Buffer"};
    std::string text(found != names.end()
                             ? found->second
                             : byClass[static_cast<std::size_t>(resource.resourceClass)]);
    if (found == names.end() && resource.isBuffer) text = "StructuredBuffer";
    if (resource.resourceClass == RESOURCE_CLASS::UAV) text.insert(0, "RW");
    if (resource.isComparison && resource.resourceClass == RESOURCE_CLASS::SAMPLER)
        text = "SamplerComparisonState";
    if (resource.arrayCount == 0) return text + "[]";
    return resource.arrayCount == 1 ? text : text + "[" + std::to_string(resource.arrayCount) + "]";
}

} // namespace

std::string programName(const Shader& shader) {
    return std::string(
            vlGraphics::ProgramManager::getInstance()->nameOf(shader.getProgramHandle()));
}

std::uint32_t programType(const Shader& shader) {
    const vlGraphics::Program* program = shader.getProgram();
    return program == nullptr ? 0 : static_cast<std::uint32_t>(program->getType());
}

std::vector<ShaderResourceBindingUiData> textures(const Shader& shader) {
    return bindings(shader, &Shader::getTexturePerIndex);
}

std::vector<ShaderResourceBindingUiData> samplers(const Shader& shader) {
    return bindings(shader, &Shader::getSamplerPerIndex);
}

std::vector<ShaderResourceBindingUiData> uavs(const Shader& shader) {
    return bindings(shader, &Shader::getUavBufferPerIndex);
}

std::vector<ShaderConstantBufferUiData> constantBuffers(const Shader& shader) {
    std::vector<ShaderConstantBufferUiData> all;
    for (std::uint32_t i = 0; const auto* buffer = shader.getConstantBufferPerIndex(i); ++i) {
        ShaderConstantBufferUiData& data = all.emplace_back();
        data.slot = buffer->getSlot();
        data.space = buffer->getSpace();
        for (std::uint32_t s = 0; const auto* slot = buffer->getPassMemorySlotReadOnly(s); ++s)
            data.slots.push_back(snapshotOf(*slot));
    }
    return all;
}

std::vector<std::uint32_t> instanceSlots(const Shader& shader) {
    std::vector<std::uint32_t> all;
    for (std::uint32_t i = 0; const auto* slot = shader.getInstanceMemorySlot(i); ++i)
        all.push_back(static_cast<std::uint32_t>(slot->getType()));
    return all;
}

bool isReflected(const Shader& shader) {
    const vlGraphics::Program* program = shader.getProgram();
    return program != nullptr && program->isUsable();
}

std::vector<ShaderWantedUiData> wanted(const Shader& shader) {
    std::vector<ShaderWantedUiData> all;
    if (!isReflected(shader)) return all;
    for (const ReflectedResource& resource : shader.getProgram()->getReflection().resources) {
        const char letter = "btsu"[static_cast<std::uint32_t>(resource.resourceClass)];
        all.push_back({.letter = std::string(1, letter),
                       .name = resource.name,
                       .slot = resource.slot,
                       .space = resource.space,
                       .count = resource.arrayCount,
                       .shape = shapeText(resource),
                       .needsBuffer = resource.isBuffer || resource.isTexelBuffer ||
                                      resource.resourceClass == RESOURCE_CLASS::UAV,
                       .unboundSlots = unboundSlots(shader, resource)});
    }
    return all;
}

} // namespace vlEditor::ShaderSnapshot
