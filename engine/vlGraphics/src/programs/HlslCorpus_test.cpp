#include "programs/HlslCompiler.h"
#include "programs/HlslCorpus.h"
#include "programs/HlslText.h"

#include <fmt/format.h>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
// Needs the one above.
#include <glslang/Include/Types.h>
#include <gtest/gtest.h>
#include <spirv-tools/libspirv.hpp>

#include <map>
#include <string>

namespace vlGraphics {
namespace {

using vlMemory::StringView;

/// Writes all that the pixel sources read.
constexpr StringView feedingVertex = R"(
    struct V { float4 p : SV_POSITION; nointerpolation uint i : INDEX; uint4 a : A; float2 b : B; float c : C; };
    V main(float4 p : POSITION) {
        V v; v.p = p; v.i = 1; v.a = uint4(1, 2, 3, 4); v.b = p.xy; v.c = p.z; return v; })";

CompileOutcome compileSource(const CorpusSource& source) {
    ProgramSourcesHolder sources;
    sources.setMemory(source.stage, source.text);
    if (source.stage == onPixel) sources.setVertexMemory(feedingVertex);
    if (source.stage == onPixel && source.text.find("half") == 0)
        sources.setVertexMemory("struct V { float4 p : SV_POSITION; min16float a : A; };\n"
                                "V main(float4 p : POSITION) { V v; v.p = p; v.a = 1; return v; }");
    if (source.stage == onVertex) sources.setPixelMemory("float4 main() : SV_TARGET { return 1; }");
    return compileHlsl(source.stage == onGroup ? PROGRAM_TYPE::COMPUTE : PROGRAM_TYPE::PIPELINE,
                       sources,
                       false);
}

/** The same source through nothing but the compiler. */
struct Bare {
    explicit Bare(const CorpusSource& source)
        : language(source.stage == onGroup    ? EShLangCompute
                   : source.stage == onVertex ? EShLangVertex
                                              : EShLangFragment),
          shader(language) {
        constexpr auto messages =
                static_cast<EShMessages>(EShMsgReadHlsl | EShMsgVulkanRules | EShMsgSpvRules |
                                         EShMsgHlslOffsets | EShMsgHlslLegalization);
        const std::string preamble = HlslText::preamble({}, false);
        const char* text = source.text.data();
        const int length = static_cast<int>(source.text.size());
        shader.setStringsWithLengths(&text, &length, 1);
        shader.setPreamble(preamble.c_str());
        shader.setEntryPoint("main");
        shader.setEnvInput(glslang::EShSourceHlsl, language, glslang::EShClientVulkan, 100);
        shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_1);
        shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_3);
        shader.setHlslIoMapping(true);
        shader.setAutoMapLocations(true);
        accepted = shader.parse(GetDefaultResources(), 100, false, messages);
        program.addShader(&shader);
        // A text without an entry point parses and links.
        accepted = accepted && program.link(messages) &&
                   std::string(program.getInfoLog()).find("Entry point not found") ==
                           std::string::npos;
        if (accepted)
            program.buildReflection(EShReflectionSeparateBuffers | EShReflectionAllBlockVariables);
    }

    EShLanguage language;
    glslang::TShader shader;
    glslang::TProgram program;
    bool accepted = false;
};

StringView shapeName(RESOURCE_SHAPE shape) {
    constexpr StringView names[] = {"Other",
                                    "Constant",
                                    "Sampler",
                                    "Structured",
                                    "Bytes",
                                    "Texel",
                                    "1D",
                                    "1DArray",
                                    "2D",
                                    "2DArray",
                                    "2DMS",
                                    "2DMSArray",
                                    "3D",
                                    "Cube",
                                    "CubeArray"};
    return names[static_cast<std::size_t>(shape)];
}

