#include "programs/BindingModel.h"
#include "programs/SlotLayout.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Shader.h>

#include <algorithm>
#include <utility>

namespace vlGraphics {

namespace {

constexpr std::uint32_t maxInstancesLimit = 65536;

static_assert(Shader::lastSlot + 1 == BindingModel::registersPerClass);
static_assert(Shader::lastSpace + 1 == BindingModel::spaceCount);

template <class R>
bool addBinding(std::vector<ShaderBinding<R>>& bindings, const ShaderBinding<R>& added) {
    const bool taken = std::any_of(bindings.begin(), bindings.end(), [&](const auto& binding) {
        return binding.slot == added.slot && binding.space == added.space;
    });
    if (!taken) bindings.push_back(added);
    return !taken;
}

template <class R>
bool forgetBinding(std::vector<ShaderBinding<R>>& bindings,
                   std::uint32_t slot,
                   std::uint32_t space) {
    return std::erase_if(bindings, [&](const auto& binding) {
               return binding.slot == slot && binding.space == space;
           }) > 0;
}

template <class R>
bool setResource(std::vector<ShaderBinding<R>>& bindings, std::uint32_t index, R resource) {
    if (index >= bindings.size()) return false;
    bindings[index].resource = resource;
    return true;
}

template <class R>
bool moveBinding(std::vector<ShaderBinding<R>>& bindings,
                 std::uint32_t index,
                 std::uint32_t slot,
                 std::uint32_t space) {
    for (std::size_t other = 0; other < bindings.size(); ++other) {
        if (other == index) continue;
        if (bindings[other].slot == slot && bindings[other].space == space) return false;
    }
    bindings[index].slot = slot;
    bindings[index].space = space;
    return true;
}

template <class R>
bool changeSlot(std::vector<ShaderBinding<R>>& bindings, std::uint32_t index, std::uint32_t slot) {
    return index < bindings.size() && moveBinding(bindings, index, slot, bindings[index].space);
}

template <class R>
bool changeSpace(std::vector<ShaderBinding<R>>& bindings,
                 std::uint32_t index,
                 std::uint32_t space) {
    return index < bindings.size() && moveBinding(bindings, index, bindings[index].slot, space);
}

template <class R>
const ShaderBinding<R>* bindingAt(const std::vector<ShaderBinding<R>>& bindings,
                                  std::uint32_t index) {
    return index < bindings.size() ? &bindings[index] : nullptr;
}

template <class Buffers>
auto findBuffer(Buffers& buffers, std::uint32_t slot, std::uint32_t space) {
    return std::find_if(buffers.begin(), buffers.end(), [&](const ConstantBuffer& buffer) {
        return buffer.getSlot() == slot && buffer.getSpace() == space;
    });
}

/// The type may have changed since the result in use was compiled: the stage tells.
bool isUsableAs(const Program* program, PROGRAM_TYPE type, SHADER_TYPE stage) {
    return program != nullptr && program->getType() == type && program->isUsable() &&
           program->gpu()->has(stage);
}

} // namespace

Shader::Shader() = default;
Shader::~Shader() = default;

Program* Shader::getProgram() const {
    const ProgramManager* programs = ProgramManager::getInstance();
    return programs == nullptr ? nullptr : programs->resolve(program_);
}

void Shader::setProgram(Handle<Program> program) {
    program_ = program;
    markChanged();
}

void Shader::setProgram(const Program* program) {
    ProgramManager* programs = ProgramManager::getInstance();
    setProgram(programs == nullptr ? Handle<Program>{} : programs->handleOf(program));
}

bool Shader::addTexture(ShaderResource resource, std::uint32_t slot, std::uint32_t space) {
    return noteIf(addBinding(textures_, {resource, slot, space}));
}

bool Shader::setTexture(std::uint32_t index, ShaderResource resource) {
    return noteIf(setResource(textures_, index, resource));
}

bool Shader::forgetTexture(std::uint32_t slot, std::uint32_t space) {
    return noteIf(forgetBinding(textures_, slot, space));
}

bool Shader::changeTextureSlot(std::uint32_t index, std::uint32_t slot) {
    return noteIf(changeSlot(textures_, index, slot));
}

bool Shader::changeTextureSpace(std::uint32_t index, std::uint32_t space) {
    return noteIf(changeSpace(textures_, index, space));
}

bool Shader::changeTextureAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space) {
    return noteIf(index < textures_.size() && moveBinding(textures_, index, slot, space));
}

