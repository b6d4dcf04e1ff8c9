#pragma once
#include "vulkan/Vk.h"

#include <vlGraphics/Enumerations.h>

namespace vlGraphics::vulkan {

// The only place where the engine's numbers (Direct3D's and DXGI's) meet Vulkan's. A number that is
// no value of its enumeration gives what stands for the enumeration's start.

/// Of a texture's memory. A target of depth that asks for R32_FLOAT is D32; VK_FORMAT_UNDEFINED for
/// formats that textures cannot have.
VkFormat textureFormat(FORMAT format, RENDER_FLAG flag, bool gammaCorrected);
/// Of the formats that textureFormat() gives.
bool isDepthFormat(VkFormat format);
bool hasStencil(VkFormat format);
/// What a texel of a typed buffer or of a written image is; VK_FORMAT_UNDEFINED for unknown ones.
VkFormat texelFormat(FORMAT format);
/// VK_FORMAT_UNDEFINED for formats that vertices cannot have.
VkFormat vertexFormat(FORMAT format);
/// The format's components are integers, as the shader sees them.
bool isIntegerFormat(FORMAT format);
enum class NumberKind : std::uint8_t { floating, unsignedInteger, signedInteger };
/// Of what shaders read from the format.
NumberKind numberKind(FORMAT format);
NumberKind numberKind(VkFormat format);

VkBlendFactor blendFactor(BLEND value);
VkBlendOp blendOperation(BLEND_OP value);
VkColorComponentFlags colorMask(COLOR_WRITE_ENABLE value);
VkPolygonMode polygonMode(FILL_MODE value);
VkCullModeFlags cullMode(CULL_MODE value);
VkCompareOp compareOperation(COMPARISON_FUNCTION value);
VkStencilOp stencilOperation(STENCIL_OP value);
VkSamplerAddressMode addressMode(TEXTURE_ADDRESS_MODE value);
VkPrimitiveTopology topology(PRIMITIVE_TOPOLOGY value);
VkShaderStageFlagBits shaderStage(SHADER_TYPE value);

struct FilterParts {
    VkFilter min = VK_FILTER_LINEAR;
    VkFilter mag = VK_FILTER_LINEAR;
    VkSamplerMipmapMode mip = VK_SAMPLER_MIPMAP_MODE_LINEAR;
    bool anisotropic = false;
    bool compares = false;
};
FilterParts filterParts(FILTER value);

} // namespace vlGraphics::vulkan
