#include "programs/DefaultResources.h"
#include "programs/HlslCompiler.h"
#include "vulkan/SpirvWords.h"

#include <fmt/format.h>
#include <glslang/SPIRV/spirv.hpp>
#include <gtest/gtest.h>
#include <spirv-tools/libspirv.hpp>

#include <string>
#include <thread>
#include <vector>

namespace vlGraphics {
namespace {

using vlMemory::StringView;

constexpr StringView plainVertex = R"(
vlConstantBufferDecl(PassBuffer, 0)
{
    vlFloat4x4 viewMat;
    vlFloat4x4 projMat;
};

#ifdef VL_HLSL
vlFloat4 main(vlFloat4 vPos : POSITION, vlFloat4x4 worldMat : WORLD_MATRIX) : SV_POSITION
{
    return vlMul(projMat, vlMul(viewMat, vlMul(worldMat, vPos)));
}
#endif
)";
constexpr StringView plainPixel =
        "float4 main() : SV_TARGET { return float4(0.5, 0.5, 0.5, 1.0); }";

void expectValid(const CompiledProgram& program) {
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string faults;
    tools.SetMessageConsumer([&](auto, auto, auto, const char* text) { faults += text; });
    for (const auto& spirv : program.spirv) {
        if (spirv.empty()) continue;
        EXPECT_EQ(spirv[1], 0x00010300U);
        EXPECT_TRUE(tools.Validate(spirv)) << faults;
    }
}

CompileOutcome compile(StringView vertex, StringView pixel) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory(vertex);
    sources.setPixelMemory(pixel);
    CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    if (outcome) expectValid(*outcome);
    return outcome;
}

CompileOutcome compileCompute(StringView text) {
    ProgramSourcesHolder sources;
    sources.setComputeMemory(text);
    CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::COMPUTE, sources, true);
    if (outcome) expectValid(*outcome);
    return outcome;
}

std::string pixelError(StringView pixel) {
    const CompileOutcome outcome = compile(plainVertex, pixel);
    if (outcome) return "compiled";
    EXPECT_EQ(outcome.error().getStage(), SHADER_TYPE::PIXEL);
    return outcome.error().getErrorMessage();
}

std::string describe(const ProgramReflection& reflection) {
    std::string text;
    for (const ReflectedResource& resource : reflection.resources) {
        text += "btsu"[static_cast<std::size_t>(resource.resourceClass)];
        text += std::to_string(resource.slot) + "." + std::to_string(resource.space) + " " +
                resource.name + (resource.isBuffer ? " buffer" : "") + " m" +
                std::to_string(resource.stageMask) + "\n";
    }
    for (const ReflectedInput& input : reflection.inputs)
        text += input.semantic + "@" + std::to_string(input.location) + " f" +
                std::to_string(static_cast<int>(input.format)) + "\n";
    return text;
}

/// Location of a stage's variable whose name ends so; -1 when there is none.
int locationOf(const std::vector<std::uint32_t>& spirv, StringView nameEnd) {
    std::uint32_t id = 0;
    for (std::size_t at = 5; at < spirv.size(); at += spirv[at] >> 16U) {
        const std::uint32_t op = spirv[at] & 0xFFFFU;
        if (op == spv::OpName &&
            StringView(reinterpret_cast<const char*>(&spirv[at + 2])).ends_with(nameEnd))
            id = spirv[at + 1];
        if (op == spv::OpDecorate && spirv[at + 1] == id &&
            spirv[at + 2] == spv::DecorationLocation)
            return static_cast<int>(spirv[at + 3]);
    }
    return -1;
}

TEST(HlslCompiler, CompilesThePortableSpelling) {
    const CompileOutcome outcome = compile(plainVertex, plainPixel);
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    EXPECT_EQ(describe(outcome->reflection),
              "b0.0 PassBuffer m1\nPOSITION@0 f2\nWORLD_MATRIX@8 f2\n");
    EXPECT_EQ(outcome->reflection.resources[0].byteSize, 128U);
    EXPECT_EQ(outcome->reflection.inputs[1].locationCount, 4U);
    EXPECT_EQ(outcome->reflection.colorTargetCount, 1U);
}

TEST(HlslCompiler, LeavesThePortableSpellingOutWhenAsked) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory(plainVertex);
    sources.setPixelMemory(plainPixel);
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, false);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().getStage(), SHADER_TYPE::VERTEX);
    EXPECT_EQ(outcome.error().getErrorMessage().substr(0, 2), "2:");
}

TEST(HlslCompiler, DefaultShadersCompileAndUseWhatTheirShadersBind) {
    for (const DefaultShader& shader : defaultShaders) {
        const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sourcesOf(shader), true);
        ASSERT_TRUE(outcome) << shader.name << ": " << outcome.error().getErrorMessage();
        expectValid(*outcome);
        std::string expected =
                shader.normal || shader.uv ? "b0.0 PassBuffer m1\n" : "b0.0 PassBuffer m17\n";
        if (shader.uv) expected += "t0.0 colors m16\ns0.0 colorSampler m16\n";
        expected += "POSITION@0 f2\n";
        if (shader.normal) expected += "NORMAL@1 f6\n";
        if (shader.uv) expected += "TEXCOORD@2 f16\n";
        EXPECT_EQ(describe(outcome->reflection), expected + "WORLD_MATRIX@8 f2\n");
        EXPECT_EQ(outcome->reflection.resources[0].byteSize, 144U);
    }
}

