#pragma once
#include "programs/CompiledProgram.h"
#include "vulkan/Vk.h"

#include <vlGraphics/Program.h>

#include <optional>

namespace vlGraphics {

/// What a resource is bound as.
VkDescriptorType descriptorType(const ReflectedResource& resource);

/** What of a program the device cannot do or has no room for, with the place of the resource where
 *  it is one's. Graphics thread only; there is a device. */
std::optional<ProgramDiagnostic> findDeviceObstacle(const CompiledProgram& program);

} // namespace vlGraphics
