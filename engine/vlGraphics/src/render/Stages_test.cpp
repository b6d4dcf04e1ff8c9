#include "render/ShaderTest.h"

#include <vlGraphics/RasterState.h>

namespace vlGraphics {
namespace {

/** Stages between the vertices and the pixels. A texel's number tells what was drawn there. */
class Stages : public ShaderTest {
protected:
    static constexpr const char* passing = "float4 main(float3 p : POSITION) : POSITION"
                                           "{ return float4(p, 1); }";
    static constexpr const char* drawing = "float4 main(float4 at : SV_POSITION, float v : VALUE)"
                                           " : SV_TARGET { return v; }";
    static constexpr const char* output =
            "struct Out { float4 at : SV_POSITION; float v : VALUE; };";

    static Mesh& makeMeshOf(PRIMITIVE_TOPOLOGY topology,
                            const std::vector<vlMaths::Vector>& positions,
                            std::vector<std::uint32_t> indices = {}) {
        MeshData data;
        data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0}};
        data.vertexStride = 12;
        data.vertexCount = static_cast<std::uint32_t>(positions.size());
        data.vertices = vlMemory::Buffer(positions.size() * 12);
        for (std::size_t i = 0; i < positions.size(); ++i)
            std::memcpy(data.vertices.data() + i * 12, &positions[i].x, 12);
        data.indices = std::move(indices);
        data.topology = topology;
        computeBounds(data);
        Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve(newName());
        EXPECT_TRUE(mesh.setData(std::move(data)).has_value());
        EXPECT_TRUE(mesh.load().has_value());
        return mesh;
    }
    /// The middle of a texel.
    static vlMaths::Vector middle(std::uint32_t texel) {
        return {(static_cast<float>(texel) + 0.5F) / texels * 2 - 1, 0, 0.5F};
    }
    Shader& makeGeometry(const std::string& geometry) {
        return makeProgram({{SHADER_TYPE::VERTEX, passing},
                            {SHADER_TYPE::GEOMETRY, output + geometry},
                            {SHADER_TYPE::PIXEL, drawing}});
    }
    /// A quad of a texel round the point, whose second half only shows where it faces the camera.
    static constexpr const char* quads = R"(
[maxvertexcount(4)]
void main(point float4 p[1] : POSITION, inout TriangleStream<Out> stream)
{
    const float half_ = 1.0 / 32;
    for (int i = 0; i < 4; ++i) {
        Out o;
        o.at = p[0] + float4(i % 2 == 0 ? -half_ : half_, i < 2 ? 1 : -1, 0, 0);
        o.v = 3;
        stream.Append(o);
    }
    stream.RestartStrip();
})";
};

TEST_F(Stages, PointsBecomeTriangles) {
    const Mesh& mesh = makeMeshOf(PRIMITIVE_TOPOLOGY::POINT_LIST, {middle(4), middle(9)});
    addDraw(*operations_, mesh, makeGeometry(quads));
    const Numbers numbers = drawNumbers();
    for (const std::uint32_t texel : {4U, 9U})
        EXPECT_EQ(numbers[texel][0], 3);
    for (const std::uint32_t texel : {3U, 5U, 8U, 10U})
        EXPECT_EQ(numbers[texel][0], -1);
}

TEST_F(Stages, GeometryThatTakesOtherPrimitivesIsALineAndNoPicture) {
    const Mesh& mesh = makeMeshOf(PRIMITIVE_TOPOLOGY::LINE_LIST, {middle(4), middle(9)});
    addDraw(*operations_, mesh, makeGeometry(quads));
    for (int frame = 0; frame < 2; ++frame)
        EXPECT_EQ(drawNumbers()[4][0], -1);
    EXPECT_EQ(logged("other primitives"), 1U);
}

TEST_F(Stages, LinesComeWithTheirNeighboursWhereTheyAreWanted) {
    // Behind each other: a neighbour, the line's two ends, the other neighbour.
    const Mesh& mesh = makeMeshOf(PRIMITIVE_TOPOLOGY::LINE_LIST,
                                  {middle(1), middle(2), middle(3), middle(20)});
    Shader& shader = makeGeometry(R"(
[maxvertexcount(3)]
void main(lineadj float4 p[4] : POSITION, inout TriangleStream<Out> stream)
{
    const float x = p[3].x;
    const float2 corners[3] = {float2(-1, 3), float2(x, -1), float2(-1, -1)};
    for (int i = 0; i < 3; ++i) {
        Out o;
        o.at = float4(corners[i], 0.5, 1);
        o.v = (p[0].x + 1) * 16;
        stream.Append(o);
    }
})");
    addDraw(*operations_, mesh, shader);
    const Numbers numbers = drawNumbers();
    EXPECT_EQ(numbers[0][0], 1.5F);
    EXPECT_EQ(numbers[14][0], 1.5F);
    EXPECT_EQ(numbers[21][0], -1);
}

