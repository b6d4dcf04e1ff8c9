#include "editors/shader/ShaderSlotEdits.h"

#include "interfaces/ReservedNames.h"

#include <fmt/format.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlGraphics::Shader;

/// Whose index is one more or less; that before the first is past the last.
constexpr std::uint32_t besides(std::uint32_t index, int by) {
    return index + static_cast<std::uint32_t>(by);
}

constexpr std::uint32_t startModuloMs = 1000;
constexpr PassSlotValue identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

template <class Buffers>
auto findBuffer(Buffers& buffers, std::uint32_t slot, std::uint32_t space) {
    const auto found = std::ranges::find_if(buffers, [&](const auto& buffer) {
        return buffer.slot == slot && buffer.space == space;
    });
    return found == buffers.end() ? nullptr : &*found;
}

/// For reading: for changing the shader would count as changed.
const vlGraphics::ConstantBuffer*
findBuffer(const Shader& shader, std::uint32_t slot, std::uint32_t space) {
    for (std::uint32_t i = 0; const auto* buffer = shader.getConstantBufferPerIndex(i); ++i)
        if (buffer->getSlot() == slot && buffer->getSpace() == space) return buffer;
    return nullptr;
}

std::string noBufferText(std::uint32_t slot, std::uint32_t space) {
    return "there is no constant buffer at " + addressText(ShaderBuffers::letter, slot, space);
}

} // namespace

vlCommon::Result<> ChangeShaderAddConstantBuffer::applyTo(Shader& shader) const {
    const std::uint32_t slot = lowestFreeSlot(shader, ShaderBuffers::at);
    if (auto good = checkAddress(shader, ShaderBuffers::letter, slot, 0); !good) return good;
    shader.addConstantBuffer(slot, 0);
    return {};
}

void ChangeShaderConstantBufferBindings::applyTo(ShaderUiData& shown, const ShaderUiData&) const {
    if (index >= shown.constantBuffers.size()) return;
    shown.constantBuffers[index].slot = newSlot;
    shown.constantBuffers[index].space = newSpace;
}

const ShaderPassSlotUiData* PassSlotPlace::find(const ShaderUiData& record) const {
    const auto* buffer = findBuffer(record.constantBuffers, slot, space);
    return buffer != nullptr && slotIndex < buffer->slots.size() ? &buffer->slots[slotIndex]
                                                                 : nullptr;
}

ShaderPassSlotUiData* PassSlotPlace::find(ShaderUiData& record) const {
    std::vector<ShaderPassSlotUiData>* slots = findSlots(record);
    return slots != nullptr && slotIndex < slots->size() ? &(*slots)[slotIndex] : nullptr;
}

std::vector<ShaderPassSlotUiData>* PassSlotPlace::findSlots(ShaderUiData& record) const {
    ShaderConstantBufferUiData* buffer = findBuffer(record.constantBuffers, slot, space);
    return buffer == nullptr ? nullptr : &buffer->slots;
}

vlCommon::Result<vlGraphics::ShaderPassMemorySlot*> PassSlotPlace::find(Shader& shader) const {
    const vlGraphics::ConstantBuffer* buffer = findBuffer(std::as_const(shader), slot, space);
    if (buffer == nullptr) return refuseShader(shader, noBufferText(slot, space));
    if (slotIndex >= buffer->getPassMemorySlotCount()) {
        return refuseShader(shader,
                            fmt::format("the constant buffer at {} has no slot {}",
                                        addressText(ShaderBuffers::letter, slot, space),
                                        slotIndex));
    }
    return shader.getConstantBuffer(slot, space)->getPassMemorySlot(slotIndex);
}

void PassSlotPlace::takeFresh(ShaderUiData& shown, const ShaderUiData& fresh) const {
    ShaderPassSlotUiData* data = find(shown);
    const ShaderPassSlotUiData* read = find(fresh);
    if (data != nullptr && read != nullptr) *data = *read;
}

vlCommon::Result<> ChangeShaderAddPassSlot::applyTo(Shader& shader) const {
    vlGraphics::ConstantBuffer* buffer = shader.getConstantBuffer(slot, space);
    if (buffer == nullptr) return refuseShader(shader, noBufferText(slot, space));
    buffer->addPassMemorySlot()->setFromVector(0, 0, 0, 1);
    return {};
}

void ChangeShaderAddPassSlot::applyTo(ShaderUiData& shown, const ShaderUiData&) const {
    ShaderConstantBufferUiData* buffer = findBuffer(shown.constantBuffers, slot, space);
    if (buffer != nullptr) buffer->slots.emplace_back();
}

vlCommon::Result<> ChangeShaderDelPassSlot::applyTo(Shader& shader) const {
    if (const auto found = find(shader); !found) return vlCommon::fail(found.error().message);
    shader.getConstantBuffer(slot, space)->deletePassMemorySlot(slotIndex);
    return {};
}

void ChangeShaderDelPassSlot::applyTo(ShaderUiData& shown, const ShaderUiData&) const {
    if (find(shown) == nullptr) return;
    std::vector<ShaderPassSlotUiData>& slots = *findSlots(shown);
    slots.erase(slots.begin() + slotIndex);
}