TEST(HlslCompiler, RegistersOfAllClassesAndSpacesStayApart) {
    const CompileOutcome outcome = compile(plainVertex, R"(
        cbuffer A : register(b0) { float4 a; };
        cbuffer B : register(b0, space1) { float4 b; };
        cbuffer C : register(b31, space7) { float4 c; };
        Texture2D tex : register(t0);
        StructuredBuffer<float4> points : register(t0, space1);
        Texture2D unregistered;
        SamplerState smp : register(s0);
        SamplerState smp1 : register(s0, space1);
        RWStructuredBuffer<float4> written : register(u0);
        RWTexture2D<float4> image : register(u0, space1);
        float loose;
        float4 main() : SV_TARGET {
            written[0] = b;
            image[uint2(0, 0)] = c;
            return a + points[1] + loose + tex.Sample(smp, float2(0, 0)) +
                   unregistered.Sample(smp1, float2(0, 0));
        })");
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    // The vertex stage's buffer and the pixel stage's are of one address: one resource.
    EXPECT_EQ(describe(outcome->reflection),
              "b0.0 PassBuffer m17\nb1.0 $Global m16\nt0.0 tex m16\nt1.0 unregistered m16\n"
              "s0.0 smp m16\nu0.0 written buffer m16\n"
              "b0.1 B m16\nt0.1 points buffer m16\ns0.1 smp1 m16\nu0.1 image m16\n"
              "b31.7 C m16\nPOSITION@0 f2\nWORLD_MATRIX@8 f2\n");
}

TEST(HlslCompiler, RefusesWhatCannotBeBound) {
    EXPECT_EQ(pixelError("Texture2D far : register(t128); SamplerState s : register(s0);\n"
                         "float4 main() : SV_TARGET { return far.Sample(s, float2(0, 0)); }"),
              "2: 'far': register t128 is past t127");
    EXPECT_EQ(pixelError("cbuffer Far : register(b0, space8) { float4 a; };\n"
                         "float4 main() : SV_TARGET { return a; }"),
              "2: 'Far': space8 is past space7");
    EXPECT_EQ(pixelError("SamplerState s : register(s0);\nTexture2D many[4] : register(t126);\n"
                         "float4 main() : SV_TARGET { return many[1].Sample(s, float2(0, 0)); }"),
              "3: 'many': register t129 is past t127");
    const auto shared = [](StringView one, StringView two) {
        return pixelError(fmt::format("SamplerState s : register(s0);\n{} : register(t0);\n"
                                      "{};\nfloat4 main() : SV_TARGET {{ return "
                                      "one.Load(0)[0] + two.Load(0)[0]; }}",
                                      one,
                                      two));
    };
    EXPECT_EQ(shared("Texture2D<float4> one", "Texture2D<float4> two : register(t0)"), "compiled");
    EXPECT_EQ(shared("Texture2D<float4> one", "Texture3D<float4> two : register(t0)"),
              "4: 'one' and 'two' are both at register t0, space0");
    EXPECT_EQ(shared("Texture2D<float4> one", "Texture2D<uint4> two : register(t0)"),
              "4: 'one' and 'two' are both at register t0, space0");
    EXPECT_EQ(shared("Buffer<float4> one", "StructuredBuffer<float4> two : register(t0)"),
              "4: 'two' and 'one' are both at register t0, space0");
    EXPECT_EQ(pixelError("cbuffer A : register(b0) { float4 a; };\n"
                         "cbuffer B : register(b0) { float4x4 b; };\n"
                         "float4 main() : SV_TARGET { return a + b[1]; }"),
              "3: 'PassBuffer' and 'B' are both at register b0, space0");
    EXPECT_EQ(pixelError("SamplerState s : register(s0); Texture2D many[3] : register(t1);\n"
                         "Texture2D one : register(t3);\n"
                         "float4 main(float4 p : SV_POSITION) : SV_TARGET { return "
                         "many[int(p.x)].Sample(s, p.xy) + one.Sample(s, p.xy); }"),
              "3: 'many' and 'one' are both at register t3, space0");
}

std::string errors(StringView vertex, StringView pixel) {
    const CompileOutcome outcome = compile(vertex, pixel);
    if (outcome) return "compiled";
    std::string all;
    for (const ProgramDiagnostic& one : outcome.error().getDiagnostics())
        all += fmt::format("{}:{}: {}\n", static_cast<int>(one.stage), one.line, one.text);
    return all;
}