/// A patch whose factors come from the hull stage; what it is divided into faces as the patch does.
std::string hullOf(const std::string& domain,
                   const std::string& topology,
                   int points,
                   int outside,
                   int inside) {
    const std::string count = std::to_string(points);
    std::string factors;
    for (int i = 0; i < outside; ++i)
        factors += "f.edges[" + std::to_string(i) + "] = 4;";
    for (int i = 0; i < inside; ++i)
        factors += inside == 1 ? "f.inside = 4;" : "f.inside[" + std::to_string(i) + "] = 4;";
    const std::string inner = inside == 1   ? "float inside : SV_InsideTessFactor;"
                              : inside == 0 ? ""
                                            : "float inside[2] : SV_InsideTessFactor;";
    return "struct Point { float4 p : POSITION; };"
           "struct Factors { float edges[" +
           std::to_string(outside) + "] : SV_TessFactor; " + inner +
           " };"
           "Factors factorsOf(InputPatch<Point, " +
           count + "> patch) { Factors f; " + factors +
           " return f; }"
           "[domain(\"" +
           domain + "\")] [partitioning(\"integer\")] [outputtopology(\"" + topology +
           "\")] [outputcontrolpoints(" + count +
           ")] [patchconstantfunc(\"factorsOf\")]"
           "Point main(InputPatch<Point, " +
           count +
           "> patch, uint i : SV_OutputControlPointID)"
           "{ Point o; o.p = patch[i].p; return o; }";
}

std::string domainOf(const std::string& domain,
                     int points,
                     int outside,
                     int inside,
                     const std::string& location,
                     const std::string& position) {
    const std::string inner = inside == 1   ? "float inside : SV_InsideTessFactor;"
                              : inside == 0 ? ""
                                            : "float inside[2] : SV_InsideTessFactor;";
    return "struct Point { float4 p : POSITION; };"
           "struct Out { float4 at : SV_POSITION; float v : VALUE; };"
           "struct Factors { float edges[" +
           std::to_string(outside) + "] : SV_TessFactor; " + inner +
           " };"
           "[domain(\"" +
           domain + "\")] Out main(Factors f, " + location +
           " uvw : SV_DomainLocation, const OutputPatch<Point, " + std::to_string(points) +
           "> patch) { Out o; o.at = " + position + "; o.v = 2; return o; }";
}

TEST_F(Stages, PatchesOfAMeshsTrianglesFaceAsTheTrianglesDo) {
    Shader& shader =
            makeProgram({{SHADER_TYPE::VERTEX, passing},
                         {SHADER_TYPE::HULL, hullOf("tri", "triangle_cw", 3, 3, 1)},
                         {SHADER_TYPE::DOMAIN_STAGE,
                          domainOf("tri",
                                   3,
                                   3,
                                   1,
                                   "float3",
                                   "patch[0].p * uvw.x + patch[1].p * uvw.y + patch[2].p * uvw.z")},
                         {SHADER_TYPE::PIXEL, drawing}});
    // Two triangles, of which one turns its back.
    const Mesh& mesh = makeMeshOf(PRIMITIVE_TOPOLOGY::TRIANGLE_LIST,
                                  {{-1, 1, 0.5F}, {0, 1, 0.5F}, {-1, -1, 0.5F}, {1, 1, 0.5F}},
                                  {0, 1, 2, 3, 1, 2});
    addDraw(*operations_, mesh, shader);
    const Numbers numbers = drawNumbers();
    EXPECT_EQ(numbers[2][0], 2);
    EXPECT_EQ(numbers[7][0], 2);
    EXPECT_EQ(numbers[9][0], -1);
    EXPECT_EQ(numbers[14][0], -1);
}

TEST_F(Stages, HullStageSaysHowManyPointsMakeAPatch) {
    Shader& shader = makeProgram({{SHADER_TYPE::VERTEX, passing},
                                  {SHADER_TYPE::HULL, hullOf("quad", "triangle_cw", 4, 4, 2)},
                                  {SHADER_TYPE::DOMAIN_STAGE,
                                   domainOf("quad",
                                            4,
                                            4,
                                            2,
                                            "float2",
                                            "lerp(lerp(patch[0].p, patch[1].p, uvw.x),"
                                            "     lerp(patch[2].p, patch[3].p, uvw.x), uvw.y)")},
                                  {SHADER_TYPE::PIXEL, drawing}});
    const Mesh& mesh = makeMeshOf(PRIMITIVE_TOPOLOGY::TRIANGLE_LIST,
                                  {{-1, 1, 0.5F}, {0, 1, 0.5F}, {-1, -1, 0.5F}, {0, -1, 0.5F}});
    addDraw(*operations_, mesh, shader);
    const Numbers numbers = drawNumbers();
    for (std::uint32_t texel = 0; texel < texels; ++texel)
        EXPECT_EQ(numbers[texel][0], texel < 16 ? 2 : -1) << texel;
}

