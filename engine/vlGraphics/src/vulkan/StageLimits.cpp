#include "vulkan/StageLimits.h"

#include "programs/VariableSize.h"
#include "vulkan/Device.h"
#include "vulkan/Primitives.h"
#include "vulkan/SpirvWords.h"

#include <fmt/format.h>
#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint64_t bytesOfNumber = 4;

std::uint64_t verticesOf(std::span<const std::uint32_t> spirv) {
    std::uint64_t vertices = 0;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == spv::OpExecutionMode && count == 4 &&
            spirv[at + 2] == spv::ExecutionModeOutputVertices)
            vertices = spirv[at + 3];
    });
    return vertices;
}

vlCommon::Result<> checkCount(std::uint64_t count, std::uint32_t most, const char* of) {
    if (count <= most) return {};
    return vlCommon::fail(
            fmt::format("It has {} {}, where the device has {} at most", count, of, most));
}

vlCommon::Result<>
checkGeometry(const VkPhysicalDeviceLimits& limits, std::uint64_t vertices, std::uint64_t numbers) {
    auto checked = checkCount(vertices, limits.maxGeometryOutputVertices, "vertices to make");
    if (checked)
        checked = checkCount(numbers, limits.maxGeometryOutputComponents, "numbers a vertex");
    if (checked)
        checked = checkCount(vertices * numbers,
                             limits.maxGeometryTotalOutputComponents,
                             "numbers in all vertices that it makes");
    return checked;
}

} // namespace

vlCommon::Result<> checkStageLimits(SHADER_TYPE stage, std::span<const std::uint32_t> spirv) {
    const VkPhysicalDeviceLimits& limits = Device::getInstance()->limits();
    switch (stage) {
    case SHADER_TYPE::VERTEX:
        return checkCount(variableBytesIn(spirv, spv::StorageClassOutput) / bytesOfNumber,
                          limits.maxVertexOutputComponents,
                          "numbers for the next stage");
    case SHADER_TYPE::HULL: {
        const std::uint64_t taken = primitivesOf(spirv, {}, {}).patchPoints;
        return checkCount(std::max(taken, verticesOf(spirv)),
                          limits.maxTessellationPatchSize,
                          "points in a patch");
    }
    case SHADER_TYPE::GEOMETRY:
        return checkGeometry(limits,
                             verticesOf(spirv),
                             variableBytesIn(spirv, spv::StorageClassOutput) / bytesOfNumber);
    case SHADER_TYPE::COMPUTE:
        return checkCount(variableBytesIn(spirv, spv::StorageClassWorkgroup),
                          limits.maxComputeSharedMemorySize,
                          "bytes that a group shares");
    default:
        return {};
    }
}

} // namespace vlGraphics::vulkan
