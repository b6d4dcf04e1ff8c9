#include "vulkan/ProgramGpu.h"

#include "programs/BindingModel.h"
#include "programs/CompileRequest.h"
#include "render/Pipelines.h"
#include "vulkan/Capabilities.h"
#include "vulkan/Device.h"
#include "vulkan/EarlyTests.h"
#include "vulkan/PointSize.h"
#include "vulkan/SecondSource.h"
#include "vulkan/StageLimits.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>

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
    case RESOURCE_CLASS::SAMPLER:
        return VK_DESCRIPTOR_TYPE_SAMPLER;
    case RESOURCE_CLASS::TEXTURE:
        if (resource.isBuffer) return VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
        return resource.isTexelBuffer ? VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER
                                      : VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE;
    case RESOURCE_CLASS::UAV:
        break;
    }
    if (resource.isBuffer) return VK_DESCRIPTOR_TYPE_STORAGE_BUFFER;
    return resource.isTexelBuffer ? VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER
                                  : VK_DESCRIPTOR_TYPE_STORAGE_IMAGE;
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
    if (resource.arrayCount == 0)
        return vlCommon::fail(
                fmt::format("'{}': an array without a count cannot be bound", resource.name));
    const std::uint64_t last = std::uint64_t{resource.slot} + resource.arrayCount - 1;
    if (last >= BindingModel::registersPerClass)
        return vlCommon::fail(fmt::format("'{}': register {}{} lies beyond the last, {}{}",
                                          resource.name,
                                          letter,
                                          last,
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

const std::vector<std::uint32_t>& wordsOf(const CompiledProgram& program, SHADER_TYPE stage) {
    return program.spirv[static_cast<std::size_t>(stage)];
}

SHADER_TYPE firstOf(const CompiledProgram& program) {
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
        if (!program.spirv[stage].empty()) return static_cast<SHADER_TYPE>(stage);
    return SHADER_TYPE::VERTEX;
}

vlCommon::Result<> checkGroupSize(const ProgramReflection& reflection) {
    const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
    const std::array<std::uint32_t, 3>& size = reflection.threadGroupSize;
    std::uint64_t threads = 1;
    for (std::size_t axis = 0; axis < size.size(); ++axis) {
        threads *= size[axis];
        if (size[axis] > limits.maxComputeWorkGroupSize[axis])
            return vlCommon::fail(
                    fmt::format("A group has {} threads along {}, where the device has {} at most",
                                size[axis],
                                "XYZ"[axis],
                                limits.maxComputeWorkGroupSize[axis]));
    }
    if (threads <= limits.maxComputeWorkGroupInvocations) return {};
    return vlCommon::fail(fmt::format("A group has {} threads, where the device has {} at most",
                                      threads,
                                      limits.maxComputeWorkGroupInvocations));
}

/// What stands in the way of using the program, and in which stage.
using Obstacle = std::optional<ProgramDiagnostic>;

Obstacle obstacleOf(SHADER_TYPE stage, const vlCommon::Result<>& checked) {
    if (checked) return std::nullopt;
    return ProgramDiagnostic{stage, {}, 1, checked.error().message};
}

SHADER_TYPE firstStage(std::uint32_t mask) {
    return mask == 0 ? SHADER_TYPE::VERTEX : static_cast<SHADER_TYPE>(std::countr_zero(mask));
}

vlCommon::Result<> checkStage(const CompiledProgram& program, SHADER_TYPE stage) {
    const auto has = [&program](SHADER_TYPE other) { return !wordsOf(program, other).empty(); };
    if (!has(stage)) return {};
    if (stage == SHADER_TYPE::RAYTRACING) return vlCommon::fail("The device does not trace rays");
    const bool isHalf = (stage == SHADER_TYPE::HULL && !has(SHADER_TYPE::DOMAIN_STAGE)) ||
                        (stage == SHADER_TYPE::DOMAIN_STAGE && !has(SHADER_TYPE::HULL));
    if (isHalf) return vlCommon::fail("Of the hull and the domain stage, one needs the other");
    if (stage == SHADER_TYPE::COMPUTE)
        if (auto checked = checkGroupSize(program.reflection); !checked) return checked;
    auto checked = vulkan::checkCapabilities(wordsOf(program, stage));
    if (checked) checked = vulkan::checkStageLimits(stage, wordsOf(program, stage));
    return checked;
}

Obstacle findStageObstacle(const CompiledProgram& program) {
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        const auto stage = static_cast<SHADER_TYPE>(index);
        if (auto found = obstacleOf(stage, checkStage(program, stage))) return found;
    }
    return std::nullopt;
}

/// Stages other than compute write only where the device can.
vlCommon::Result<> checkWrites(const ReflectedResource& resource) {
    if (resource.resourceClass != RESOURCE_CLASS::UAV) return {};
    const VkPhysicalDeviceFeatures& features = Device::getInstance()->features();
    constexpr std::uint32_t pixel = 1U << static_cast<std::uint32_t>(SHADER_TYPE::PIXEL);
    constexpr std::uint32_t compute = 1U << static_cast<std::uint32_t>(SHADER_TYPE::COMPUTE);
    if ((resource.stageMask & pixel) != 0 && features.fragmentStoresAndAtomics == VK_FALSE)
        return vlCommon::fail(fmt::format(
                "'{}': the device writes to no buffers in the pixel stage", resource.name));
    if ((resource.stageMask & ~(pixel | compute)) != 0 &&
        features.vertexPipelineStoresAndAtomics == VK_FALSE)
        return vlCommon::fail(fmt::format(
                "'{}': the device writes to no buffers before the pixel stage", resource.name));
    return {};
}

/// What a stage, and all stages together, may have of some descriptor types.
struct DescriptorLimit {
    const char* name;
    std::array<VkDescriptorType, 2> types;
    std::uint32_t VkPhysicalDeviceLimits::*ofStage;
    std::uint32_t VkPhysicalDeviceLimits::*ofAll;
};

constexpr DescriptorLimit descriptorLimits[] = {
        {"constant buffers",
         {VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER},
         &VkPhysicalDeviceLimits::maxPerStageDescriptorUniformBuffers,
         &VkPhysicalDeviceLimits::maxDescriptorSetUniformBuffers},
        {"samplers",
         {VK_DESCRIPTOR_TYPE_SAMPLER, VK_DESCRIPTOR_TYPE_SAMPLER},
         &VkPhysicalDeviceLimits::maxPerStageDescriptorSamplers,
         &VkPhysicalDeviceLimits::maxDescriptorSetSamplers},
        {"textures",
         {VK_DESCRIPTOR_TYPE_SAMPLED_IMAGE, VK_DESCRIPTOR_TYPE_UNIFORM_TEXEL_BUFFER},
         &VkPhysicalDeviceLimits::maxPerStageDescriptorSampledImages,
         &VkPhysicalDeviceLimits::maxDescriptorSetSampledImages},
        {"buffers",
         {VK_DESCRIPTOR_TYPE_STORAGE_BUFFER, VK_DESCRIPTOR_TYPE_STORAGE_BUFFER},
         &VkPhysicalDeviceLimits::maxPerStageDescriptorStorageBuffers,
         &VkPhysicalDeviceLimits::maxDescriptorSetStorageBuffers},
        {"textures to write",
         {VK_DESCRIPTOR_TYPE_STORAGE_IMAGE, VK_DESCRIPTOR_TYPE_STORAGE_TEXEL_BUFFER},
         &VkPhysicalDeviceLimits::maxPerStageDescriptorStorageImages,
         &VkPhysicalDeviceLimits::maxDescriptorSetStorageImages}};

Obstacle findExcess(const DescriptorLimit& limit, const CompiledProgram& program) {
    const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
    std::array<std::uint64_t, shaderTypeCount> ofStage{};
    std::uint64_t all = 0;
    const auto add = [&](std::uint32_t count, std::uint32_t stageMask) {
        all += count;
        for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
            if ((stageMask >> stage & 1U) != 0) ofStage[stage] += count;
    };
    for (const ReflectedResource& resource : program.reflection.resources) {
        const VkDescriptorType type = descriptorType(resource);
        if (type == limit.types[0] || type == limit.types[1])
            add(resource.arrayCount, resource.stageMask);
    }
    const bool hasLoopWords = program.tellingStages != 0;
    if (hasLoopWords && limit.types[0] == VK_DESCRIPTOR_TYPE_STORAGE_BUFFER)
        add(1, program.tellingStages);
    const auto most = std::max_element(ofStage.begin(), ofStage.end());
    if (*most <= limits.*limit.ofStage && all <= limits.*limit.ofAll) return std::nullopt;
    return obstacleOf(static_cast<SHADER_TYPE>(most - ofStage.begin()),
                      vlCommon::fail(fmt::format("It has {} {}, {} of them in one stage, where the "
                                                 "device has {} and {} at most",
                                                 all,
                                                 limit.name,
                                                 *most,
                                                 limits.*limit.ofAll,
                                                 limits.*limit.ofStage)));
}

Obstacle findResourceObstacle(const CompiledProgram& program) {
    const ProgramReflection& reflection = program.reflection;
    if (!reflection.obstacle.empty())
        return ProgramDiagnostic{reflection.obstacleStage, {}, 1, reflection.obstacle};
    for (const ReflectedResource& resource : reflection.resources) {
        auto checked = checkAddress(resource);
        if (checked) checked = checkWrites(resource);
        if (auto found = obstacleOf(firstStage(resource.stageMask), checked)) return found;
    }
    for (const DescriptorLimit& limit : descriptorLimits)
        if (auto found = findExcess(limit, program)) return found;
    return std::nullopt;
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
        bindings.push_back(
                {binding, type, resource.arrayCount, stagesOf(resource.stageMask), nullptr});
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
    for (const ReflectedResource& resource : gpu.reflection.resources)
        spaces = std::max(spaces, resource.space + 1);
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

/// The words of watched loops are all that the pixel stage writes.
bool writesOnlyLoopWords(const CompiledProgram& program) {
    constexpr std::uint32_t pixel = 1U << static_cast<std::uint32_t>(SHADER_TYPE::PIXEL);
    const auto& resources = program.reflection.resources;
    return (program.tellingStages & pixel) != 0 &&
           std::none_of(resources.begin(), resources.end(), [](const ReflectedResource& resource) {
               return resource.resourceClass == RESOURCE_CLASS::UAV &&
                      (resource.stageMask & pixel) != 0;
           });
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

tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic>
makeProgramGpu(const CompiledProgram& program) {
    const SHADER_TYPE first = firstOf(program);
    if (Device::getInstance() == nullptr)
        return tl::unexpected(ProgramDiagnostic{first, {}, 1, "There is no device"});
    if (auto found = findStageObstacle(program)) return tl::unexpected(*std::move(found));
    if (auto found = findResourceObstacle(program)) return tl::unexpected(*std::move(found));
    auto gpu = std::make_unique<Program::Gpu>();
    gpu->serial = nextSerial();
    gpu->reflection = program.reflection;
    auto made = makeLoopWords(*gpu, program);
    if (made) made = makeLayout(*gpu);
    if (made) made = makeModules(*gpu, program);
    if (auto found = obstacleOf(first, made)) return tl::unexpected(*std::move(found));
    constexpr std::uint32_t firstTwo = 3;
    if ((gpu->reflection.colorTargetMask & firstTwo) == firstTwo &&
        Device::getInstance()->features().dualSrcBlend == VK_TRUE)
        gpu->secondSourcePixel = vulkan::withSecondSource(wordsOf(program, SHADER_TYPE::PIXEL));
    if (writesOnlyLoopWords(program))
        gpu->earlyPixel = vulkan::withEarlyTests(wordsOf(program, SHADER_TYPE::PIXEL));
    // Of points that other stages make, the device knows the size.
    if (gpu->has(SHADER_TYPE::VERTEX) && !gpu->has(SHADER_TYPE::HULL) &&
        !gpu->has(SHADER_TYPE::GEOMETRY))
        gpu->pointVertex = vulkan::withPointSize(wordsOf(program, SHADER_TYPE::VERTEX));
    gpu->primitives = vulkan::primitivesOf(wordsOf(program, SHADER_TYPE::HULL),
                                           wordsOf(program, SHADER_TYPE::DOMAIN_STAGE),
                                           wordsOf(program, SHADER_TYPE::GEOMETRY));
    return gpu;
}

} // namespace vlGraphics