template <int by> vlCommon::Result<> MovePassSlot<by>::applyTo(Shader& shader) const {
    if (const auto found = find(shader); !found) return vlCommon::fail(found.error().message);
    // The last one has none behind it, which the engine says.
    if (by > 0 || slotIndex > 0)
        shader.getConstantBuffer(slot, space)
                ->changePassMemorySlotOrder(slotIndex, besides(slotIndex, by));
    return {};
}

template <int by> void MovePassSlot<by>::applyTo(ShaderUiData& shown, const ShaderUiData&) const {
    if (find(shown) == nullptr || (by < 0 && slotIndex == 0)) return;
    std::vector<ShaderPassSlotUiData>& slots = *findSlots(shown);
    const std::uint32_t other = besides(slotIndex, by);
    if (other < slots.size()) std::swap(slots[slotIndex], slots[other]);
}

template struct MovePassSlot<-1>;
template struct MovePassSlot<1>;

vlCommon::Result<> ChangeShaderPassSlotType::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    if (PassSlotTypes::become(value, **found)) return {};
    return refuseShader(shader, fmt::format("there is no slot type {}", value));
}

void ChangeShaderPassSlotType::readFrom(const ShaderUiData& record) {
    if (const ShaderPassSlotUiData* data = find(record)) value = data->type;
}

void ChangeShaderPassSlotType::applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const {
    ShaderPassSlotUiData* data = find(shown);
    const ShaderPassSlotUiData* read = find(fresh);
    if (data == nullptr || read == nullptr) return;
    data->type = value;
    data->engine = read->engine;
    constexpr std::uint32_t listedAsTime = 14;
    if (value == PassSlotTypes::vector)
        std::ranges::copy(std::array{0.0F, 0.0F, 0.0F, 1.0F}, data->value.begin());
    else if (value == PassSlotTypes::matrix)
        data->value = identity;
    else if (value == listedAsTime)
        putModulo(startModuloMs, data->value);
    else
        data->resourceName.clear();
}

vlCommon::Result<> ChangeShaderUpdateVectorSlot::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    (*found)->setFromVector(value[0], value[1], value[2], value[3]);
    return {};
}

void ChangeShaderUpdateVectorSlot::readFrom(const ShaderUiData& record) {
    const ShaderPassSlotUiData* data = find(record);
    if (data != nullptr) std::copy_n(data->value.begin(), value.size(), value.begin());
}

vlCommon::Result<> ChangeShaderUpdateMatrixSlot::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    vlMaths::Matrix matrix;
    matrix.elements = value;
    (*found)->setFromMatrix(matrix);
    return {};
}

void ChangeShaderUpdateMatrixSlot::readFrom(const ShaderUiData& record) {
    if (const ShaderPassSlotUiData* data = find(record)) value = data->value;
}

vlCommon::Result<> ChangeShaderUpdateCameraSlot::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    if (!PassSlotTypes::isCamera(PassSlotTypes::codeOf(**found))) return {};
    if (value == ReservedNames::contextCamera) {
        PassSlotTypes::setCamera(**found, {});
        return {};
    }
    const auto camera = cameraNamed(value);
    if (!camera) return vlCommon::fail(camera.error().message);
    PassSlotTypes::setCamera(**found, *camera);
    return {};
}

void ChangeShaderUpdateCameraSlot::readFrom(const ShaderUiData& record) {
    if (const ShaderPassSlotUiData* data = find(record)) value = data->resourceName;
}

void ChangeShaderUpdateCameraSlot::applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const {
    takeFresh(shown, fresh);
    if (ShaderPassSlotUiData* data = find(shown)) data->resourceName = value;
}

vlCommon::Result<> ChangeShaderUpdateTextureSlot::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    vlGraphics::TextureManager& textures = *vlGraphics::TextureManager::getInstance();
    if (textures.get(value) == nullptr)
        return refuseShader(shader, fmt::format("there is no texture '{}'", value));
    PassSlotTypes::setTexture(**found, textures.handleOf(value));
    return {};
}

void ChangeShaderUpdateTextureSlot::readFrom(const ShaderUiData& record) {
    if (const ShaderPassSlotUiData* data = find(record)) value = data->resourceName;
}

void ChangeShaderUpdateTextureSlot::applyTo(ShaderUiData& shown, const ShaderUiData& fresh) const {
    takeFresh(shown, fresh);
    if (ShaderPassSlotUiData* data = find(shown)) data->resourceName = value;
}

vlCommon::Result<> ChangeShaderUpdateTimeModSlot::applyTo(Shader& shader) const {
    const auto found = find(shader);
    if (!found) return vlCommon::fail(found.error().message);
    (*found)->setAsTime(value);
    return {};
}

void ChangeShaderUpdateTimeModSlot::readFrom(const ShaderUiData& record) {
    if (const ShaderPassSlotUiData* data = find(record)) value = moduloIn(data->value);
}

vlCommon::Result<> ChangeShaderMaxInstanceSlot::applyTo(Shader& shader) const {
    if (shader.setMaxInstancePerBuffer(value)) return {};
    return refuseShader(shader,
                        fmt::format("{} instances per buffer are outside 1 to 65536", value));
}

vlCommon::Result<> ChangeShaderProgram::applyTo(Shader& shader) const {
    const vlGraphics::Program* program = vlGraphics::ProgramManager::getInstance()->get(value);
    if (program == nullptr)
        return refuseShader(shader, fmt::format("there is no shader program '{}'", value));
    shader.setProgram(program);
    return {};
}

} // namespace vlEditor