std::string describe(const ReflectedResource& resource) {
    std::string text = fmt::format("{}{}.{} {}",
                                   "btsu"[static_cast<std::size_t>(resource.resourceClass)],
                                   resource.slot,
                                   resource.space,
                                   resource.name);
    if (resource.arrayCount != 1) text += fmt::format("[{}]", resource.arrayCount);
    text += fmt::format(" {}", shapeName(resource.shape));
    if (resource.isComparison)
        text += resource.shape == RESOURCE_SHAPE::SAMPLER ? " compares" : " depth";
    if (resource.isCounter) text += " counter";
    if (resource.stride != 0) text += fmt::format(" /{}", resource.stride);
    if (resource.byteSize != 0) text += fmt::format(" {}", resource.byteSize);
    const bool isTold =
            resource.isFormatFixed || (resource.texelFormat != FORMAT::UNKNOWN &&
                                       resource.texelFormat != FORMAT::R32G32B32A32_FLOAT);
    if (isTold)
        text += fmt::format(" f{}{}",
                            static_cast<std::uint32_t>(resource.texelFormat),
                            resource.isFormatFixed ? "!" : "");
    std::string members;
    for (const ReflectedMember& member : resource.members)
        members += fmt::format(
                "{} {} {} {},", member.name, member.type, member.offset, member.byteSize);
    if (!members.empty()) text += " " + members;
    return text + "; ";
}

std::string describe(const ProgramReflection& reflection) {
    std::string text;
    for (const ReflectedResource& resource : reflection.resources)
        text += describe(resource);
    return text + reflection.obstacle;
}

/// Register and space of what the source gives a register, by name, as the compiler alone sees it.
std::map<std::string, std::string> addresses(glslang::TProgram& program) {
    std::map<std::string, std::string> all;
    const auto note = [&](const glslang::TObjectReflection& object) {
        const glslang::TType* type = object.getType();
        if (type == nullptr || object.getBinding() < 0) return;
        const int space = object.getType()->getQualifier().hasSet()
                                  ? static_cast<int>(object.getType()->getQualifier().layoutSet)
                                  : 0;
        all[object.name] = fmt::format("{}.{}", object.getBinding(), space);
    };
    for (int i = 0; i < program.getNumUniformVariables(); ++i)
        note(program.getUniform(i));
    for (int i = 0; i < program.getNumUniformBlocks(); ++i)
        note(program.getUniformBlock(i));
    for (int i = 0; i < program.getNumBufferBlocks(); ++i)
        note(program.getBufferBlock(i));
    return all;
}

class HlslCorpus : public testing::TestWithParam<CorpusSource> {};

TEST_P(HlslCorpus, IsAcceptedAndSeenAsTheCompilerDoes) {
    const CorpusSource& source = GetParam();
    const CompileOutcome outcome = compileSource(source);
    Bare bare(source);
    EXPECT_EQ(bare.accepted, !source.isRefused)
            << bare.shader.getInfoLog() << bare.program.getInfoLog();
    ASSERT_EQ(outcome.has_value(), bare.accepted)
            << (outcome ? bare.shader.getInfoLog() : outcome.error().getErrorMessage());
    if (!outcome) {
        EXPECT_EQ(outcome.error().getStage(), source.stage);
        EXPECT_EQ(outcome.error().getErrorMessage().find('\n'), std::string::npos);
        return;
    }
    if (source.resources.data() != nullptr) {
        EXPECT_EQ(describe(outcome->reflection), source.resources);
    }
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_1);
    std::string faults;
    tools.SetMessageConsumer([&](auto, auto, auto, const char* text) { faults += text; });
    const bool isUsable = outcome->reflection.obstacle.empty();
    for (const auto& spirv : outcome->spirv)
        EXPECT_TRUE(!isUsable || spirv.empty() || tools.Validate(spirv)) << faults;
    const std::map<std::string, std::string> bareAddresses = addresses(bare.program);
    for (const ReflectedResource& resource : outcome->reflection.resources) {
        const auto address = bareAddresses.find(resource.name);
        if (address == bareAddresses.end()) continue;
        EXPECT_EQ(fmt::format("{}.{}", resource.slot, resource.space), address->second)
                << resource.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Sources, HlslCorpus, testing::ValuesIn(corpus));

} // namespace
} // namespace vlGraphics
