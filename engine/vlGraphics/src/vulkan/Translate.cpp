#include "vulkan/Translate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace vlGraphics::vulkan {
namespace {

struct FormatRow {
    std::uint32_t number;
    VkFormat linear;
    VkFormat gamma; ///< where the texture holds sRGB colours
    bool texture;
    bool vertex;
    bool integer;
};

constexpr std::array formatRows{
        FormatRow{2, VK_FORMAT_R32G32B32A32_SFLOAT, VK_FORMAT_UNDEFINED, true, true, false},
        FormatRow{3, VK_FORMAT_R32G32B32A32_UINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{4, VK_FORMAT_R32G32B32A32_SINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{6, VK_FORMAT_R32G32B32_SFLOAT, VK_FORMAT_UNDEFINED, false, true, false},
        FormatRow{7, VK_FORMAT_R32G32B32_UINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{8, VK_FORMAT_R32G32B32_SINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{10, VK_FORMAT_R16G16B16A16_SFLOAT, VK_FORMAT_UNDEFINED, true, true, false},
        FormatRow{16, VK_FORMAT_R32G32_SFLOAT, VK_FORMAT_UNDEFINED, true, true, false},
        FormatRow{17, VK_FORMAT_R32G32_UINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{18, VK_FORMAT_R32G32_SINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{20, VK_FORMAT_D32_SFLOAT_S8_UINT, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{24, VK_FORMAT_A2B10G10R10_UNORM_PACK32, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{26, VK_FORMAT_B10G11R11_UFLOAT_PACK32, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{28, VK_FORMAT_R8G8B8A8_UNORM, VK_FORMAT_R8G8B8A8_SRGB, true, true, false},
        FormatRow{29, VK_FORMAT_R8G8B8A8_SRGB, VK_FORMAT_R8G8B8A8_SRGB, true, false, false},
        FormatRow{34, VK_FORMAT_R16G16_SFLOAT, VK_FORMAT_UNDEFINED, true, true, false},
        FormatRow{40, VK_FORMAT_D32_SFLOAT, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{41, VK_FORMAT_R32_SFLOAT, VK_FORMAT_UNDEFINED, true, true, false},
        FormatRow{42, VK_FORMAT_R32_UINT, VK_FORMAT_UNDEFINED, true, true, true},
        FormatRow{43, VK_FORMAT_R32_SINT, VK_FORMAT_UNDEFINED, false, true, true},
        FormatRow{45, VK_FORMAT_D24_UNORM_S8_UINT, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{49, VK_FORMAT_R8G8_UNORM, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{54, VK_FORMAT_R16_SFLOAT, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{61, VK_FORMAT_R8_UNORM, VK_FORMAT_UNDEFINED, true, false, false},
        FormatRow{87, VK_FORMAT_B8G8R8A8_UNORM, VK_FORMAT_B8G8R8A8_SRGB, true, false, false},
        FormatRow{91, VK_FORMAT_B8G8R8A8_SRGB, VK_FORMAT_B8G8R8A8_SRGB, true, false, false},
};

const FormatRow* rowOf(FORMAT format) {
    const auto found =
            std::find_if(formatRows.begin(), formatRows.end(), [format](const FormatRow& row) {
                return row.number == static_cast<std::uint32_t>(format);
            });
    return found == formatRows.end() ? nullptr : &*found;
}

/// The value at the number, counted from `first`; the table's first where there is none.
template <class Value, std::size_t count, class Enum>
Value pick(const std::array<Value, count>& table, Enum value, std::uint32_t first = 1) {
    const std::uint32_t index = static_cast<std::uint32_t>(value) - first;
    return index < count ? table[index] : table[0];
}

} // namespace

bool isDepthFormat(VkFormat format) {
    return format == VK_FORMAT_D32_SFLOAT || hasStencil(format);
}

bool hasStencil(VkFormat format) {
    return format == VK_FORMAT_D32_SFLOAT_S8_UINT || format == VK_FORMAT_D24_UNORM_S8_UINT;
}

VkFormat textureFormat(FORMAT format, RENDER_FLAG flag, bool gammaCorrected) {
    const FormatRow* row = rowOf(format);
    if (row == nullptr || !row->texture) return VK_FORMAT_UNDEFINED;
    if (flag == RENDER_FLAG::DEPTH_TARGET) {
        if (row->linear == VK_FORMAT_R32_SFLOAT) return VK_FORMAT_D32_SFLOAT;
        return isDepthFormat(row->linear) ? row->linear : VK_FORMAT_UNDEFINED;
    }
    if (isDepthFormat(row->linear)) return VK_FORMAT_UNDEFINED;
    return gammaCorrected && row->gamma != VK_FORMAT_UNDEFINED ? row->gamma : row->linear;
}

VkFormat texelFormat(FORMAT format) {
    const FormatRow* row = rowOf(format);
    return row == nullptr || isDepthFormat(row->linear) ? VK_FORMAT_UNDEFINED : row->linear;
}

NumberKind numberKind(VkFormat format) {
    switch (format) {
    case VK_FORMAT_R32G32B32A32_UINT:
    case VK_FORMAT_R32G32B32_UINT:
    case VK_FORMAT_R32G32_UINT:
    case VK_FORMAT_R32_UINT:
        return NumberKind::unsignedInteger;
    case VK_FORMAT_R32G32B32A32_SINT:
    case VK_FORMAT_R32G32B32_SINT:
    case VK_FORMAT_R32G32_SINT:
    case VK_FORMAT_R32_SINT:
        return NumberKind::signedInteger;
    default:
        return NumberKind::floating;
    }
}

NumberKind numberKind(FORMAT format) {
    return numberKind(texelFormat(format));
}

VkFormat vertexFormat(FORMAT format) {
    const FormatRow* row = rowOf(format);
    return row == nullptr || !row->vertex ? VK_FORMAT_UNDEFINED : row->linear;
}

bool isIntegerFormat(FORMAT format) {
    const FormatRow* row = rowOf(format);
    return row != nullptr && row->integer;
}

VkBlendFactor blendFactor(BLEND value) {
    constexpr std::array<VkBlendFactor, 19> table{VK_BLEND_FACTOR_ZERO,
                                                  VK_BLEND_FACTOR_ONE,
                                                  VK_BLEND_FACTOR_SRC_COLOR,
                                                  VK_BLEND_FACTOR_ONE_MINUS_SRC_COLOR,
                                                  VK_BLEND_FACTOR_SRC_ALPHA,
                                                  VK_BLEND_FACTOR_ONE_MINUS_SRC_ALPHA,
                                                  VK_BLEND_FACTOR_DST_ALPHA,
                                                  VK_BLEND_FACTOR_ONE_MINUS_DST_ALPHA,
                                                  VK_BLEND_FACTOR_DST_COLOR,
                                                  VK_BLEND_FACTOR_ONE_MINUS_DST_COLOR,
                                                  VK_BLEND_FACTOR_SRC_ALPHA_SATURATE,
                                                  VK_BLEND_FACTOR_ZERO,
                                                  VK_BLEND_FACTOR_ZERO,
                                                  VK_BLEND_FACTOR_CONSTANT_COLOR,
                                                  VK_BLEND_FACTOR_ONE_MINUS_CONSTANT_COLOR,
                                                  VK_BLEND_FACTOR_SRC1_COLOR,
                                                  VK_BLEND_FACTOR_ONE_MINUS_SRC1_COLOR,
                                                  VK_BLEND_FACTOR_SRC1_ALPHA,
                                                  VK_BLEND_FACTOR_ONE_MINUS_SRC1_ALPHA};
    return pick(table, value);
}

VkBlendOp blendOperation(BLEND_OP value) {
    constexpr std::array<VkBlendOp, 5> table{VK_BLEND_OP_ADD,
                                             VK_BLEND_OP_SUBTRACT,
                                             VK_BLEND_OP_REVERSE_SUBTRACT,
                                             VK_BLEND_OP_MIN,
                                             VK_BLEND_OP_MAX};
    return pick(table, value);
}

VkColorComponentFlags colorMask(COLOR_WRITE_ENABLE value) {
    return static_cast<std::uint32_t>(value) & 15U;
}

VkPolygonMode polygonMode(FILL_MODE value) {
    return value == FILL_MODE::WIREFRAME ? VK_POLYGON_MODE_LINE : VK_POLYGON_MODE_FILL;
}

VkCullModeFlags cullMode(CULL_MODE value) {
    constexpr std::array<VkCullModeFlags, 3> table{
            VK_CULL_MODE_NONE, VK_CULL_MODE_FRONT_BIT, VK_CULL_MODE_BACK_BIT};
    return pick(table, value);
}

VkCompareOp compareOperation(COMPARISON_FUNCTION value) {
    constexpr std::array<VkCompareOp, 8> table{VK_COMPARE_OP_NEVER,
                                               VK_COMPARE_OP_LESS,
                                               VK_COMPARE_OP_EQUAL,
                                               VK_COMPARE_OP_LESS_OR_EQUAL,
                                               VK_COMPARE_OP_GREATER,
                                               VK_COMPARE_OP_NOT_EQUAL,
                                               VK_COMPARE_OP_GREATER_OR_EQUAL,
                                               VK_COMPARE_OP_ALWAYS};
    return pick(table, value);
}

VkStencilOp stencilOperation(STENCIL_OP value) {
    constexpr std::array<VkStencilOp, 8> table{VK_STENCIL_OP_KEEP,
                                               VK_STENCIL_OP_ZERO,
                                               VK_STENCIL_OP_REPLACE,
                                               VK_STENCIL_OP_INCREMENT_AND_CLAMP,
                                               VK_STENCIL_OP_DECREMENT_AND_CLAMP,
                                               VK_STENCIL_OP_INVERT,
                                               VK_STENCIL_OP_INCREMENT_AND_WRAP,
                                               VK_STENCIL_OP_DECREMENT_AND_WRAP};
    return pick(table, value);
}

VkSamplerAddressMode addressMode(TEXTURE_ADDRESS_MODE value) {
    constexpr std::array<VkSamplerAddressMode, 5> table{
            VK_SAMPLER_ADDRESS_MODE_REPEAT,
            VK_SAMPLER_ADDRESS_MODE_MIRRORED_REPEAT,
            VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_EDGE,
            VK_SAMPLER_ADDRESS_MODE_CLAMP_TO_BORDER,
            VK_SAMPLER_ADDRESS_MODE_MIRROR_CLAMP_TO_EDGE};
    return pick(table, value);
}

VkPrimitiveTopology topology(PRIMITIVE_TOPOLOGY value) {
    constexpr std::array<VkPrimitiveTopology, 5> table{VK_PRIMITIVE_TOPOLOGY_POINT_LIST,
                                                       VK_PRIMITIVE_TOPOLOGY_LINE_LIST,
                                                       VK_PRIMITIVE_TOPOLOGY_LINE_STRIP,
                                                       VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST,
                                                       VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP};
    return pick(table, value);
}

VkShaderStageFlagBits shaderStage(SHADER_TYPE value) {
    constexpr std::array<VkShaderStageFlagBits, 7> table{
            VK_SHADER_STAGE_VERTEX_BIT,
            VK_SHADER_STAGE_TESSELLATION_CONTROL_BIT,
            VK_SHADER_STAGE_TESSELLATION_EVALUATION_BIT,
            VK_SHADER_STAGE_GEOMETRY_BIT,
            VK_SHADER_STAGE_FRAGMENT_BIT,
            VK_SHADER_STAGE_COMPUTE_BIT,
            VK_SHADER_STAGE_RAYGEN_BIT_KHR};
    return pick(table, value, 0);
}

FilterParts filterParts(FILTER value) {
    const auto bits = static_cast<std::uint32_t>(value);
    FilterParts parts;
    parts.mip = (bits & 1U) != 0 ? VK_SAMPLER_MIPMAP_MODE_LINEAR : VK_SAMPLER_MIPMAP_MODE_NEAREST;
    parts.mag = (bits & 4U) != 0 ? VK_FILTER_LINEAR : VK_FILTER_NEAREST;
    parts.min = (bits & 16U) != 0 ? VK_FILTER_LINEAR : VK_FILTER_NEAREST;
    parts.anisotropic = (bits & 64U) != 0;
    parts.compares = (bits & 128U) != 0;
    return parts;
}

} // namespace vlGraphics::vulkan
