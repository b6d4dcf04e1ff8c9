#include "vulkan/ProgramGpu.h"

#include "programs/BindingModel.h"
#include "programs/CompileRequest.h"
#include "render/Pipelines.h"
#include "vulkan/Device.h"
#include "vulkan/PointSize.h"
#include "vulkan/SecondSource.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace vlGraphics {

using vulkan::Device;

namespace {

std::uint64_t nextSerial() {
    static std::uint64_t serial = 0;
    return ++serial;
}

VkDescriptorType descriptorType(const ReflectedResource& resource) {
    switch (resource.resourceClass) {
    case RESOURCE_CLASS::CONSTANT_BUFFER:
        return VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER;
    case RESOURCE_CLASS::TEXTURE:
        return resource.isBuffer ? VK_DESCRIPTOR_TYPE_STORAGE_BUFFER
                                 : VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE;
    case RESOURCE_CLASS::SAMPLER:
        return VK_DESCRIPTOR_TYPE_SAMPLER;
    case RESOURCE_CLASS::UAV:
        break;
    }
    return resource.isBuffer ? VK_DESCRIPTOR_TYPE_STORAGE_BUFFER : VK_DESCRIPTOR_TYPE_STORAGE_IMAGE;
}

VkShaderStageFlags stagesOf(std::uint32_t mask) {
    VkShaderStageFlags stages = 0;
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
        if ((mask >> stage & 1U) != 0)
            stages |= VkShaderStageFlags{vulkan::shaderStage(static_cast<SHADER_TYPE>(stage))};
    return stages;
}

vlCommon::Result<> checkAddress(const ReflectedResource& resource) {
    const char letter = BindingModel::letterOf(resource.resourceClass);
    if (resource.slot >= BindingModel::registersPerClass)
        return vlCommon::fail(fmt::format("'{}': register {}{} lies beyond the last, {}{}",
                                          resource.name,
                                          letter,
                                          resource.slot,
                                          letter,
                                          BindingModel::registersPerClass - 1));
    const std::uint32_t spaces = std::min(BindingModel::spaceCount,
                                          Device::getInstance()->limits().maxBoundDescriptorSets);
    if (resource.space >= spaces)
        return vlCommon::fail(fmt::format("'{}': space{} lies beyond the last, space{}",
                                          resource.name,
                                          resource.space,
                                          spaces - 1));
    const std::uint32_t most = Device::getInstance()->limits().maxUniformBufferRange;
    if (resource.resourceClass == RESOURCE_CLASS::CONSTANT_BUFFER && resource.byteSize > most)
        return vlCommon::fail(fmt::format("'{}': {} bytes, where a constant buffer has {} at most",
                                          resource.name,
                                          resource.byteSize,
                                          most));
    return {};
}

vlCommon::Result<> checkStages(const CompiledProgram& program) {
    const VkPhysicalDeviceFeatures& features = Device::getInstance()->features();
    const auto has = [&program](SHADER_TYPE stage) {
        return !program.spirv[static_cast<std::size_t>(stage)].empty();
    };
    if (has(SHADER_TYPE::GEOMETRY) && features.geometryShader == VK_FALSE)
        return vlCommon::fail("The device has no geometry stage");
    if ((has(SHADER_TYPE::HULL) || has(SHADER_TYPE::DOMAIN_STAGE)) &&
        features.tessellationShader == VK_FALSE)
        return vlCommon::fail("The device has no hull and domain stages");
    if (has(SHADER_TYPE::RAYTRACING)) return vlCommon::fail("The device does not trace rays");
    return {};
}

vlCommon::Result<> makeModules(Program::Gpu& gpu, const CompiledProgram& program) {
    for (std::size_t stage = 0; stage < shaderTypeCount; ++stage) {
        const std::vector<std::uint32_t>& words = program.spirv[stage];
        if (words.empty()) continue;
        auto info = vulkan::vkInfo<VkShaderModuleCreateInfo>(
                VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO);
        info.codeSize = words.size() * sizeof(std::uint32_t);
        info.pCode = words.data();
        const VkResult result = vkCreateShaderModule(
                Device::getInstance()->get(), &info, nullptr, &gpu.modules[stage]);
        if (result != VK_SUCCESS) return vulkan::check(result, "Could not make a shader module");
    }
    return {};
}

vlCommon::Result<> makeSet(Program::Gpu& gpu, std::uint32_t space) {
    Program::Gpu::Set& set = gpu.sets[space];
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    for (std::uint32_t i = 0; i < gpu.reflection.resources.size(); ++i) {
        const ReflectedResource& resource = gpu.reflection.resources[i];
        if (resource.space != space) continue;
        const std::uint32_t binding =
                BindingModel::bindingOf(resource.resourceClass, resource.slot);
        const VkDescriptorType type = descriptorType(resource);
        bindings.push_back({binding, type, 1, stagesOf(resource.stageMask), nullptr});
        set.bindings.push_back({binding, type, i});
    }
    if (space == BindingModel::loopSet && gpu.tellingStages != 0)
        bindings.push_back({BindingModel::loopBinding,
                            VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
                            1,
                            stagesOf(gpu.tellingStages),
                            nullptr});
    auto info = vulkan::vkInfo<VkDescriptorSetLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO);
    info.bindingCount = static_cast<std::uint32_t>(bindings.size());
    info.pBindings = bindings.data();
    return vulkan::check(
            vkCreateDescriptorSetLayout(Device::getInstance()->get(), &info, nullptr, &set.layout),
            "Could not make a descriptor set layout");
}