TEST(HlslCompiler, TellsTheFaultsOfEveryStage) {
    EXPECT_EQ(errors("float4 main() : SV_POSITION {\nreturn a; }",
                     "float4 main() : SV_TARGET { return b; }"),
              "0:2: 'a' : unknown variable\n4:1: 'b' : unknown variable\n");
    EXPECT_EQ(errors("", "\n\nfloat4 other() { return 1; }"),
              "0:1: the source is empty\n4:1: there is no function 'main'\n");
    EXPECT_EQ(errors(plainVertex,
                     "float f(float a) { return f(a); }\n"
                     "float4 main(float4 p : SV_POSITION) : SV_TARGET { return f(p.x); }")
                      .substr(0, 24),
              "4:1: Recursion detected:");
    EXPECT_EQ(
            errors(plainVertex, "#line 70 \"other.hlsl\"\nfloat4 main() : SV_TARGET { return b; }"),
            "4:70: 'b' : unknown variable\n");
}

TEST(HlslCompiler, WhatAStageReadsTheOneBeforeMustWrite) {
    constexpr StringView writer = "struct V { float4 p : SV_POSITION; float2 uv : TEXCOORD; uint4 "
                                  "id : ID; float more : MORE; };\n"
                                  "V main(float4 p : POSITION) { V v; v.p = p; v.uv = p.xy; v.id = "
                                  "1; v.more = 1; return v; }";
    const auto reading = [&](StringView inputs, StringView sum) {
        return errors(writer,
                      fmt::format("float4 main(\n{}) : SV_TARGET {{ return {}; }}", inputs, sum));
    };
    EXPECT_EQ(reading("nointerpolation uint2 a : ID,\nfloat2 b : TEXCOORD0", "float4(a, b)"),
              "compiled");
    EXPECT_EQ(reading("float2 a : TEXCOORD,\nfloat4 b : COLOR1", "b"),
              "4:3: 'COLOR1' is read, but the vertex stage does not write it\n");
    EXPECT_EQ(reading("float2 a : TEXCOORD,\nfloat4 b : COLOR1", "a.xyxy"), "compiled")
            << "an input that is not read may come from nowhere";
    EXPECT_EQ(reading("float4 a : TEXCOORD", "a"),
              "4:2: 'TEXCOORD' is read as float4, but the vertex stage writes float2\n");
    EXPECT_EQ(reading("float4 a : ID", "a"),
              "4:2: 'ID' is read as float4, but the vertex stage writes uint4\n");
}

TEST(HlslCompiler, VaryingsMeetBySemanticWhateverTheOrder) {
    const CompileOutcome outcome = compile(
            R"(struct Out { float4 clip : SV_POSITION; float2 uv : TEXCOORD0; float3 normal : NORMAL;
                            float4x4 frame : FRAME; float4 tint : COLOR; };
               Out main(float4 p : POSITION, float3 n : NORMAL) {
                   Out o; o.clip = p; o.uv = p.xy; o.normal = n; o.tint = p.zzzz;
                   o.frame = float4x4(p, p, p, p); return o; })",
            R"(struct In { float4 tint : COLOR0; float3 normal : normal; float4x4 frame : FRAME;
                           float2 uv : TEXCOORD; };
               float4 main(In i) : SV_TARGET {
                   return i.tint + float4(i.normal, 1) + i.uv.xyxy + i.frame[2]; })");
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    const auto& vertex = outcome->spirv[static_cast<std::size_t>(SHADER_TYPE::VERTEX)];
    const auto& pixel = outcome->spirv[static_cast<std::size_t>(SHADER_TYPE::PIXEL)];
    for (const StringView name : {"uv", "normal", "frame", "tint"}) {
        EXPECT_GE(locationOf(vertex, std::string("t.") + std::string(name)), 0) << name;
        EXPECT_EQ(locationOf(vertex, std::string("t.") + std::string(name)),
                  locationOf(pixel, std::string("i.") + std::string(name)))
                << name;
    }
}

TEST(HlslCompiler, VertexInputsFollowSemanticsNotDeclarationOrder) {
    const CompileOutcome outcome = compile(
            R"(struct In { uint4 picked : PICKINGID; float2 second : TEXCOORD1; float3 t : TANGENT;
                           float4x4 world : WORLD_MATRIX; float2 first : TexCoord0;
                           float4 dropped : COLOR; float3 p : POSITION; };
               float4 main(In i) : SV_POSITION {
                   return mul(i.world, float4(i.p + i.t, 1)) + i.first.xyxy + i.second.xyxy +
                          float4(i.picked); })",
            plainPixel);
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    EXPECT_EQ(describe(outcome->reflection),
              "POSITION@0 f6\nTEXCOORD1@1 f16\nTEXCOORD@2 f16\nTANGENT@4 f6\n"
              "WORLD_MATRIX@8 f2\nPICKINGID@12 f3\n");
}

TEST(HlslCompiler, RefusesOneSemanticOnTwoInputs) {
    const CompileOutcome outcome =
            compile("float4 main(float4 a : POSITION, float4 b : POSITION0) : SV_POSITION {\n"
                    "return a + b; }",
                    plainPixel);
    ASSERT_FALSE(outcome);
    EXPECT_NE(outcome.error().getErrorMessage().find("'POSITION': the semantic is on two inputs"),
              std::string::npos);
}