TEST_F(Stages, PatchesReachTheGeometryStage) {
    Shader& shader = makeProgram(
            {{SHADER_TYPE::VERTEX, passing},
             {SHADER_TYPE::HULL, hullOf("tri", "triangle_cw", 3, 3, 1)},
             {SHADER_TYPE::DOMAIN_STAGE,
              domainOf("tri",
                       3,
                       3,
                       1,
                       "float3",
                       "patch[0].p * uvw.x + patch[1].p * uvw.y + patch[2].p * uvw.z")},
             {SHADER_TYPE::GEOMETRY,
              std::string(output) +
                      "[maxvertexcount(3)] void main(triangle Out p[3],"
                      " inout TriangleStream<Out> s, uint id : SV_PrimitiveID)"
                      "{ for (int i = 0; i < 3; ++i) { Out o = p[i]; o.v += 5; s.Append(o); } }"},
             {SHADER_TYPE::PIXEL, drawing}});
    addDraw(*operations_, fullMesh(), shader);
    EXPECT_EQ(drawNumbers()[11][0], 7);
}

TEST_F(Stages, HullWithoutDomainIsALineAtTheProgram) {
    Program& program = *ProgramManager::getInstance()->createOrRetrieve("half");
    ProgramSourcesHolder sources;
    sources.setVertexMemory(passing);
    sources.setHullMemory(hullOf("tri", "triangle_cw", 3, 3, 1));
    sources.setPixelMemory("float4 main() : SV_TARGET { return 1; }");
    program.setFromMemory(sources);
    ASSERT_TRUE(program.load().has_value());
    ProgramManager::getInstance()->waitForAll();
    EXPECT_FALSE(program.isUsable());
    EXPECT_FALSE(program.getLastCompilationResult().isSuccess());
}

TEST_F(Stages, WhatIsBeyondTheDevicesLimitsIsALineAtItsStage) {
    const auto failureOf = [](PROGRAM_TYPE type, ShaderTest::Stages stages) {
        Program& program = *ProgramManager::getInstance()->createOrRetrieve(newName());
        ProgramSourcesHolder sources;
        for (const auto& [stage, text] : stages)
            sources.setMemory(stage, text);
        program.setType(type);
        program.setFromMemory(sources);
        EXPECT_TRUE(program.load().has_value());
        ProgramManager::getInstance()->waitForAll();
        EXPECT_FALSE(program.isUsable());
        return program.getLastCompilationResult();
    };
    const auto geometry = failureOf(
            PROGRAM_TYPE::GEOMETRY,
            {{SHADER_TYPE::VERTEX, passing},
             {SHADER_TYPE::GEOMETRY,
              "struct Out { float4 at : POSITION; };"
              "[maxvertexcount(100000)] void main(point Out p[1], inout PointStream<Out> s)"
              "{ s.Append(p[0]); }"}});
    EXPECT_EQ(geometry.getStage(), SHADER_TYPE::GEOMETRY);
    EXPECT_EQ(
            geometry.getErrorMessage().find("1: It has 100000 vertices to make, where the device"),
            0U)
            << geometry.getErrorMessage();
    const auto compute =
            failureOf(PROGRAM_TYPE::COMPUTE,
                      {{SHADER_TYPE::COMPUTE,
                        "groupshared float4 s[4000]; RWStructuredBuffer<float4> o : register(u0);"
                        "[numthreads(64, 1, 1)] void main(uint i : SV_GroupIndex)"
                        "{ s[i] = i; GroupMemoryBarrierWithGroupSync(); o[i] = s[i * 60]; }"}});
    EXPECT_EQ(compute.getStage(), SHADER_TYPE::COMPUTE);
    EXPECT_EQ(compute.getErrorMessage().find("1: It has 64000 bytes that a group shares, where"),
              0U)
            << compute.getErrorMessage();
    const auto hull = failureOf(
            PROGRAM_TYPE::PIPELINE,
            {{SHADER_TYPE::VERTEX, passing},
             {SHADER_TYPE::HULL, hullOf("tri", "triangle_cw", 64, 64, 1)},
             {SHADER_TYPE::DOMAIN_STAGE, domainOf("tri", 3, 64, 1, "float3", "patch[0].p")},
             {SHADER_TYPE::PIXEL, drawing}});
    EXPECT_EQ(hull.getStage(), SHADER_TYPE::HULL);
    EXPECT_EQ(hull.getErrorMessage().find("1: It has 64 points in a patch, where the device"), 0U)
            << hull.getErrorMessage();
}

} // namespace
} // namespace vlGraphics