const TextureBinding* Shader::getTexturePerIndex(std::uint32_t index) const {
    return bindingAt(textures_, index);
}

bool Shader::addSampler(Handle<Sampler> sampler, std::uint32_t slot, std::uint32_t space) {
    return noteIf(addBinding(samplers_, {sampler, slot, space}));
}

bool Shader::setSampler(std::uint32_t index, Handle<Sampler> sampler) {
    return noteIf(setResource(samplers_, index, sampler));
}

bool Shader::forgetSampler(std::uint32_t slot, std::uint32_t space) {
    return noteIf(forgetBinding(samplers_, slot, space));
}

bool Shader::changeSamplerSlot(std::uint32_t index, std::uint32_t slot) {
    return noteIf(changeSlot(samplers_, index, slot));
}

bool Shader::changeSamplerSpace(std::uint32_t index, std::uint32_t space) {
    return noteIf(changeSpace(samplers_, index, space));
}

bool Shader::changeSamplerAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space) {
    return noteIf(index < samplers_.size() && moveBinding(samplers_, index, slot, space));
}

const SamplerBinding* Shader::getSamplerPerIndex(std::uint32_t index) const {
    return bindingAt(samplers_, index);
}

bool Shader::addUavBuffer(Handle<Buffer> buffer, std::uint32_t slot, std::uint32_t space) {
    return noteIf(addBinding(uavBuffers_, {buffer, slot, space}));
}

bool Shader::setUavBuffer(std::uint32_t index, Handle<Buffer> buffer) {
    return noteIf(setResource(uavBuffers_, index, buffer));
}

bool Shader::forgetUavBuffer(std::uint32_t slot, std::uint32_t space) {
    return noteIf(forgetBinding(uavBuffers_, slot, space));
}

bool Shader::changeUavBufferSlot(std::uint32_t index, std::uint32_t slot) {
    return noteIf(changeSlot(uavBuffers_, index, slot));
}

bool Shader::changeUavBufferSpace(std::uint32_t index, std::uint32_t space) {
    return noteIf(changeSpace(uavBuffers_, index, space));
}

bool Shader::changeUavBufferAddress(std::uint32_t index, std::uint32_t slot, std::uint32_t space) {
    return noteIf(index < uavBuffers_.size() && moveBinding(uavBuffers_, index, slot, space));
}

const UavBinding* Shader::getUavBufferPerIndex(std::uint32_t index) const {
    return bindingAt(uavBuffers_, index);
}

ConstantBuffer* Shader::addConstantBuffer(std::uint32_t slot, std::uint32_t space) {
    if (findBuffer(constantBuffers_, slot, space) != constantBuffers_.end()) return nullptr;
    markChanged();
    return &constantBuffers_.emplace_back(slot, space);
}

bool Shader::deleteConstantBuffer(std::uint32_t slot, std::uint32_t space) {
    const auto found = findBuffer(constantBuffers_, slot, space);
    if (found == constantBuffers_.end()) return false;
    constantBuffers_.erase(found);
    return noteIf(true);
}

ConstantBuffer* Shader::getConstantBuffer(std::uint32_t slot, std::uint32_t space) {
    const auto found = findBuffer(constantBuffers_, slot, space);
    if (found == constantBuffers_.end()) return nullptr;
    markChanged();
    return &*found;
}