TEST(HlslCompiler, ErrorsNameTheLineOfTheText) {
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET\n{\n    return colour;\n}"),
              "3: 'colour' : unknown variable");
    EXPECT_EQ(pixelError("// 1\n// 2\n// 3\nfloat4 main() : SV_TARGET\n{\n    float a = 1;\n"
                         "    float b = = a;\n    return b;\n}")
                      .substr(0, 2),
              "7:");
    EXPECT_EQ(pixelError("float4 other() : SV_TARGET { return 0; }"),
              "1: there is no function 'main'");
    EXPECT_EQ(pixelError(" \n\t\r\n"), "1: the source is empty");
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET\n{ return 1; }\n// caf\xC3"),
              "3: the text is not valid UTF-8");
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET {\n#include \"a.hlsl\"\nreturn 1; }")
                      .substr(0, 2),
              "2:");
}

TEST(HlslCompiler, PixelOutputsGetTheirTargets) {
    const auto targetsOf = [](StringView pixel) {
        const CompileOutcome outcome = compile(plainVertex, pixel);
        return outcome ? fmt::format("{:b}", outcome->reflection.colorTargetMask)
                       : std::string(outcome.error().getErrorMessage());
    };
    const std::string pair = "struct O { float4 a[2] : SV_TARGET1; float4 b";
    const std::string made = " main() { O o; o.a[0] = o.a[1] = 1; o.b = 2; return o; }";
    EXPECT_EQ(targetsOf(pair + " : SV_TARGET4; }; O" + made), "10110");
    EXPECT_EQ(targetsOf(pair + " : SV_TARGET2; }; O" + made),
              "1: SV_TARGET2: another output has that target");
    EXPECT_EQ(targetsOf(pair + "; }; O" + made), "111");
    EXPECT_EQ(targetsOf("float4 main() { return 1; }"), "1");
    EXPECT_EQ(targetsOf("float4 main(out float4 a : SV_TARGET, out float4 b : GLOW) : COLOR1 {"
                        "a = b = 1; return 1; }"),
              "111");
    EXPECT_EQ(targetsOf("struct O { float4 a; float4 b; };"
                        "O main() : SV_TARGET1 { O o; o.a = o.b = 1; return o; }"),
              "110");
    EXPECT_EQ(targetsOf("float4 main() : SV_TARGET8 { return 1; }"),
              "1: SV_TARGET8 is past SV_TARGET7");
}

TEST(HlslCompiler, NothingFeedsTheComputeStage) {
    const auto told = [](StringView written) {
        const CompileOutcome outcome = compileCompute(
                fmt::format("RWBuffer<uint> b : register(u0);\n"
                            "[numthreads(1, 1, 1)] void main(uint i : WHICH) {{ b[0] = {}; }}",
                            written));
        return outcome ? "compiled" : outcome.error().getErrorMessage();
    };
    EXPECT_EQ(told("i"), "2: 'WHICH' is read, but nothing feeds the compute stage");
    EXPECT_EQ(told("1"), "compiled");
}

TEST(HlslCompiler, ResourcesThatFunctionsGetAreNotCopied) {
    const std::string arrays = "Texture2D a[2] : register(t0); Texture2D b[2] : register(t2);"
                               "SamplerState s : register(s0);\n";
    const CompileOutcome outcome = compile(
            plainVertex,
            arrays + "float4 at(Texture2D t[2], int i) { return t[i].Sample(s, float2(0, 0)); }"
                     "float4 main(float4 p : SV_POSITION) : SV_TARGET {"
                     "int i = int(p.x) % 2; return at(a, i) + at(b, i); }");
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    const auto& words = outcome->spirv[static_cast<std::size_t>(SHADER_TYPE::PIXEL)];
    vulkan::eachInstruction(words, [&](std::uint32_t opcode, std::size_t at, std::size_t) {
        EXPECT_FALSE(opcode == spv::OpVariable && words[at + 3] == spv::StorageClassFunction);
    });
    EXPECT_EQ(pixelError(arrays + "float4 main(float4 p : SV_POSITION) : SV_TARGET {"
                                  "Texture2D t[2] = a; if (p.x > 2) t = b;"
                                  "return t[int(p.y)].Sample(s, p.xy); }"),
              "1: a texture, a buffer or a sampler is in a variable of which the compiler cannot "
              "say what it stands for");
}

TEST(HlslCompiler, TextsThatTheCompilerBreaksDownOnAreALine) {
    if (!compilesApart) GTEST_SKIP();
    // What somebody typing leaves for a moment.
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET { return 1; }\nvoid half(float4 [\n// end\n"),
              "2: the compiler breaks down on it");
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET\n{\n    float a = 1;\n    default:\n"
                         "    return a;\n}\n"),
              "4: the compiler breaks down on it");
    EXPECT_EQ(pixelError(plainPixel), "compiled");
}

