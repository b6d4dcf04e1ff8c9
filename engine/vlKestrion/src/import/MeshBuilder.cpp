#include "MeshBuilder.h"

#include "Parallel.h"

#include <meshoptimizer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <unordered_map>

namespace vlKestrion {

namespace {

constexpr std::uint32_t nothing = 0xFFFFFFFF;
/// Where more vertices share a position, equal ones may stay apart: no file takes forever.
constexpr std::uint32_t maxSteps = 1024;
/// Of one vertex; where there are more, the better order would take its time for each pair of them.
constexpr std::uint32_t maxTriangles = 1024;
constexpr std::uint32_t cacheSize = 16; ///< vertices
constexpr std::size_t manyIndices = std::size_t{3} << 16U;

vlMemory::Buffer bytesFor(std::size_t vertices, std::uint32_t stride) {
    return vlMemory::Buffer(vertices * stride);
}

bool isCrowded(const std::vector<std::uint32_t>& indices, std::size_t vertices) {
    std::vector<std::uint32_t> triangles(vertices);
    for (const std::uint32_t index : indices)
        if (++triangles[index] > maxTriangles) return true;
    return false;
}

/// An order of triangles in which the device finds vertices it has just processed.
void orderTriangles(std::vector<std::uint32_t>& indices,
                    std::size_t vertices,
                    std::size_t threads) {
    const std::size_t triangles = indices.size() / 3;
    const std::size_t pieces = indices.size() < manyIndices ? 1 : threads;
    const bool crowded = isCrowded(indices, vertices);
    inParallel(pieces, threads, [&](std::size_t piece, std::size_t) {
        const std::size_t first = 3 * (triangles * piece / pieces);
        const std::size_t end = 3 * (triangles * (piece + 1) / pieces);
        std::uint32_t* part = indices.data() + first;
        if (crowded) {
            meshopt_optimizeVertexCacheFifo(part, part, end - first, vertices, cacheSize);
        } else {
            meshopt_optimizeVertexCache(part, part, end - first, vertices);
        }
    });
}

/// Any direction across it.
Float3 perpendicular(const Float3& normal) {
    const Float3 other = std::fabs(normal.x) < 0.9F ? Float3{1, 0, 0} : Float3{0, 1, 0};
    return normalised(other - normal * dot(other, normal), {1, 0, 0});
}

std::vector<ModelPart> gatherParts(const ObjFile& file, bool byObject) {
    std::vector<ModelPart> parts;
    std::unordered_map<std::uint64_t, std::size_t> known;
    for (const ObjRun& run : file.runs) {
        const std::uint32_t object = byObject ? run.object : 0;
        const std::uint64_t key = std::uint64_t{object} << 32U | run.material;
        const auto [place, isNew] = known.try_emplace(key, parts.size());
        if (isNew) parts.push_back({object, run.material, 0, {}});
        ModelPart& part = parts[place->second];
        part.runs.push_back(run);
        part.triangleCount += run.triangleCount;
    }
    return parts;
}

} // namespace

std::vector<ModelPart> partsOf(const ObjFile& file) {
    std::vector<ModelPart> parts = gatherParts(file, true);
    return parts.size() > maxModelParts ? gatherParts(file, false) : parts;
}

vlGraphics::MeshData
MeshBuilder::build(const ModelPart& part, bool needsTexcoords, std::size_t threads) {
    const auto anyTexcoord = [&](const ObjRun& run) {
        const auto first = file_.corners.begin() + std::ptrdiff_t{run.firstTriangle} * 3;
        return std::any_of(first,
                           first + std::ptrdiff_t{run.triangleCount} * 3,
                           [](const ObjCorner& corner) { return corner.texcoord >= 0; });
    };
    const bool textured =
            needsTexcoords || std::any_of(part.runs.begin(), part.runs.end(), anyTexcoord);

    vlGraphics::MeshData mesh;
    gatherVertices(part, textured, mesh.indices);
    if (textured) gatherTangents(mesh.indices);
    using vlGraphics::FORMAT;
    mesh.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0},
                       {"NORMAL", FORMAT::R32G32B32_FLOAT, 12}};
    if (textured) {
        mesh.attributes.push_back({"TEXCOORD", FORMAT::R32G32_FLOAT, 24});
        mesh.attributes.push_back({"TANGENT", FORMAT::R32G32B32A32_FLOAT, 32});
    }
    mesh.vertexStride = textured ? 48 : 24;
    mesh.vertexCount = static_cast<std::uint32_t>(vertices_.size());
    mesh.vertices = bytesFor(vertices_.size(), mesh.vertexStride);
    fillVertices(textured, mesh);
    tangents_.clear();
    vertices_.clear();
    orderTriangles(mesh.indices, mesh.vertexCount, threads);
    meshopt_optimizeVertexFetch(mesh.vertices.data(),
                                mesh.indices.data(),
                                mesh.indices.size(),
                                mesh.vertices.data(),
                                mesh.vertexCount,
                                mesh.vertexStride);
    vlGraphics::computeBounds(mesh);
    return mesh;
}

