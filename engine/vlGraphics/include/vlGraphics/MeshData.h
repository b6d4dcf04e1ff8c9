#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMaths/BoundingBox.h>
#include <vlMaths/BoundingSphere.h>
#include <vlMemory/Buffer.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <vector>

namespace vlGraphics {

/** One attribute of a vertex. The shader reads it by its semantic, whatever the order. */
struct VertexAttribute {
    vlMemory::String semantic;       ///< as HLSL writes it: "POSITION", "TEXCOORD", "TEXCOORD1"
    FORMAT format = FORMAT::UNKNOWN; ///< a float format of 1 to 4 components, or R8G8B8A8_UNORM
    std::uint32_t offset = 0;        ///< bytes from the vertex's start
    friend bool operator==(const VertexAttribute&, const VertexAttribute&) = default;
};

/** The whole content of a mesh on the processor side: interleaved vertices and 32-bit indices. */
struct MeshData {
    std::vector<VertexAttribute> attributes;
    std::uint32_t vertexStride = 0; ///< bytes
    std::uint32_t vertexCount = 0;
    vlMemory::Buffer vertices; ///< vertexStride * vertexCount bytes
    std::vector<std::uint32_t>
            indices; ///< each below vertexCount; empty draws the vertices in order
    PRIMITIVE_TOPOLOGY topology = PRIMITIVE_TOPOLOGY::TRIANGLE_LIST;
    vlMaths::BoundingSphere sphere; ///< around all positions, in the mesh's space
    vlMaths::BoundingBox box;
};

/// Bytes of a vertex attribute of that format; 0 for a format that vertices cannot have.
std::uint32_t vertexFormatSize(FORMAT format);
/// Sets sphere and box from the "POSITION" attribute (three floats); both empty when there is none.
void computeBounds(MeshData& mesh);

} // namespace vlGraphics