TEST(HlslCompiler, VariablesThatNoDeviceHoldsAreRefused) {
    const auto withArray = [](StringView count) {
        return fmt::format("float4 main(float4 p : SV_POSITION) : SV_TARGET {{ float4 q[{}];\n"
                           "q[(int)p.x] = 1; return q[(int)p.y]; }}",
                           count);
    };
    EXPECT_EQ(pixelError(withArray("1000")), "compiled");
    EXPECT_EQ(pixelError(withArray("100000")),
              "1: the variables have 1600000 bytes, more than the 65536 possible");
    EXPECT_EQ(pixelError(withArray("100000000")),
              "1: 'q' has 1600000000 bytes or more, where 16777216 are possible");
    EXPECT_NE(pixelError(withArray("2147483647")), "compiled");
    EXPECT_NE(pixelError("float4 main() : SV_TARGET { float4 q[2147483647]; return q[1]; }"),
              "compiled");
    EXPECT_EQ(pixelError("\x1B"), "1: '?' : unexpected token");
}

TEST(HlslCompiler, BoundsWhatItTakes) {
    const std::string deep(100000, '(');
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET {\nreturn " + deep + "1;}"),
              "2: brackets nested deeper than 256");
    EXPECT_EQ(pixelError("// " + deep + "\n/* \n" + deep +
                         " */\nfloat4 main() : SV_TARGET { return 1; }"),
              "compiled");
    EXPECT_EQ(pixelError("#define P0 ((\n#define P1 P0 P0 P0 P0\n#define P2 P1 P1 P1 P1\n"
                         "#define P3(a) a a a a a a a a\n#define EMPTY\n"
                         "float4 main() : SV_TARGET {\nreturn P3(P2) EMPTY 1;}"),
              "7: brackets nested deeper than 256");
    std::string doubling = "#define X0(a) a a\n";
    for (int index = 1; index < 40; ++index)
        doubling += fmt::format("#define X{}(a) X{}(a a)\n", index, index - 1);
    EXPECT_EQ(pixelError(doubling + "float4 main() : SV_TARGET { X39(;) return 1; }"),
              "41: macros expand to more than 1048576 words");
    const auto repeated = [](StringView text, std::size_t count) {
        std::string all;
        for (std::size_t index = 0; index < count; ++index)
            all += text;
        return all;
    };
    EXPECT_EQ(pixelError("float4 main(float x : A) : SV_TARGET { return " + repeated("x+", 200000) +
                         "1; }"),
              "1: a statement has more than 65536 operators");
    EXPECT_EQ(pixelError("float4 main(float x : A) : SV_TARGET {\n" +
                         repeated("if (x > 0) x = 1; else\n", 100000) + "x = 2; return x; }"),
              "2050: more than 4096 branches and loops");
    EXPECT_EQ(pixelError(std::string(std::size_t{5} << 20U, ' ') + "float a;"),
              "1: the source has 5242888 bytes, more than 4194304 cannot be compiled");
}

TEST(HlslCompiler, RefusesSizesBeforeTheCompilerMakesRoomForThem) {
    const auto withStruct = [](StringView before, StringView members) {
        return pixelError(
                fmt::format("{}\nstruct S {{\n{} }};\nfloat4 main(float4 p : SV_POSITION) "
                            ": SV_TARGET {{ S s = (S)0; return p; }}",
                            before,
                            members));
    };
    const std::string tooMuch = "3: 'S' has 400000000 bytes or more, where 65536 are possible";
    EXPECT_EQ(withStruct("", "float a[100000000];"), tooMuch);
    EXPECT_EQ(withStruct("", "float a[10000][10000];"), tooMuch);
    EXPECT_EQ(withStruct("", "float4 b[2], a[(25 * 1000 - 1) * 1000 + 1000 - 2];"), tooMuch);
    EXPECT_EQ(withStruct("#define N (n * 4)\nstatic const uint m = 5, n = m * 1000 << 1;",
                         "float3x3 unused() { float a[3]; return 1; } float2 a[N * 1250u];")
                      .substr(3),
              tooMuch.substr(3));
    EXPECT_EQ(withStruct("typedef float Thousand[1000];", "Thousand a[100000];"), tooMuch);
    EXPECT_EQ(withStruct("struct T { float a, b[9]; } t;", "T a[10000000];"), tooMuch);
    EXPECT_EQ(withStruct("static const float4 t[2] = {{1, 2, 3, 4}, {5, 6, 7, 8}};\n"
                         "cbuffer C { float4 c[4096]; }; StructuredBuffer<float4> many[4];",
                         "float4 a[1000]; float f(float b[9]) { float c[9]; return c[0] + b[1]; } "
                         "float b[90], c;"),
              "compiled");
    std::string doubling = "struct S0 { float a; };\n";
    for (int index = 1; index < 40; ++index)
        doubling += fmt::format("struct S{0} {{ S{1} a; S{1} b; }};\n", index, index - 1);
    EXPECT_EQ(pixelError(doubling + "S39 s; float4 main() : SV_TARGET { return 1; }"),
              "16: 'S15' has 131072 bytes or more, where 65536 are possible");
    EXPECT_EQ(pixelError("cbuffer C {\nfloat4 a[100000]; };\n"
                         "float4 main() : SV_TARGET { float4 b[100000] = a; return b[3]; }"),
              "2: 'C' has 1600000 bytes or more, where 1048576 are possible");
    std::string table = "static const float t[40000] = {";
    for (int index = 0; index < 40000; ++index)
        table += fmt::format("0.{},\n", index);
    EXPECT_EQ(pixelError(table + "}; float4 main() : SV_TARGET { return t[2]; }"),
              "32768: more than 32768 numbers");
}

