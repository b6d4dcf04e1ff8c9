#include "hlsl_programs.h"

#include "programs/HlslText.h"

#include <fmt/format.h>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>

#include <cstdlib>
#include <string>

namespace bench {

using namespace vlGraphics;

namespace {

std::string vertexOf(int number) {
    std::string text = R"(
cbuffer Pass : register(b0) { float4x4 view; float4x4 proj; float4 eye; float time; };
struct Out { float4 clip : SV_POSITION; float3 normal : NORMAL; float2 uv : TEXCOORD; float3 at : AT; float4 tint : COLOR; };
float3 bend(float3 p, float amount) {
    float s = sin(p.y * amount + time), c = cos(p.y * amount + time);
    return float3(p.x * c - p.z * s, p.y, p.x * s + p.z * c);
}
)";
    text += fmt::format("static const float amount = {}.25;\n", number);
    text += R"(
Out main(float3 p : POSITION, float3 n : NORMAL, float2 uv : TEXCOORD, float4x4 world : WORLD_MATRIX) {
    Out o;
    float4 at = mul(world, float4(bend(p, amount), 1));
    o.at = at.xyz;
    o.clip = mul(proj, mul(view, at));
    o.normal = mul((float3x3)world, bend(n, amount));
    o.uv = uv * amount;
    o.tint = float4(frac(p * amount), 1);
    return o;
}
)";
    return text;
}

std::string pixelOf(int number) {
    const int textures = 1 + number % 4;
    const int lights = 1 + number % 5;
    std::string text = fmt::format(R"(
cbuffer Pass : register(b0) {{ float4x4 view; float4x4 proj; float4 eye; float time; }};
struct Light {{ float3 at; float range; float3 color; float angle; }};
cbuffer Lights : register(b1) {{ Light lights[{}]; float4 ambient; }};
SamplerState smp : register(s0);
)",
                                   lights);
    for (int i = 0; i < textures; ++i)
        text += fmt::format("Texture2D tex{0} : register(t{0});\n", i);
    text += R"(
struct In { float4 clip : SV_POSITION; float3 normal : NORMAL; float2 uv : TEXCOORD; float3 at : AT; float4 tint : COLOR; };
float distribution(float nh, float rough) {
    float a = rough * rough, d = nh * nh * (a - 1) + 1;
    return a / (3.14159 * d * d);
}
float3 fresnel(float3 f0, float vh) { return f0 + (1 - f0) * pow(1 - vh, 5); }
float3 shade(Light light, float3 at, float3 n, float3 v, float3 albedo, float rough) {
    float3 toLight = light.at - at;
    float distance = length(toLight);
    if (distance > light.range) return 0;
    float3 l = toLight / distance, h = normalize(l + v);
    float3 specular = distribution(saturate(dot(n, h)), rough) * fresnel(0.04, saturate(dot(v, h)));
    return (albedo / 3.14159 + specular) * light.color * saturate(dot(n, l)) / (distance * distance);
}
)";
    text += fmt::format("float4 main(In i) : SV_TARGET {{\n    float4 albedo = i.tint * {}.5;\n",
                        number);
    for (int i = 0; i < textures; ++i)
        text += fmt::format("    albedo {} tex{}.Sample(smp, i.uv * {} + time);\n",
                            (number >> i) % 2 == 0 ? "*=" : "+=",
                            i,
                            i + number % 7);
    text += fmt::format(
            R"(    float3 n = normalize(i.normal), v = normalize(eye.xyz - i.at), sum = ambient.rgb;
    for (int k = 0; k < {}; ++k) sum += shade(lights[k], i.at, n, v, albedo.rgb, {});
)",
            lights,
            0.1 + 0.01 * (number % 50));
    if (number % 3 == 0) text += "    if (albedo.a < 0.5) discard;\n";
    if (number % 2 == 0) text += "    sum = sum / (1 + sum);\n";
    return text + "    return float4(sum, albedo.a);\n}\n";
}

[[noreturn]] void stop(const std::string& text) {
    fmt::print(stderr, "the HLSL compiler: {}\n", text);
    std::exit(1);
}

std::size_t compileStage(const vlMemory::String& source, EShLanguage language) {
    constexpr auto messages =
            static_cast<EShMessages>(EShMsgReadHlsl | EShMsgVulkanRules | EShMsgSpvRules |
                                     EShMsgHlslOffsets | EShMsgHlslLegalization);
    const std::string preamble = HlslText::preamble({}, true);
    glslang::TShader shader(language);
    const char* text = source.data();
    const int length = static_cast<int>(source.size());
    shader.setStringsWithLengths(&text, &length, 1);
    shader.setPreamble(preamble.c_str());
    shader.setEntryPoint("main");
    shader.setEnvInput(glslang::EShSourceHlsl, language, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_1);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_3);
    shader.setHlslIoMapping(true);
    shader.setAutoMapBindings(true);
    shader.setAutoMapLocations(true);
    if (!shader.parse(GetDefaultResources(), 100, false, messages)) stop(shader.getInfoLog());
    glslang::TProgram program;
    program.addShader(&shader);
    if (!program.link(messages) || !program.mapIO()) stop(program.getInfoLog());
    glslang::SpvOptions options;
    options.disableOptimizer = false;
    std::vector<std::uint32_t> spirv;
    glslang::GlslangToSpv(*program.getIntermediate(language), spirv, &options);
    return spirv.size();
}

} // namespace

std::vector<ProgramSourcesHolder> makeSources(int count, int first) {
    std::vector<ProgramSourcesHolder> all(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        all[static_cast<std::size_t>(i)].setVertexMemory(vertexOf(first + i));
        all[static_cast<std::size_t>(i)].setPixelMemory(pixelOf(first + i));
    }
    return all;
}

std::size_t compileBare(const ProgramSourcesHolder& sources) {
    return compileStage(sources.getVertexMemory(), EShLangVertex) +
           compileStage(sources.getPixelMemory(), EShLangFragment);
}

} // namespace bench
