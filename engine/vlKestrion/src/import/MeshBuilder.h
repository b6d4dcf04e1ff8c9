#pragma once
#include "ObjFile.h"

#include <vlGraphics/MeshData.h>

#include <cstddef>
#include <vector>

namespace vlKestrion {

/** Triangles that become one mesh: those of one object with one material. */
struct ModelPart {
    std::uint32_t object = 0;
    std::uint32_t material = 0;
    std::uint32_t triangleCount = 0;
    std::vector<ObjRun> runs;
};

inline constexpr std::size_t maxModelParts = 4096;

/// In the order of first use. Objects of a model with very many are taken together (object 0).
std::vector<ModelPart> partsOf(const ObjFile& file);

/** Turns a part into a mesh of this engine: left-handed (z mirrored), clockwise front faces, V
 * downwards. Equal corners share a vertex; triangles and vertices are in an order that suits the
 * device. Keeps its memory from part to part; the file must outlive it. One thread. */
class MeshBuilder {
public:
    explicit MeshBuilder(const ObjFile& file) : file_(file) {}

    /// Every corner has a normal. Texture coordinates are there when the file has them for the
    /// part, and always when they are needed. A large part is finished on that many threads.
    vlGraphics::MeshData build(const ModelPart& part, bool needsTexcoords, std::size_t threads);

private:
    struct Vertex {
        std::int32_t position = 0;
        std::int32_t texcoord = 0;
        std::uint32_t normal = 0; ///< twice the index, plus 1 where the texture is mirrored
        std::uint32_t next = 0;   ///< vertex with the same position
    };

    void gatherVertices(const ModelPart& part, bool textured, std::vector<std::uint32_t>& indices);
    std::uint32_t vertexOf(const ObjCorner& corner, std::uint32_t mirrored);
    void gatherTangents(const std::vector<std::uint32_t>& indices);
    void addTangent(const std::uint32_t* triangle);
    void fillVertices(bool textured, vlGraphics::MeshData& mesh) const;
    Float2 texcoordOf(std::int32_t index) const {
        return index < 0 ? Float2{} : file_.texcoords[static_cast<std::size_t>(index)];
    }
    const Float3& positionOf(const Vertex& vertex) const {
        return file_.positions[static_cast<std::size_t>(vertex.position)];
    }
    const Float3& normalOf(const Vertex& vertex) const { return file_.normals[vertex.normal / 2]; }

    const ObjFile& file_;
    std::vector<std::uint32_t> head_; ///< first vertex of each of the file's positions
    std::vector<Vertex> vertices_;
    std::vector<Float3> tangents_; ///< sums, in the file's space
};

} // namespace vlKestrion