TEST(HlslCompiler, RefusesWhatTheCompilerWouldNotEndWith) {
    std::string doubling = "float f0(float x) { return sin(x); }\n";
    for (int index = 1; index < 70; ++index)
        doubling += fmt::format(
                "float f{0}(float x) {{ return f{1}(x) + f{1}(x * 2); }}\n", index, index - 1);
    EXPECT_EQ(pixelError(doubling +
                         "float4 main(float4 p : SV_POSITION) : SV_TARGET { return f69(p.x); }"),
              "1: functions call each other too often: put in the place of their calls they "
              "are more than 2048, or have more than 131072 instructions");
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET {\nfloat a[2] = " + std::string(40, '{') + "1" +
                         std::string(40, '}') + "; return a[0]; }"),
              "2: initial values nested deeper than 12");
    EXPECT_EQ(pixelError("float4 main() : SV_TARGET {\nfloat2x2 a[2] = {{{1, 2}, {3, 4}}, {{5, 6}, "
                         "{7, 8}}}; return a[1][0][1]; }"),
              "compiled");
    std::string loops;
    for (int index = 0; index < 65; ++index)
        loops += fmt::format("for (int i{0} = 0; i{0} < 2; ++i{0})\n", index);
    EXPECT_EQ(pixelError("float4 main(float4 p : SV_POSITION) : SV_TARGET {\n" + loops +
                         "p.x += p.y; return p; }"),
              "1: loops nested deeper than 64");
}

TEST(HlslCompiler, AtomicOperationsTakePlainNumbers) {
    ASSERT_TRUE(compileCompute("RWByteAddressBuffer y : register(u4);\n"
                               "RWStructuredBuffer<int> q : register(u1);\n"
                               "[numthreads(1, 1, 1)] void main() { uint o; int k;\n"
                               "y.InterlockedAdd(0, 1, o); y.InterlockedMax(4, 3);\n"
                               "y.InterlockedCompareExchange(0, 1, 2, o); y.InterlockedOr(8, o);\n"
                               "InterlockedMin(q[0], 2u, k); InterlockedExchange(q[1], o, k); }"));
    ASSERT_TRUE(compile(plainVertex,
                        "float4 main(float4 p : SV_POSITION) : SV_TARGET {\n"
                        "return WaveActiveSum(p.x) + WaveGetLaneCount() + WaveGetLaneIndex(); }"));
}

TEST(HlslCompiler, ModulesThatNoDeviceTakesStandInTheWay) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory(plainVertex);
    for (const StringView pixel :
         {"struct M { Texture2D t; SamplerState s; float4 c; }; M m;\n"
          "float4 main(float4 p : SV_POSITION) : SV_TARGET { return m.t.Sample(m.s, p.xy) * m.c; }",
          "sampler2D s; float4 main(float4 p : SV_POSITION) : COLOR { return tex2D(s, p.xy); }"}) {
        sources.setPixelMemory(pixel);
        const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
        ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
        EXPECT_TRUE(outcome->reflection.obstacle.starts_with(
                "the compiler makes of it what no device takes: "))
                << pixel << '\n'
                << outcome->reflection.obstacle;
        EXPECT_EQ(outcome->reflection.obstacleStage, SHADER_TYPE::PIXEL);
    }
}

TEST(HlslCompiler, WhatIsFoundLateIsToldWhereItStands) {
    EXPECT_EQ(pixelError("float g() { return 1; }\n\nfloat f(float a) {\n return f(a); }\n"
                         "float4 main(float4 p : SV_POSITION) : SV_TARGET { return f(p.x); }")
                      .substr(0, 21),
              "3: Recursion detected");
    ProgramSourcesHolder sources;
    sources.setVertexMemory(plainVertex);
    sources.setPixelMemory(
            "SamplerState s : register(s0);\nTexture2D one : register(t9);\n\n"
            "Texture2D many[] : register(t0);\nfloat4 main(float4 p : SV_POSITION) : "
            "SV_TARGET { return many[1].Sample(s, p.xy) + one.Sample(s, p.xy); }");
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    EXPECT_EQ(outcome->reflection.obstacleLine, 5U) << outcome->reflection.obstacle;
    std::string lines;
    for (const ReflectedResource& resource : outcome->reflection.resources)
        lines += fmt::format("{} {} ", resource.name, resource.line);
    EXPECT_EQ(lines, "PassBuffer 11 many 5 one 5 s 5 ");
}

