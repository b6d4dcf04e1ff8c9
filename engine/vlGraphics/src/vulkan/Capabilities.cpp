#include "vulkan/Capabilities.h"

#include "vulkan/Device.h"
#include "vulkan/SpirvWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace vlGraphics::vulkan {
namespace {

using Features = VkPhysicalDeviceFeatures;

constexpr std::uint32_t opCapability = 17;

struct Capability {
    std::uint32_t number;
    VkBool32 Features::*feature; ///< null: every device has it
    const char* name;
};

/// By SPIR-V's numbers.
constexpr Capability capabilities[] = {
        {0, nullptr, "Matrix"},
        {1, nullptr, "Shader"},
        {2, &Features::geometryShader, "a geometry stage"},
        {3, &Features::tessellationShader, "hull and domain stages"},
        {10, &Features::shaderFloat64, "64-bit numbers with a fraction"},
        {11, &Features::shaderInt64, "64-bit integers"},
        {22, &Features::shaderInt16, "16-bit integers"},
        {23,
         &Features::shaderTessellationAndGeometryPointSize,
         "sizes of points in hull and domain"},
        {24, &Features::shaderTessellationAndGeometryPointSize, "sizes of points in geometry"},
        {25, &Features::shaderImageGatherExtended, "gathering with offsets"},
        {27, &Features::shaderStorageImageMultisample, "writing multisampled textures"},
        {28, &Features::shaderUniformBufferArrayDynamicIndexing, "indexed constant buffers"},
        {29, &Features::shaderSampledImageArrayDynamicIndexing, "indexed textures"},
        {30, &Features::shaderStorageBufferArrayDynamicIndexing, "indexed buffers"},
        {31, &Features::shaderStorageImageArrayDynamicIndexing, "indexed written textures"},
        {32, &Features::shaderClipDistance, "SV_ClipDistance"},
        {33, &Features::shaderCullDistance, "SV_CullDistance"},
        {34, &Features::imageCubeArray, "arrays of cubes"},
        {35, &Features::sampleRateShading, "shading each sample"},
        {40, nullptr, "InputAttachment"},
        {42, &Features::shaderResourceMinLod, "clamped levels of detail"},
        {43, nullptr, "Sampled1D"},
        {44, nullptr, "Image1D"},
        {45, &Features::imageCubeArray, "arrays of cubes"},
        {46, nullptr, "SampledBuffer"},
        {47, nullptr, "ImageBuffer"},
        {48, &Features::shaderStorageImageMultisample, "writing multisampled textures"},
        {49, &Features::shaderStorageImageExtendedFormats, "written textures of that format"},
        {50, nullptr, "ImageQuery"},
        {51, nullptr, "DerivativeControl"},
        {52, &Features::sampleRateShading, "interpolating at samples"},
        {55, &Features::shaderStorageImageReadWithoutFormat, "reading textures of any format"},
        {56, &Features::shaderStorageImageWriteWithoutFormat, "writing textures of any format"},
        {57, &Features::multiViewport, "several viewports"}};

/// From here on, by their order, the operations across lanes.
constexpr std::uint32_t firstLaneCapability = 61;
constexpr VkSubgroupFeatureFlagBits laneOperations[] = {VK_SUBGROUP_FEATURE_BASIC_BIT,
                                                        VK_SUBGROUP_FEATURE_VOTE_BIT,
                                                        VK_SUBGROUP_FEATURE_ARITHMETIC_BIT,
                                                        VK_SUBGROUP_FEATURE_BALLOT_BIT,
                                                        VK_SUBGROUP_FEATURE_SHUFFLE_BIT,
                                                        VK_SUBGROUP_FEATURE_SHUFFLE_RELATIVE_BIT,
                                                        VK_SUBGROUP_FEATURE_CLUSTERED_BIT,
                                                        VK_SUBGROUP_FEATURE_QUAD_BIT};

bool hasLaneOperation(VkSubgroupFeatureFlags operation) {
    auto lanes = vulkan::vkInfo<VkPhysicalDeviceSubgroupProperties>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_SUBGROUP_PROPERTIES);
    auto properties = vulkan::vkInfo<VkPhysicalDeviceProperties2>(
            VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2);
    properties.pNext = &lanes;
    vkGetPhysicalDeviceProperties2(Device::getInstance()->physical(), &properties);
    return (lanes.supportedOperations & operation) != 0;
}

vlCommon::Result<> checkCapability(std::uint32_t number) {
    if (number >= firstLaneCapability && number - firstLaneCapability < std::size(laneOperations)) {
        if (hasLaneOperation(laneOperations[number - firstLaneCapability])) return {};
        return vlCommon::fail("The device lacks an operation across lanes that it uses");
    }
    const auto known = std::find_if(std::begin(capabilities),
                                    std::end(capabilities),
                                    [number](const auto& one) { return one.number == number; });
    if (known == std::end(capabilities))
        return vlCommon::fail(fmt::format("It uses what the engine cannot turn on (SPIR-V's "
                                          "capability {})",
                                          number));
    if (known->feature == nullptr || Device::getInstance()->features().*known->feature == VK_TRUE)
        return {};
    return vlCommon::fail(fmt::format("The device lacks {}", known->name));
}

} // namespace

vlCommon::Result<> checkCapabilities(std::span<const std::uint32_t> spirv) {
    vlCommon::Result<> result;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == opCapability && count == 2 && result) result = checkCapability(spirv[at + 1]);
    });
    return result;
}

} // namespace vlGraphics::vulkan