ConstantBuffer* Shader::getConstantBufferPerIndex(std::uint32_t index) {
    if (index >= constantBuffers_.size()) return nullptr;
    markChanged();
    return &constantBuffers_[index];
}

const ConstantBuffer* Shader::getConstantBufferPerIndex(std::uint32_t index) const {
    return index < constantBuffers_.size() ? &constantBuffers_[index] : nullptr;
}

bool Shader::changeConstantBufferSlot(std::uint32_t index, std::uint32_t slot) {
    return index < constantBuffers_.size() &&
           changeConstantBufferAddress(index, slot, constantBuffers_[index].space_);
}

bool Shader::changeConstantBufferSpace(std::uint32_t index, std::uint32_t space) {
    return index < constantBuffers_.size() &&
           changeConstantBufferAddress(index, constantBuffers_[index].slot_, space);
}

bool Shader::changeConstantBufferAddress(std::uint32_t index,
                                         std::uint32_t slot,
                                         std::uint32_t space) {
    if (index >= constantBuffers_.size()) return false;
    ConstantBuffer& buffer = constantBuffers_[index];
    const auto bearer = findBuffer(constantBuffers_, slot, space);
    if (bearer != constantBuffers_.end() && &*bearer != &buffer) return false;
    buffer.slot_ = slot;
    buffer.space_ = space;
    return noteIf(true);
}

bool Shader::setMaxInstancePerBuffer(std::uint32_t count) {
    if (count == 0 || count > maxInstancesLimit) return false;
    maxInstances_ = count;
    return noteIf(true);
}

ShaderInstanceMemorySlot* Shader::addInstanceMemorySlot() {
    markChanged();
    return &instanceSlots_.emplace_back();
}

bool Shader::deleteInstanceMemorySlot(std::uint32_t index) {
    if (index >= instanceSlots_.size()) return false;
    instanceSlots_.erase(instanceSlots_.begin() + index);
    return noteIf(true);
}

bool Shader::changeInstanceMemorySlotOrder(std::uint32_t index, std::uint32_t other) {
    if (index >= instanceSlots_.size() || other >= instanceSlots_.size()) return false;
    if (index != other) std::swap(instanceSlots_[index], instanceSlots_[other]);
    return noteIf(true);
}

ShaderInstanceMemorySlot* Shader::getInstanceMemorySlot(std::uint32_t index) {
    if (index >= instanceSlots_.size()) return nullptr;
    markChanged();
    return &instanceSlots_[index];
}

const ShaderInstanceMemorySlot* Shader::getInstanceMemorySlot(std::uint32_t index) const {
    return index < instanceSlots_.size() ? &instanceSlots_[index] : nullptr;
}

std::uint32_t Shader::getInstanceStride() const {
    std::uint32_t bytes = 0;
    for (const ShaderInstanceMemorySlot& slot : instanceSlots_)
        bytes += slotStride(slot.getByteSize());
    return bytes;
}

bool Shader::isUsableScene() const {
    return isUsableAs(getProgram(), PROGRAM_TYPE::PIPELINE, SHADER_TYPE::VERTEX);
}

bool Shader::isUsablePost() const {
    if (!isUsableScene()) return false;
    const auto& inputs = getProgram()->getReflection().inputs;
    return std::none_of(inputs.begin(), inputs.end(), [](const ReflectedInput& input) {
        return input.semantic == "WORLD_MATRIX" || input.semantic == "PICKINGID";
    });
}

bool Shader::isUsableCompute() const {
    return isUsableAs(getProgram(), PROGRAM_TYPE::COMPUTE, SHADER_TYPE::COMPUTE);
}

bool Shader::isUsableRaytracing() const {
    return isUsableAs(getProgram(), PROGRAM_TYPE::RAYTRACING, SHADER_TYPE::RAYTRACING);
}

bool Shader::noteIf(bool done) {
    if (done) markChanged();
    return done;
}

} // namespace vlGraphics