TEST(HlslCompiler, MacrosBelongToTheirStageAndAreChecked) {
    const auto withMacro = [](StringView name, StringView value) {
        ProgramSourcesHolder sources;
        sources.setVertexMemory(plainVertex);
        sources.setPixelMemory("float4 main() : SV_TARGET { return SHADE; }");
        sources.addDefineMacroPixel(name, value);
        const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
        return outcome ? "compiled" : outcome.error().getErrorMessage();
    };
    EXPECT_EQ(withMacro("SHADE", "float4(1, 0, 0, 1)"), "compiled");
    EXPECT_EQ(withMacro("SHADE(a)", "1"), "1: macro 'SHADE(a)': the name is not an identifier");
    EXPECT_EQ(withMacro("SHADE", "1\n#error"), "1: macro 'SHADE': the value is not a single line");
    EXPECT_EQ(withMacro("return", "break").substr(0, 2), "1:");
    EXPECT_EQ(withMacro("SHADE", ""), "1: '' : function does not return a value: @main")
            << "an empty value is one";
}

TEST(HlslCompiler, GeometryProgramsNeedVertexAndGeometry) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory(
            "struct V { float4 modelPos : POSITION; };\n"
            "V main(float4 position : POSITION) { V v; v.modelPos = position; return v; }");
    ASSERT_FALSE(compileHlsl(PROGRAM_TYPE::GEOMETRY, sources, true));
    sources.setGeometryMemory("struct V { float4 modelPos : POSITION; };\n[maxvertexcount(1)]\n"
                              "void main(point V input[1], inout PointStream<V> stream) {\n"
                              "V v; v.modelPos = input[0].modelPos; stream.Append(v);\n"
                              "stream.RestartStrip(); }");
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::GEOMETRY, sources, true);
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    expectValid(*outcome);
    EXPECT_FALSE(outcome->spirv[static_cast<std::size_t>(SHADER_TYPE::GEOMETRY)].empty());
}

TEST(HlslCompiler, TessellationNeedsBothItsStages) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory("float4 main(float4 p : POSITION) : CONTROL { return p; }");
    sources.setHullMemory(R"(
        struct Patch { float edges[3] : SV_TessFactor; float inside : SV_InsideTessFactor; };
        struct Point { float4 p : CONTROL; };
        Patch factors(InputPatch<Point, 3> patch) {
            Patch f; f.edges[0] = 2; f.edges[1] = 2; f.edges[2] = 2; f.inside = 2; return f; }
        [domain("tri")] [partitioning("integer")] [outputtopology("triangle_cw")]
        [outputcontrolpoints(3)] [patchconstantfunc("factors")]
        Point main(InputPatch<Point, 3> patch, uint i : SV_OutputControlPointID) { return patch[i]; })");
    sources.setPixelMemory(plainPixel);
    const CompileOutcome half = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    ASSERT_FALSE(half);
    EXPECT_EQ(half.error().getStage(), SHADER_TYPE::DOMAIN_STAGE);
    sources.setDomainMemory(R"(
        struct Patch { float edges[3] : SV_TessFactor; float inside : SV_InsideTessFactor; };
        struct Point { float4 p : CONTROL; };
        [domain("tri")]
        float4 main(Patch f, float3 at : SV_DomainLocation, const OutputPatch<Point, 3> patch)
                : SV_POSITION {
            return patch[0].p * at.x + patch[1].p * at.y + patch[2].p * at.z; })");
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    expectValid(*outcome);
}

