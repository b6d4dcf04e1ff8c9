#include "MeshBuilder.h"
#include "Normals.h"

#include <vlGraphics/MeshFile.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <set>

namespace vlKestrion {
namespace {

// A cube of six quads around the origin, front faces counter-clockwise.
constexpr vlMemory::StringView cube =
        "v -1 -1 1\nv 1 -1 1\nv 1 1 1\nv -1 1 1\nv -1 -1 -1\nv 1 -1 -1\nv 1 1 -1\nv -1 1 -1\n"
        "f 1 2 3 4\nf 6 5 8 7\nf 2 6 7 3\nf 5 1 4 8\nf 4 3 7 8\nf 5 6 2 1\n";

using Vertex = std::array<float, 12>; // position, normal, texture coordinates, tangent

std::vector<Vertex> verticesOf(const vlGraphics::MeshData& mesh) {
    std::vector<Vertex> vertices(mesh.vertexCount);
    for (std::size_t place = 0; place < vertices.size(); ++place)
        std::memcpy(vertices[place].data(),
                    mesh.vertices.data() + place * mesh.vertexStride,
                    mesh.vertexStride);
    return vertices;
}

Float3 positionOf(const Vertex& v) {
    return {v[0], v[1], v[2]};
}
Float3 normalOf(const Vertex& v) {
    return {v[3], v[4], v[5]};
}
Float3 tangentOf(const Vertex& v) {
    return {v[8], v[9], v[10]};
}

vlGraphics::MeshData built(vlMemory::String text, bool needsTexcoords = false) {
    auto file = parseObj(text, "a.obj", 1);
    EXPECT_TRUE(file.has_value()) << file.error().message;
    computeMissingNormals(*file, 2);
    const auto parts = partsOf(*file);
    EXPECT_EQ(parts.size(), 1U);
    auto mesh = MeshBuilder(*file).build(parts.front(), needsTexcoords, 2);
    const auto good = vlGraphics::checkMeshData(mesh);
    EXPECT_TRUE(good.has_value()) << good.error().message;
    return mesh;
}

TEST(MeshBuilder, ACubeIsMirroredIntoTheLeftHandedWorldFacesOutward) {
    const auto mesh = built(vlMemory::String(cube));
    const auto vertices = verticesOf(mesh);
    EXPECT_EQ(mesh.indices.size(), 36U);
    for (std::size_t corner = 0; corner < mesh.indices.size(); corner += 3) {
        const Float3 a = positionOf(vertices[mesh.indices[corner]]);
        const Float3 b = positionOf(vertices[mesh.indices[corner + 1]]);
        const Float3 c = positionOf(vertices[mesh.indices[corner + 2]]);
        // In a left-handed world this product points to where the triangle looks clockwise from.
        const Float3 outward = cross(b - a, c - a);
        EXPECT_GT(dot(outward, a + b + c), 0);
        EXPECT_GT(dot(outward, normalOf(vertices[mesh.indices[corner]])), 0);
    }
    EXPECT_FLOAT_EQ(mesh.box.lowest.x, -1);
    EXPECT_FLOAT_EQ(mesh.box.highest.z, 1);
}

TEST(MeshBuilder, SharpEdgesStaySharpUnlessTheFileSmoothsThem) {
    EXPECT_EQ(built(vlMemory::String(cube)).vertexCount, 24U);
    EXPECT_EQ(built("s 1\n" + vlMemory::String(cube)).vertexCount, 8U);
    EXPECT_EQ(built("s off\n" + vlMemory::String(cube)).vertexCount, 24U);
}

TEST(MeshBuilder, SmoothedCornersPointAwayFromTheMiddleWhateverTheCut) {
    for (const Vertex& vertex : verticesOf(built("s 1\n" + vlMemory::String(cube)))) {
        const Float3 expected = normalised(positionOf(vertex), {});
        EXPECT_NEAR(dot(expected, normalOf(vertex)), 1, 1e-5);
    }
}

TEST(MeshBuilder, GivenNormalsAreKeptAndZeroOnesReplaced) {
    const auto mesh = built("v 0 0 0\nv 1 0 0\nv 0 1 0\nvn 0 3 4\nvn 0 0 0\nf 1//1 2//1 3//2\n");
    std::set<std::array<float, 3>> normals;
    for (const Vertex& vertex : verticesOf(mesh))
        normals.insert({vertex[3], vertex[4], vertex[5]});
    EXPECT_EQ(normals, (std::set<std::array<float, 3>>{{0, 0.6F, -0.8F}, {0, 0, -1}}));
}

TEST(MeshBuilder, TangentsFollowTheTextureAndMirroredOnesStayApart) {
    // Two quads that share an edge; the second runs through the texture backwards.
    const auto mesh = built("v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\n"
                            "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n"
                            "f 1/1 2/2 3/3 4/4\nf 2/2 5/1 6/4 3/3\n");
    EXPECT_EQ(mesh.vertexStride, 48U);
    EXPECT_EQ(mesh.vertexCount, 8U);
    for (const Vertex& vertex : verticesOf(mesh)) {
        const Float3 along = tangentOf(vertex);
        // U grows to the right on the first quad and to the left on the second; V grows downwards.
        const Float3 down = cross(normalOf(vertex), along) * vertex[11];
        EXPECT_NEAR(std::fabs(along.x), 1, 1e-6);
        EXPECT_NEAR(down.y, -1, 1e-6);
        EXPECT_EQ(along.x > 0, vertex[11] > 0);
    }
}

TEST(MeshBuilder, TexturesAreTurnedUpright) {
    const auto mesh = built("v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0.25\nf 1/1 2/1 3/1\n");
    for (const Vertex& vertex : verticesOf(mesh)) {
        EXPECT_FLOAT_EQ(vertex[7], 0.75F);
        EXPECT_NEAR(dot(tangentOf(vertex), normalOf(vertex)), 0, 1e-6);
    }
    EXPECT_EQ(built(vlMemory::String(cube), true).vertexStride, 48U);
}

TEST(MeshBuilder, HugeAndTinyModelsSurvive) {
    for (const vlMemory::StringView scale : {"e15", "e-15"}) {
        const vlMemory::String unit(scale);
        const auto mesh =
                built("v 0 0 0\nv 1" + unit + " 0 0\nv 0 1" + unit + " 0\nf 1 2 3\n", true);
        EXPECT_NEAR(verticesOf(mesh)[0][5], -1, 1e-5);
    }
}

TEST(MeshBuilder, WhereVeryManyTrianglesMeetNothingTakesForever) {
    vlMemory::String text = "v 0 0 1\n";
    for (int corner = 0; corner < 60000; ++corner)
        text += "v " + std::to_string(corner) + " 1 0\nvt 0 " + std::to_string(corner) + "\n";
    for (int corner = 0; corner + 1 < 60000; ++corner) {
        const auto number = [](int value) { return std::to_string(value); };
        text += "f 1/" + number(corner + 1) + " " + number(corner + 2) + "/1 " +
                number(corner + 3) + "/1\n";
    }
    EXPECT_EQ(built(std::move(text)).indices.size(), 59999U * 3U);
}

} // namespace
} // namespace vlKestrion
