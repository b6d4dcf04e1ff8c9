#pragma once
#include "vulkan/GpuBuffer.h"

#include <vlGraphics/Mesh.h>

namespace vlGraphics {

/** Vertices and, behind them, indices. What describes them is copied here, since the mesh may take
 *  other data before it is loaded again. */
struct Mesh::Gpu {
    vulkan::GpuBuffer buffer;
    VkDeviceSize indexOffset = 0; ///< bytes
    std::uint32_t vertexCount = 0;
    std::uint32_t indexCount = 0; ///< 0 draws the vertices in order
    std::uint32_t vertexStride = 0;
    std::uint32_t layoutId = 0;
    PRIMITIVE_TOPOLOGY topology = PRIMITIVE_TOPOLOGY::TRIANGLE_LIST;
    std::vector<VertexAttribute> attributes;
};

} // namespace vlGraphics