TEST(HlslCompiler, AllStagesOfAPipelineMeet) {
    const std::string common = R"(
        struct Corner { float4 p : CONTROL; float2 uv[2] : TEXCOORD3; float3x3 frame : FRAME; uint id : ID; };
        struct Patch { float edges[3] : SV_TessFactor; float inside : SV_InsideTessFactor;
                       float3 bulge[2] : BULGE; float4 tint : TINT; };
        struct Point { float4 clip : SV_POSITION; float2 uv[2] : TEXCOORD3; float3 tint : TINT;
                       float3x3 frame : FRAME; };
        )";
    ProgramSourcesHolder sources;
    sources.setVertexMemory(common + R"(
        Corner main(float4 p : POSITION) {
            Corner c; c.p = p; c.uv[0] = p.xy; c.uv[1] = p.zw; c.frame = 1; c.id = 3; return c; })");
    sources.setHullMemory(common + R"(
        Patch factors(InputPatch<Corner, 3> patch, uint id : SV_PrimitiveID) {
            Patch f; f.edges[0] = f.edges[1] = f.edges[2] = f.inside = 2;
            f.bulge[0] = patch[0].p.xyz; f.bulge[1] = id; f.tint = 1; return f; }
        [domain("tri")] [partitioning("fractional_odd")] [outputtopology("triangle_cw")]
        [outputcontrolpoints(3)] [patchconstantfunc("factors")]
        Corner main(InputPatch<Corner, 3> patch, uint i : SV_OutputControlPointID) { return patch[i]; })");
    sources.setDomainMemory(common + R"(
        [domain("tri")]
        Point main(Patch f, float3 at : SV_DomainLocation, const OutputPatch<Corner, 3> patch) {
            Point o; o.clip = patch[0].p * at.x + patch[1].p * at.y + patch[2].p * at.z;
            o.uv[0] = patch[0].uv[1]; o.uv[1] = patch[1].uv[0] * patch[2].id;
            o.tint = f.bulge[1] + f.tint.rgb; o.frame = patch[1].frame; return o; })");
    sources.setGeometryMemory(common + R"(
        struct Last { float4 clip : SV_POSITION; float2 uv[2] : TEXCOORD3; float3 tint : TINT;
                      float3x3 frame : FRAME; nointerpolation uint number : NUMBER; };
        [maxvertexcount(3)]
        void main(triangle Point corners[3], uint id : SV_PrimitiveID, inout TriangleStream<Last> stream) {
            for (int i = 0; i < 3; ++i) {
                Last v; v.clip = corners[i].clip; v.uv = corners[i].uv; v.tint = corners[i].tint;
                v.frame = corners[i].frame; v.number = id; stream.Append(v); }
            stream.RestartStrip(); })");
    sources.setPixelMemory(R"(
        float4 main(nointerpolation uint number : NUMBER, float3x3 frame : FRAME, float2 b : TEXCOORD4,
                    float2 a : TEXCOORD3, float3 tint : TINT) : SV_TARGET {
            return float4(mul(frame, tint), number) + a.xyxy + b.xyxy; })");
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    ASSERT_TRUE(outcome) << static_cast<int>(outcome.error().getStage()) << ": "
                         << outcome.error().getErrorMessage();
    expectValid(*outcome);
    sources.setGeometryMemory("");
    const CompileOutcome without = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
    ASSERT_FALSE(without);
    EXPECT_EQ(without.error().getErrorMessage(),
              "2: 'NUMBER' is read, but the domain stage does not write it");
}

TEST(HlslCompiler, ComputeReflectsItsGroupAndBuffer) {
    const CompileOutcome outcome = compileCompute(
            "RWStructuredBuffer<float> data : register(u0);\n[numthreads(8, 4, 2)]\n"
            "void main(uint3 id : SV_DispatchThreadID) { data[id.x + id.y * 4] = 0.0; }");
    ASSERT_TRUE(outcome) << outcome.error().getErrorMessage();
    EXPECT_EQ(describe(outcome->reflection), "u0.0 data buffer m32\n");
    EXPECT_EQ(outcome->reflection.threadGroupSize, (std::array<std::uint32_t, 3>{8, 4, 2}));
}

TEST(HlslCompiler, ConstantBuffersPackByRegistersOfSixteenBytes) {
    const auto sizeOf = [](StringView members, StringView sum) {
        const CompileOutcome outcome = compileCompute(
                "cbuffer P : register(b0) { " + std::string(members) +
                " };\nRWStructuredBuffer<float> data : register(u0);\n[numthreads(1, 1, 1)]\n"
                "void main() { data[0] = " +
                std::string(sum) + "; }");
        return outcome ? outcome->reflection.resources[0].byteSize : 0;
    };
    EXPECT_EQ(sizeOf("float a; float3 b;", "a + b.x"), 16U);
    EXPECT_EQ(sizeOf("float3 a; float b; float2 c;", "a.x + b + c.x"), 32U);
    EXPECT_EQ(sizeOf("float2 a; float3 b;", "a.x + b.x"), 32U) << "b would straddle";
    EXPECT_EQ(sizeOf("float a; float4x4 m; float b;", "a + m[0][0] + b"), 96U);
    EXPECT_EQ(sizeOf("float a; float e[2]; float4 b;", "a + e[1] + b.x"), 64U);
    EXPECT_EQ(sizeOf("float e[2]; float b;", "e[1] + b"), 48U);
}

TEST(HlslCompiler, RaytracingAnswersWithOneLine) {
    ProgramSourcesHolder sources;
    sources.setRaytracingMemory("[shader(\"raygeneration\")] void raygen() {}");
    const CompileOutcome outcome = compileHlsl(PROGRAM_TYPE::RAYTRACING, sources, true);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().getStage(), SHADER_TYPE::RAYTRACING);
    EXPECT_EQ(outcome.error().getErrorMessage(), "1: ray tracing programs cannot be compiled here");
}

TEST(HlslCompiler, CompilesOnManyThreadsAtOnce) {
    const CompileOutcome reference = compile(plainVertex, plainPixel);
    std::vector<CompileOutcome> outcomes(8);
    std::vector<std::thread> threads;
    for (CompileOutcome& outcome : outcomes)
        threads.emplace_back([&outcome] { outcome = compile(plainVertex, plainPixel); });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(reference);
    for (const CompileOutcome& outcome : outcomes) {
        ASSERT_TRUE(outcome);
        EXPECT_EQ(outcome->spirv, reference->spirv);
    }
}

} // namespace
} // namespace vlGraphics
