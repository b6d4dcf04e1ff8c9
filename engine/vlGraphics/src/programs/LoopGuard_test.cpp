#include "programs/HlslCompiler.h"
#include "programs/LoopGuard.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <spirv-tools/libspirv.hpp>

#include <string>
#include <vector>

namespace vlGraphics {
namespace {

constexpr auto pixel = static_cast<std::size_t>(SHADER_TYPE::PIXEL);
constexpr auto compute = static_cast<std::size_t>(SHADER_TYPE::COMPUTE);

CompiledProgram compiled(const CompileRequest& request) {
    const CompileOutcome outcome = compileHlsl(request).outcome;
    if (!outcome) {
        ADD_FAILURE() << outcome.error().getErrorMessage();
        return {};
    }
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string faults;
    tools.SetMessageConsumer([&](auto, auto, auto, const char* text) { faults += text; });
    for (const auto& spirv : outcome->spirv)
        EXPECT_TRUE(spirv.empty() || tools.Validate(spirv)) << faults;
    return *outcome;
}

CompileRequest pixelRequest(const std::string& source) {
    CompileRequest request;
    request.sources.setVertexMemory("float4 main(float4 p : POSITION) : SV_POSITION { return p; }");
    request.sources.setPixelMemory(source);
    return request;
}

/// A pixel stage whose second line is the body.
CompileRequest bodyRequest(const std::string& body) {
    return pixelRequest(fmt::format("cbuffer C : register(b0) {{ int n; float limit; }};\n"
                                    "float4 main(float4 p : SV_POSITION) : SV_TARGET {{ float a = "
                                    "p.x; {}\nreturn a; }}",
                                    body));
}

bool isWatched(const std::string& body) {
    CompileRequest request = bodyRequest(body);
    const CompiledProgram watching = compiled(request);
    const bool watches = watching.tellingStages != 0;
    EXPECT_EQ(watching.loops[pixel].empty(), !watches) << body;
    request.boundLoops = false;
    EXPECT_EQ(watching.spirv == compiled(request).spirv, !watches) << body;
    return watches;
}

TEST(LoopGuard, LeavesLoopsAloneThatEvidentlyEndSoon) {
    for (const char* body : {"for (int i = 0; i < 16; ++i) a += sin(a);",
                             "for (uint i = 64; i > 0; i -= 4) { if (a > 3) continue; a += i; }",
                             "for (float t = 0; t <= 1; t += 0.125) a += t * a;",
                             "for (int i = 0; i != 9; i += 3) { if (a > limit) break; a *= 2; }",
                             "for (int i = 0; 4 > i && a < limit; i++) a += i;",
                             "static const int m = 8; for (int i = -m; i < m; ++i) a += i;",
                             "[unroll] for (int i = 0; i < 4; ++i) a += sin(a);",
                             "for (int y = 0; y < 99; ++y) for (int x = 0; x < 99; ++x) a += x;",
                             "int i = 0; while (i < 9) { a += sin(a); ++i; }",
                             "int i = 9; while (i > 0) { i -= 3; if (a > i) continue; a += i; }",
                             "int i = 0; while (i < 9) { ++i; switch (n) { case 1: continue; "
                             "case 2: a += 1; break; default: a *= 2; } a += i; }",
                             "int y = 0; while (y < 9) { int x = 0; while (x < 9) { a += x; x++; } "
                             "y++; }"})
        EXPECT_FALSE(isWatched(body)) << body;
}

TEST(LoopGuard, WatchesLoopsWhoseEndDependsOnValuesOrLiesFarAway) {
    for (const char* body : {"while (true) a += sin(a);",
                             "for (;;) { a += sin(a); if (a > limit) return a; }",
                             "[loop] for (int i = 0; i < n; ++i) a += i;",
                             "do { a += 1; } while (a < limit);",
                             "for (int i = n; i < 16; ++i) a += i;",
                             "for (int i = 0; i < 16; i += n) a += i;",
                             "for (int i = 0; i < 16; ++i) { a += i; if (a > limit) i = 0; }",
                             "for (int i = 0; i < 16; --i) { a += i; if (a > limit) break; }",
                             "for (float t = 0; t < 1; t += 0.00000001) a += t;",
                             "int i = 0; if (a > limit) i = n; for (; i < 4; ++i) a += i;",
                             "int i = 0; while (i < 9) { a += 1; if (a > limit) continue; ++i; }",
                             "int i = 0; while (i < 9) { a += 1; if (a > limit) ++i; }",
                             "int i = 0; while (i != 9) { for (int k = 0; k < 2; ++k) ++i; }",
                             "int i = 0; while (i < 9) { ++i; if (a > limit) --i; a += 1; }",
                             "uint i = 0; while (--i, i > 0) a += 1;",
                             "int i = 9; while (++i, i != 9) a += 1;",
                             "for (float t = 0; t < 1e-39; t += 1e-40) a += t;",
                             "for (float t = 16777200; t < 16777300; t += 1) a += t;",
                             "for (min16float t = 0; t < 2; t += 0.0002) a += t;",
                             "for (int y = 0; y < 999; ++y) for (int x = 0; x < 99; ++x) a += x;"})
        EXPECT_TRUE(isWatched(body)) << body;
}

TEST(LoopGuard, WatchesLoopsWhoseCounterOthersSet) {
    EXPECT_FALSE(compiled(pixelRequest("static int i;\nvoid f() { i = 0; }\n"
                                       "float4 main() : SV_TARGET {\n"
                                       "for (i = 0; i < 9; ++i) f(); return i; }"))
                         .loops[pixel]
                         .empty());
    CompileRequest request;
    request.type = PROGRAM_TYPE::COMPUTE;
    request.sources.setComputeMemory("RWStructuredBuffer<uint> data : register(u0);\n"
                                     "groupshared uint i;\n[numthreads(64, 1, 1)] void main() {\n"
                                     "for (i = 0; i < 9; ++i) data[i] += i; }");
    EXPECT_FALSE(compiled(request).loops[compute].empty());
}

TEST(LoopGuard, CountsWhatIsCalledWithinALoop) {
    const std::string functions =
            "float f(float x) { for (int i = 0; i < 100; ++i) x += sin(x); return x; }\n"
            "float g(float x) { for (int i = 0; i < 100; ++i) x += f(x); return x; }\n";
    const auto watched = [&](int passes) {
        return compiled(pixelRequest(
                                functions +
                                fmt::format("float4 main(float4 p : SV_POSITION) : SV_TARGET {{\n"
                                            "for (int i = 0; i < {}; ++i) p.x += g(p.y);\n"
                                            "return p; }}",
                                            passes)))
                .loops[pixel];
    };
    EXPECT_TRUE(watched(1).empty());
    EXPECT_EQ(watched(100), (std::vector<LoopPlace>{{"", 4}}));
}

TEST(LoopGuard, KnowsTheLineOfEachWatchedLoop) {
    const CompiledProgram program = compiled(pixelRequest(
            "float f(float x) {\n  while (x < 9) x += sin(x);\n  return x;\n}\n"
            "float4 main(float4 p : SV_POSITION) : SV_TARGET {\n"
            "  for (int i = 0; i < 3; ++i)\n    for (int j = 0; j < p.x; ++j)\n"
            "      p.y += f(p.x);\n  do p.z += p.w; while (p.z < 1);\n  return p;\n}"));
    EXPECT_EQ(program.loops[pixel], (std::vector<LoopPlace>{{"", 2}, {"", 7}, {"", 9}}));
}

TEST(LoopGuard, MakesValidModulesOfEveryForm) {
    for (const char* body :
         {"while (true) {}",
          "while (true) { while (true) { } }",
          "while (a < limit) { switch (n) { case 1: a += 1; break; case 2: continue; "
          "default: return a; } }",
          "do { if (a > 5) continue; for (;;) { a += 1; if (a > 7) break; } } while (a < n);",
          "for (int i = 0; i < n; ++i) { if (a > i) discard; a += i; }",
          "float m[4]; for (int i = 0; i < n; ++i) { m[i & 3] += a; a += m[n & 3]; }",
          "while (n > a && limit > a || a == 2) a += ddx(a);"})
        for (const std::uint32_t writing : {~0U, 0U}) {
            CompileRequest request = bodyRequest(body);
            request.writingStages = writing;
            const CompiledProgram program = compiled(request);
            EXPECT_EQ(program.tellingStages, writing & 1U << pixel) << body;
            EXPECT_FALSE(program.loops[pixel].empty()) << body;
        }
}

TEST(LoopGuard, WatchesEveryStageOfAProgram) {
    CompileRequest request;
    request.type = PROGRAM_TYPE::GEOMETRY;
    const std::string loop = "for (int i = 0; i < p.x; ++i) p.y += i; ";
    const std::string vertex = "struct V { float4 at : POSITION; };\n";
    request.sources.setVertexMemory(vertex + "V main(float4 p : POSITION) { " + loop +
                                    "V v; v.at = p; return v; }");
    request.sources.setGeometryMemory(
            vertex +
            "[maxvertexcount(1)]\nvoid main(point V input[1], inout PointStream<V> "
            "stream) { float4 p = input[0].at;\n" +
            loop + "input[0].at = p; stream.Append(input[0]); }");
    const CompiledProgram program = compiled(request);
    const auto loopsOf = [&](SHADER_TYPE stage) {
        return program.loops[static_cast<std::size_t>(stage)];
    };
    EXPECT_EQ(loopsOf(SHADER_TYPE::VERTEX), (std::vector<LoopPlace>{{"", 2}}));
    EXPECT_EQ(loopsOf(SHADER_TYPE::GEOMETRY), (std::vector<LoopPlace>{{"", 4}}));
    EXPECT_EQ(program.tellingStages,
              1U << static_cast<unsigned>(SHADER_TYPE::VERTEX) |
                      1U << static_cast<unsigned>(SHADER_TYPE::GEOMETRY));
}

TEST(LoopGuard, EndsLoopsWithBarriersByACountOfTheirOwn) {
    CompileRequest request;
    request.type = PROGRAM_TYPE::COMPUTE;
    request.sources.setComputeMemory(
            "RWStructuredBuffer<uint> data : register(u0);\ngroupshared uint sums[64];\n"
            "void add(uint i) { sums[i] += sums[63 - i]; GroupMemoryBarrierWithGroupSync(); }\n"
            "[numthreads(64, 1, 1)] void main(uint3 id : SV_GroupThreadID) {\n"
            "sums[id.x] = 1;\nwhile (sums[0] != 0) { add(id.x);\nwhile (data[id.x] > 3) {\n"
            "data[id.x] -= 1; } }\ndata[id.x] = sums[id.x]; }");
    for (const std::uint32_t writing : {~0U, 0U}) {
        request.writingStages = writing;
        EXPECT_EQ(compiled(request).loops[compute], (std::vector<LoopPlace>{{"", 6}, {"", 7}}));
    }
}

} // namespace
} // namespace vlGraphics