vlCommon::Result<> makeLayout(Program::Gpu& gpu) {
    std::uint32_t spaces = gpu.tellingStages != 0 ? BindingModel::loopSet + 1 : 0;
    for (const ReflectedResource& resource : gpu.reflection.resources) {
        if (auto checked = checkAddress(resource); !checked) return checked;
        spaces = std::max(spaces, resource.space + 1);
        gpu.needsUnorderedAccess |= resource.resourceClass == RESOURCE_CLASS::UAV;
    }
    gpu.sets.resize(spaces);
    std::vector<VkDescriptorSetLayout> layouts;
    for (std::uint32_t space = 0; space < spaces; ++space) {
        if (auto made = makeSet(gpu, space); !made) return made;
        layouts.push_back(gpu.sets[space].layout);
    }
    auto info = vulkan::vkInfo<VkPipelineLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO);
    info.setLayoutCount = spaces;
    info.pSetLayouts = layouts.data();
    return vulkan::check(
            vkCreatePipelineLayout(Device::getInstance()->get(), &info, nullptr, &gpu.layout),
            "Could not make a pipeline layout");
}

vlCommon::Result<> makeLoopWords(Program::Gpu& gpu, const CompiledProgram& program) {
    gpu.loops = program.loops;
    gpu.tellingStages = program.tellingStages;
    gpu.mostPasses = program.mostPasses;
    if (gpu.tellingStages == 0) return {};
    constexpr VkDeviceSize size = sizeof(std::uint32_t) * shaderTypeCount;
    auto words = vulkan::GpuBuffer::create(size,
                                           VK_BUFFER_USAGE_STORAGE_BUFFER_BIT,
                                           vulkan::BufferMemory::readback,
                                           "the loop buffer");
    if (!words) return tl::unexpected(words.error());
    std::memset(words->mapped(), 0, size);
    gpu.loopWords = *std::move(words);
    return {};
}

} // namespace

Program::Program() = default;
Program::~Program() = default;

Program::Gpu::~Gpu() {
    Device& device = *Device::getInstance();
    if (render::Pipelines* pipelines = render::Pipelines::getInstance()) pipelines->forget(serial);
    device.retire(layout);
    for (const Set& set : sets)
        device.retire(set.layout);
    for (VkShaderModule module : modules)
        device.retire(module);
}

std::uint32_t writingStages() {
    if (Device::getInstance() == nullptr) return ~0U;
    const VkPhysicalDeviceFeatures& features = Device::getInstance()->features();
    constexpr std::uint32_t pixel = 1U << static_cast<std::uint32_t>(SHADER_TYPE::PIXEL);
    constexpr std::uint32_t compute = 1U << static_cast<std::uint32_t>(SHADER_TYPE::COMPUTE);
    std::uint32_t stages = compute;
    if (features.fragmentStoresAndAtomics == VK_TRUE) stages |= pixel;
    if (features.vertexPipelineStoresAndAtomics == VK_TRUE) stages |= ~(pixel | compute);
    return stages;
}

std::uint32_t mostLoopPasses() {
    // The software driver leaves every loop once a thread has had 65535 passes, and says nothing.
    constexpr std::uint32_t ofSoftware = 49152;
    const Device* device = Device::getInstance();
    const bool isSoftware = device != nullptr &&
                            device->choice().properties.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU;
    return isSoftware ? ofSoftware : CompileRequest().mostPasses;
}

vlCommon::Result<std::unique_ptr<Program::Gpu>> makeProgramGpu(const CompiledProgram& program) {
    if (Device::getInstance() == nullptr) return vlCommon::fail("There is no device");
    if (auto checked = checkStages(program); !checked) return tl::unexpected(checked.error());
    auto gpu = std::make_unique<Program::Gpu>();
    gpu->serial = nextSerial();
    gpu->reflection = program.reflection;
    if (auto made = makeLoopWords(*gpu, program); !made) return tl::unexpected(made.error());
    if (auto made = makeLayout(*gpu); !made) return tl::unexpected(made.error());
    if (auto made = makeModules(*gpu, program); !made) return tl::unexpected(made.error());
    constexpr std::uint32_t firstTwo = 3;
    if ((gpu->reflection.colorTargetMask & firstTwo) == firstTwo &&
        Device::getInstance()->features().dualSrcBlend == VK_TRUE)
        gpu->secondSourcePixel = vulkan::withSecondSource(
                program.spirv[static_cast<std::size_t>(SHADER_TYPE::PIXEL)]);
    const auto has = [&](SHADER_TYPE type) {
        return gpu->modules[static_cast<std::size_t>(type)] != VK_NULL_HANDLE;
    };
    // Of points that other stages make, the device knows the size.
    if (has(SHADER_TYPE::VERTEX) && !has(SHADER_TYPE::HULL) && !has(SHADER_TYPE::GEOMETRY))
        gpu->pointVertex =
                vulkan::withPointSize(program.spirv[static_cast<std::size_t>(SHADER_TYPE::VERTEX)]);
    return gpu;
}

} // namespace vlGraphics