void MeshBuilder::gatherVertices(const ModelPart& part,
                                 bool textured,
                                 std::vector<std::uint32_t>& indices) {
    if (head_.empty()) head_.assign(file_.positions.size(), nothing);
    vertices_.clear();
    indices.reserve(std::size_t{part.triangleCount} * 3);
    for (const ObjRun& run : part.runs) {
        const ObjCorner* corner = file_.corners.data() + std::size_t{run.firstTriangle} * 3;
        for (std::uint32_t triangle = 0; triangle < run.triangleCount; ++triangle, corner += 3) {
            std::uint32_t mirrored = 0;
            if (textured) {
                const Float2 a = texcoordOf(corner[0].texcoord);
                const Float2 b = texcoordOf(corner[1].texcoord);
                const Float2 c = texcoordOf(corner[2].texcoord);
                const float area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
                mirrored = area < 0 ? 1 : 0;
            }
            // Mirroring the space turns triangles over once, clockwise front faces once more.
            indices.push_back(vertexOf(corner[0], mirrored));
            indices.push_back(vertexOf(corner[2], mirrored));
            indices.push_back(vertexOf(corner[1], mirrored));
        }
    }
    for (const Vertex& vertex : vertices_)
        head_[static_cast<std::size_t>(vertex.position)] = nothing;
}

std::uint32_t MeshBuilder::vertexOf(const ObjCorner& corner, std::uint32_t mirrored) {
    const std::uint32_t normal = static_cast<std::uint32_t>(corner.normal) * 2 + mirrored;
    std::uint32_t& head = head_[static_cast<std::size_t>(corner.position)];
    std::uint32_t steps = 0;
    for (std::uint32_t at = head; at != nothing && steps < maxSteps; at = vertices_[at].next) {
        ++steps;
        const Vertex& vertex = vertices_[at];
        if (vertex.texcoord == corner.texcoord && vertex.normal == normal) return at;
    }
    vertices_.push_back({corner.position, corner.texcoord, normal, head});
    head = static_cast<std::uint32_t>(vertices_.size() - 1);
    return head;
}

void MeshBuilder::gatherTangents(const std::vector<std::uint32_t>& indices) {
    tangents_.assign(vertices_.size(), {});
    for (std::size_t corner = 0; corner < indices.size(); corner += 3)
        addTangent(&indices[corner]);
}

/// Adds the triangle's direction of growing U to its vertices, by the angle at each.
void MeshBuilder::addTangent(const std::uint32_t* triangle) {
    std::array<Float3, 3> points;
    std::array<Float2, 3> texcoords;
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const Vertex& vertex = vertices_[triangle[corner]];
        points[corner] = positionOf(vertex);
        texcoords[corner] = texcoordOf(vertex.texcoord);
    }
    const Float2 first{texcoords[1].x - texcoords[0].x, texcoords[1].y - texcoords[0].y};
    const Float2 second{texcoords[2].x - texcoords[0].x, texcoords[2].y - texcoords[0].y};
    const float area = first.x * second.y - second.x * first.y;
    if (area == 0 || !std::isfinite(area)) return;
    const Float3 along = (points[1] - points[0]) * second.y - (points[2] - points[0]) * first.y;
    const Float3 direction = normalised(area < 0 ? along * -1.0F : along, {});
    std::array<Float3, 3> sides;
    for (std::size_t corner = 0; corner < 3; ++corner)
        sides[corner] = normalised(points[(corner + 1) % 3] - points[corner], {});
    for (std::size_t corner = 0; corner < 3; ++corner) {
        const Float3& normal = normalOf(vertices_[triangle[corner]]);
        const Float3 flat = normalised(direction - normal * dot(direction, normal), {});
        const float cosine = -dot(sides[corner], sides[(corner + 2) % 3]);
        const float angle = std::acos(std::clamp(cosine, -1.0F, 1.0F));
        Float3& sum = tangents_[triangle[corner]];
        sum = sum + flat * angle;
    }
}

void MeshBuilder::fillVertices(bool textured, vlGraphics::MeshData& mesh) const {
    std::byte* target = mesh.vertices.data();
    for (std::size_t index = 0; index < vertices_.size(); ++index) {
        const Vertex& vertex = vertices_[index];
        const Float3& position = positionOf(vertex);
        const Float3& normal = normalOf(vertex);
        std::array<float, 12> values{
                position.x, position.y, -position.z, normal.x, normal.y, -normal.z};
        if (textured) {
            const Float2 texcoord = texcoordOf(vertex.texcoord);
            const Float3 tangent = normalised(tangents_[index], perpendicular(normal));
            values[6] = texcoord.x;
            values[7] = 1 - texcoord.y;
            values[8] = tangent.x;
            values[9] = tangent.y;
            values[10] = -tangent.z;
            values[11] = vertex.normal % 2 == 0 ? 1.0F : -1.0F;
        }
        std::memcpy(target, values.data(), mesh.vertexStride);
        target += mesh.vertexStride;
    }
}

} // namespace vlKestrion
