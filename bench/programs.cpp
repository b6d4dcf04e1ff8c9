// A thousand programs compiled through the engine on all threads, against the same stages through
// nothing but the HLSL compiler on as many threads: parsed, linked and made optimised SPIR-V. Then
// from the folder where compiled programs are kept, and one program that is edited.
#include "Report.h"
#include "programs/HlslText.h"
#include "programs/ProgramCompiler.h"
#include "vulkan/ProgramGpu.h"

#include <vlGraphics/Program.h>

#include <fmt/format.h>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace bench {
namespace {

using namespace vlGraphics;

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

/// The number decides how many textures and lights there are, and which terms.
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

std::vector<ProgramSourcesHolder> makeSources(int count, int first) {
    std::vector<ProgramSourcesHolder> all(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        all[static_cast<std::size_t>(i)].setVertexMemory(vertexOf(first + i));
        all[static_cast<std::size_t>(i)].setPixelMemory(pixelOf(first + i));
    }
    return all;
}

[[noreturn]] void stop(const std::string& text) {
    fmt::print(stderr, "programs: {}\n", text);
    std::exit(1);
}

/// The compiler alone.
std::size_t compileBare(const vlMemory::String& source, EShLanguage language) {
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

std::size_t compileBare(const ProgramSourcesHolder& sources) {
    return compileBare(sources.getVertexMemory(), EShLangVertex) +
           compileBare(sources.getPixelMemory(), EShLangFragment);
}

double bareMs(const std::vector<ProgramSourcesHolder>& all) {
    const double start = nowMs();
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < std::max(std::thread::hardware_concurrency(), 1U); ++i)
        threads.emplace_back([&] {
            for (std::size_t at = next++; at < all.size(); at = next++)
                compileBare(all[at]);
        });
    for (std::thread& thread : threads)
        thread.join();
    return nowMs() - start;
}

vlCommon::Result<std::unique_ptr<Program::Gpu>> withoutDevice(const CompiledProgram&) {
    return std::unique_ptr<Program::Gpu>();
}

/** The engine's compiler without a device behind it. */
class Engine {
public:
    explicit Engine(vlMemory::StringView folder)
        : compiler_(0, ProgramCompiler::compileKeptIn(folder), withoutDevice) {}

    double compileMs(const std::vector<ProgramSourcesHolder>& all) {
        std::vector<Program*> programs;
        for (std::size_t i = 0; i < all.size(); ++i) {
            programs.push_back(programs_.createOrRetrieve(fmt::format("p{}", i)));
            programs.back()->setFromMemory(all[i]);
        }
        const double start = nowMs();
        for (Program* program : programs)
            if (!program->load()) stop("a program does not start to compile");
        programs_.waitForAll();
        const double took = nowMs() - start;
        for (const Program* program : programs)
            if (!program->getLastCompilationResult().isSuccess())
                stop(program->getLastCompilationResult().getErrorMessage());
        return took;
    }

private:
    ProgramManager programs_;
    ProgramCompiler compiler_;
};

void compareAll(const std::vector<ProgramSourcesHolder>& all, int rounds) {
    Samples ours;
    Samples bare;
    Samples oursCpu;
    Samples bareCpu;
    for (int round = 0; round < rounds; ++round) {
        double cpu = processCpuMs();
        ours.add(Engine("").compileMs(all));
        oursCpu.add(processCpuMs() - cpu);
        cpu = processCpuMs();
        bare.add(bareMs(all));
        bareCpu.add(processCpuMs() - cpu);
    }
    summarise(fmt::format("{} programs compiled, ms", all.size()),
              withSpread(ours),
              withSpread(bare),
              pairedRatios(ours, bare),
              "1.3");
    summarise("processor time of it, ms",
              withSpread(oursCpu),
              withSpread(bareCpu),
              pairedRatios(oursCpu, bareCpu));
}

void compareKept(const std::vector<ProgramSourcesHolder>& all, int rounds) {
    namespace fs = std::filesystem;
    const fs::path folder =
            fs::temp_directory_path() / fmt::format("vl_bench_programs_{}", ::getpid());
    Samples kept;
    Samples compiled;
    for (int round = 0; round < rounds; ++round) {
        fs::remove_all(folder);
        compiled.add(Engine(folder.string()).compileMs(all));
        kept.add(Engine(folder.string()).compileMs(all));
    }
    fs::remove_all(folder);
    summarise(fmt::format("{} programs again (compiled anew), ms", all.size()),
              withSpread(kept),
              withSpread(compiled),
              pairedRatios(kept, compiled),
              "0.1");
}

void compareEdit(int rounds) {
    Engine engine("");
    Samples ours;
    Samples bare;
    Samples oursCpu;
    Samples bareCpu;
    constexpr int edits = 20;
    for (int round = 0; round < rounds * edits; ++round) {
        const auto one = makeSources(1, 5000 + round);
        double cpu = processCpuMs();
        ours.add(engine.compileMs(one));
        oursCpu.add(processCpuMs() - cpu);
        cpu = processCpuMs();
        const double start = nowMs();
        compileBare(one.front());
        bare.add(nowMs() - start);
        bareCpu.add(processCpuMs() - cpu);
    }
    summarise("one program edited, ms",
              withSpread(ours),
              withSpread(bare),
              pairedRatios(ours, bare),
              "1.5");
    summarise("processor time of it, ms",
              withSpread(oursCpu),
              withSpread(bareCpu),
              pairedRatios(oursCpu, bareCpu));
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 5;
    const int count = argc > 2 ? std::max(std::atoi(argv[2]), 1) : 1000;
    glslang::InitializeProcess();
    const auto all = bench::makeSources(count, 0);
    bench::bareMs(bench::makeSources(4, 9000)); // the compiler's own tables
    bench::compareAll(all, rounds);
    bench::compareKept(all, rounds);
    bench::compareEdit(rounds);
    glslang::FinalizeProcess();
    return 0;
}
