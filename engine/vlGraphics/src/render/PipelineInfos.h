#pragma once
#include "render/Pipelines.h"

#include <vector>

namespace vlGraphics::render {

// The parts of a pipeline that come from the states of a pass, which are such that the device can
// have them.

VkPipelineRasterizationStateCreateInfo rasterInfo(const RasterState::Settings& settings);
/// Belongs behind the raster info where lines are anti-aliased.
VkPipelineRasterizationLineStateCreateInfoEXT smoothLineInfo();
VkPipelineDepthStencilStateCreateInfo depthInfo(const PassState& state);
std::vector<VkPipelineColorBlendAttachmentState> blendInfos(const PassState& state,
                                                            const Program::Gpu& program);
/// What is set while recording.
VkPipelineDynamicStateCreateInfo dynamicInfo(const TargetFormats& formats);
/// Points into the formats.
VkPipelineRenderingCreateInfo renderingInfo(const TargetFormats& formats);

} // namespace vlGraphics::render
