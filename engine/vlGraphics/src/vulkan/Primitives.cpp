#include "vulkan/Primitives.h"

#include "vulkan/SpirvWords.h"
#include "vulkan/Translate.h"

#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <unordered_map>

namespace vlGraphics::vulkan {
namespace {

/// A stage that makes triangles out of patches says the same as one that takes triangles.
std::optional<Primitive> primitiveOfMode(std::uint32_t mode) {
    switch (mode) {
    case spv::ExecutionModePointMode:
    case spv::ExecutionModeInputPoints:
        return Primitive::point;
    case spv::ExecutionModeInputLines:
    case spv::ExecutionModeIsolines:
        return Primitive::line;
    case spv::ExecutionModeInputLinesAdjacency:
        return Primitive::lineWithNeighbours;
    case spv::ExecutionModeTriangles:
    case spv::ExecutionModeQuads:
        return Primitive::triangle;
    case spv::ExecutionModeInputTrianglesAdjacency:
        return Primitive::triangleWithNeighbours;
    default:
        return std::nullopt;
    }
}

std::optional<Primitive> primitiveIn(StageWords spirv) {
    std::optional<Primitive> found;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode != spv::OpExecutionMode || count < 3) return;
        // Points win over what they are the corners of.
        if (found != Primitive::point)
            if (const auto here = primitiveOfMode(spirv[at + 2])) found = here;
    });
    return found;
}

/// Of the arrays that the hull stage takes, one element for each point; they are all alike.
std::uint32_t inputPoints(StageWords hull) {
    std::unordered_map<std::uint32_t, std::uint32_t> constants;
    std::unordered_map<std::uint32_t, std::uint32_t> arrays;
    std::unordered_map<std::uint32_t, std::uint32_t> inputs;
    std::uint32_t points = 0;
    eachInstruction(hull, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (count < 4) return;
        if (opcode == spv::OpConstant) constants[hull[at + 2]] = hull[at + 3];
        if (opcode == spv::OpTypeArray) arrays[hull[at + 1]] = constants[hull[at + 3]];
        if (opcode == spv::OpTypePointer && hull[at + 2] == spv::StorageClassInput)
            if (const auto array = arrays.find(hull[at + 3]); array != arrays.end())
                inputs[hull[at + 1]] = array->second;
        if (opcode == spv::OpVariable && hull[at + 3] == spv::StorageClassInput)
            if (const auto input = inputs.find(hull[at + 1]); input != inputs.end())
                points = std::max(points, input->second);
    });
    return points;
}

Primitive primitiveOf(PRIMITIVE_TOPOLOGY topology) {
    switch (pointsOf(topology)) {
    case 1:
        return Primitive::point;
    case 2:
        return Primitive::line;
    default:
        return Primitive::triangle;
    }
}

/// Each primitive's neighbours lie among a mesh's points.
VkPrimitiveTopology withNeighbours(PRIMITIVE_TOPOLOGY value) {
    switch (value) {
    case PRIMITIVE_TOPOLOGY::LINE_LIST:
        return VK_PRIMITIVE_TOPOLOGY_LINE_LIST_WITH_ADJACENCY;
    case PRIMITIVE_TOPOLOGY::LINE_STRIP:
        return VK_PRIMITIVE_TOPOLOGY_LINE_STRIP_WITH_ADJACENCY;
    case PRIMITIVE_TOPOLOGY::TRIANGLE_STRIP:
        return VK_PRIMITIVE_TOPOLOGY_TRIANGLE_STRIP_WITH_ADJACENCY;
    default:
        return VK_PRIMITIVE_TOPOLOGY_TRIANGLE_LIST_WITH_ADJACENCY;
    }
}

} // namespace

Primitives primitivesOf(StageWords hull, StageWords domain, StageWords geometry) {
    Primitives primitives;
    primitives.geometryInput = primitiveIn(geometry);
    // Either of the two may say it.
    primitives.tessellated = primitiveIn(hull);
    if (const auto inDomain = primitiveIn(domain);
        inDomain && primitives.tessellated != Primitive::point)
        primitives.tessellated = inDomain;
    primitives.patchPoints = inputPoints(hull);
    return primitives;
}

std::uint32_t pointsOf(PRIMITIVE_TOPOLOGY topology) {
    switch (topology) {
    case PRIMITIVE_TOPOLOGY::POINT_LIST:
        return 1;
    case PRIMITIVE_TOPOLOGY::LINE_LIST:
    case PRIMITIVE_TOPOLOGY::LINE_STRIP:
        return 2;
    default:
        return 3;
    }
}

std::optional<VkPrimitiveTopology> topologyFor(const Primitives& primitives,
                                               PRIMITIVE_TOPOLOGY value) {
    const std::optional<Primitive>& taken = primitives.geometryInput;
    if (primitives.tessellated) {
        if (taken && taken != primitives.tessellated) return std::nullopt;
        return VK_PRIMITIVE_TOPOLOGY_PATCH_LIST;
    }
    const Primitive given = primitiveOf(value);
    if (!taken || taken == given) return topology(value);
    const bool isWithNeighbours =
            (given == Primitive::line && taken == Primitive::lineWithNeighbours) ||
            (given == Primitive::triangle && taken == Primitive::triangleWithNeighbours);
    if (isWithNeighbours) return withNeighbours(value);
    return std::nullopt;
}

} // namespace vlGraphics::vulkan
