#pragma once
#include "vulkan/Vk.h"

#include <vlGraphics/Enumerations.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

/// What a stage takes, or makes, at a time.
enum class Primitive : std::uint8_t {
    point,
    line,
    lineWithNeighbours,
    triangle,
    triangleWithNeighbours
};

/** What a program's stages say about primitives. */
struct Primitives {
    std::optional<Primitive> geometryInput; ///< where there is a geometry stage
    std::optional<Primitive> tessellated;   ///< what the domain stage's patches are divided into
    std::uint32_t patchPoints = 0;          ///< that the hull stage takes; 0: any number
};

using StageWords = std::span<const std::uint32_t>;
/// Empty words stand for stages that the program does not have.
Primitives primitivesOf(StageWords hull, StageWords domain, StageWords geometry);

/// Points of one of a mesh's primitives, as a patch.
std::uint32_t pointsOf(PRIMITIVE_TOPOLOGY topology);
/// How the program is to be given a mesh's points; nothing where its stages cannot take them.
std::optional<VkPrimitiveTopology> topologyFor(const Primitives& primitives,
                                               PRIMITIVE_TOPOLOGY topology);

} // namespace vlGraphics::vulkan
