#include "vulkan/ProgramLimits.h"

#include "programs/BindingModel.h"
#include "vulkan/Capabilities.h"
#include "vulkan/Device.h"
#include "vulkan/StageLimits.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>

namespace vlGraphics {

using vulkan::Device;

namespace {

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

Obstacle
obstacleOf(SHADER_TYPE stage, const vlCommon::Result<>& checked, const ReflectedResource& at = {}) {
    if (checked) return std::nullopt;
    return ProgramDiagnostic{stage, at.file, at.line, checked.error().message};
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

/// Of all descriptors that a stage sees together, and what the pixel stage writes.
Obstacle findExcess(const CompiledProgram& program) {
    const std::uint32_t most = Device::getInstance()->limits().maxPerStageResources;
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        const auto stage = static_cast<SHADER_TYPE>(index);
        std::uint64_t count = program.tellingStages >> index & 1U;
        if (stage == SHADER_TYPE::PIXEL) count += program.reflection.colorTargetCount;
        for (const ReflectedResource& resource : program.reflection.resources) {
            // The limit leaves samplers out.
            const bool isCounted = resource.resourceClass != RESOURCE_CLASS::SAMPLER &&
                                   (resource.stageMask >> index & 1U) != 0;
            if (isCounted) count += resource.arrayCount;
        }
        if (count > most)
            return obstacleOf(stage,
                              vlCommon::fail(fmt::format("It has {} textures, buffers and targets "
                                                         "in one stage, where the device has {} "
                                                         "at most",
                                                         count,
                                                         most)));
    }
    return std::nullopt;
}

Obstacle findResourceObstacle(const CompiledProgram& program) {
    const ProgramReflection& reflection = program.reflection;
    for (const ReflectedResource& resource : reflection.resources) {
        auto checked = checkAddress(resource);
        if (checked) checked = checkWrites(resource);
        if (auto found = obstacleOf(firstStage(resource.stageMask), checked, resource))
            return found;
    }
    if (auto found = findExcess(program)) return found;
    for (const DescriptorLimit& limit : descriptorLimits)
        if (auto found = findExcess(limit, program)) return found;
    return std::nullopt;
}

} // namespace

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

std::optional<ProgramDiagnostic> findDeviceObstacle(const CompiledProgram& program) {
    if (auto found = findStageObstacle(program)) return found;
    return findResourceObstacle(program);
}

} // namespace vlGraphics
