#include "programs/HlslCompiler.h"

#include "programs/DeepStack.h"
#include "programs/HlslText.h"
#include "programs/InterfaceMapper.h"
#include "programs/Reflection.h"
#include "programs/SourceBounds.h"
#include "programs/VariableSize.h"

#include <vlMemory/Utf8.h>

#include <fmt/format.h>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <memory>
#include <optional>

namespace vlGraphics {

namespace {

using vlMemory::StringView;

/// Of one stage: drivers take that for each of very many threads, and their time for each element.
constexpr std::uint64_t maxVariableBytes = std::uint64_t{1} << 16U;

constexpr auto messages =
        static_cast<EShMessages>(EShMsgReadHlsl | EShMsgVulkanRules | EShMsgSpvRules |
                                 EShMsgHlslOffsets | EShMsgHlslLegalization);

constexpr std::array pipelineStages{SHADER_TYPE::VERTEX,
                                    SHADER_TYPE::HULL,
                                    SHADER_TYPE::DOMAIN_STAGE,
                                    SHADER_TYPE::GEOMETRY,
                                    SHADER_TYPE::PIXEL};
constexpr std::array geometryStages{
        SHADER_TYPE::VERTEX, SHADER_TYPE::HULL, SHADER_TYPE::DOMAIN_STAGE, SHADER_TYPE::GEOMETRY};
constexpr std::array computeStages{SHADER_TYPE::COMPUTE};
constexpr std::array raytracingStages{SHADER_TYPE::RAYTRACING};

/// The compiler's own tables, made before the first compilation and freed at exit.
struct CompilerProcess {
    CompilerProcess() { glslang::InitializeProcess(); }
    ~CompilerProcess() { glslang::FinalizeProcess(); }
    CompilerProcess(const CompilerProcess&) = delete;
    CompilerProcess& operator=(const CompilerProcess&) = delete;
};

EShLanguage languageOf(SHADER_TYPE stage) {
    constexpr std::array languages{EShLangVertex,
                                   EShLangTessControl,
                                   EShLangTessEvaluation,
                                   EShLangGeometry,
                                   EShLangFragment,
                                   EShLangCompute};
    return languages[static_cast<std::size_t>(stage)];
}

tl::unexpected<ProgramCompilationResult> failAt(SHADER_TYPE stage, StringView message) {
    return tl::unexpected(ProgramCompilationResult(stage, vlMemory::printable(message)));
}

bool isNeeded(PROGRAM_TYPE type, SHADER_TYPE stage, const ProgramSourcesHolder& sources) {
    const auto has = [&](SHADER_TYPE other) {
        return !HlslText::isBlank(sources.getMemory(other));
    };
    switch (stage) {
    case SHADER_TYPE::HULL:
        return has(SHADER_TYPE::DOMAIN_STAGE);
    case SHADER_TYPE::DOMAIN_STAGE:
        return has(SHADER_TYPE::HULL);
    case SHADER_TYPE::GEOMETRY:
        return type == PROGRAM_TYPE::GEOMETRY;
    default:
        return true;
    }
}

std::optional<std::string> findExcess(const CompileRequest& request, SHADER_TYPE stage) {
    SourceBounds bounds;
    const std::string preamble = HlslText::preamble(request.sources.getDefineMacros(stage),
                                                    request.crossCompilerDefines);
    if (const auto fault = bounds.findFault(preamble))
        return fmt::format("1: in the macros{}", fault->substr(fault->find(':')));
    return bounds.findFault(request.sources.getMemory(stage));
}

/// What can be said without compiling.
std::optional<ProgramCompilationResult> findFault(const CompileRequest& request) {
    if (request.type == PROGRAM_TYPE::NONE)
        return ProgramCompilationResult(SHADER_TYPE::VERTEX, "1: the program has no type");
    if (request.type == PROGRAM_TYPE::RAYTRACING) {
        return ProgramCompilationResult(SHADER_TYPE::RAYTRACING,
                                        "1: ray tracing programs cannot be compiled here");
    }
    for (const SHADER_TYPE stage : stagesOf(request.type)) {
        const vlMemory::String& source = request.sources.getMemory(stage);
        if (HlslText::isBlank(source)) {
            if (!isNeeded(request.type, stage, request.sources)) continue;
            return ProgramCompilationResult(stage, "1: the source is empty");
        }
        auto fault = HlslText::findFault(request.sources.getDefineMacros(stage));
        if (!fault) fault = HlslText::findFault(source);
        if (!fault) fault = findExcess(request, stage);
        if (fault) return ProgramCompilationResult(stage, *fault);
    }
    return std::nullopt;
}

/// "12: text" from a line "ERROR: 0:12: text"; nothing from one that says no place.
std::optional<std::string> placedError(StringView line) {
    constexpr StringView prefix = "ERROR: ";
    if (!line.starts_with(prefix)) return std::nullopt;
    line.remove_prefix(prefix.size());
    const std::size_t afterText = line.find(':');
    if (afterText == StringView::npos) return std::nullopt;
    const StringView place = line.substr(afterText + 1);
    int number = 0;
    const auto read = std::from_chars(place.data(), place.data() + place.size(), number);
    if (read.ec != std::errc() || read.ptr == place.data() + place.size() || *read.ptr != ':')
        return std::nullopt;
    // The preamble's lines come under a text number below 0.
    const bool inPreamble = line.starts_with('-');
    StringView text(read.ptr + 1, place.data() + place.size());
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    text = text.substr(0, text.find_last_not_of(" \r") + 1);
    if (inPreamble) return fmt::format("1: in the macros: {}", text);
    return fmt::format("{}: {}", std::max(number, 1), text);
}

std::string firstError(StringView log) {
    std::string unplaced;
    while (!log.empty()) {
        const std::size_t end = std::min(log.find('\n'), log.size());
        const StringView line = log.substr(0, end);
        if (auto placed = placedError(line)) return *placed;
        if (unplaced.empty() && line.starts_with("ERROR: "))
            unplaced = fmt::format("1: {}", line.substr(7));
        log.remove_prefix(std::min(end + 1, log.size()));
    }
    return unplaced.empty() ? "1: it cannot be compiled" : unplaced;
}

/** One stage on its way through the compiler. */
class StageCompilation {
public:
    StageCompilation(SHADER_TYPE stage, const CompileRequest& request)
        : stage_(stage), source_(request.sources.getMemory(stage)),
          preamble_(HlslText::preamble(request.sources.getDefineMacros(stage),
                                       request.crossCompilerDefines)),
          shader_(languageOf(stage)) {}

    SHADER_TYPE stage() const { return stage_; }
    glslang::TProgram& program() { return *program_; }

    /// Empty when it went well.
    std::string parseAndLink() {
        const char* text = source_.data();
        const int length = static_cast<int>(source_.size());
        shader_.setStringsWithLengths(&text, &length, 1);
        shader_.setPreamble(preamble_.c_str());
        shader_.setEntryPoint("main");
        shader_.setSourceEntryPoint("main");
        shader_.setEnvInput(
                glslang::EShSourceHlsl, languageOf(stage_), glslang::EShClientVulkan, 100);
        shader_.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_1);
        shader_.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_3);
        shader_.setHlslIoMapping(true);
        shader_.setAutoMapBindings(true);
        shader_.setAutoMapLocations(true);
        if (!shader_.parse(GetDefaultResources(), 100, false, messages))
            return firstError(shader_.getInfoLog());
        if (shader_.getIntermediate()->getNumEntryPoints() == 0)
            return "1: there is no function 'main'";
        program_ = std::make_unique<glslang::TProgram>();
        program_->addShader(&shader_);
        if (!program_->link(messages)) return firstError(program_->getInfoLog());
        return {};
    }

    /// Empty when it went well.
    std::string translate(std::vector<std::uint32_t>& spirv) {
        glslang::TIntermediate* intermediate = program_->getIntermediate(languageOf(stage_));
        glslang::SpvOptions options;
        options.disableOptimizer = false;
        spv::SpvBuildLogger logger;
        if (intermediate != nullptr) glslang::GlslangToSpv(*intermediate, spirv, &logger, &options);
        if (const std::uint64_t bytes = variableBytes(spirv); bytes > maxVariableBytes)
            return fmt::format("1: the variables have {} bytes, more than the {} possible",
                               bytes,
                               maxVariableBytes);
        if (!spirv.empty()) return {};
        const std::string log = logger.getAllMessages();
        return log.empty() ? "1: it compiles to nothing" : "1: " + log.substr(0, log.find('\n'));
    }

private:
    SHADER_TYPE stage_;
    const vlMemory::String& source_;
    std::string preamble_;
    glslang::TShader shader_;
    std::unique_ptr<glslang::TProgram> program_; ///< goes before the shader that it links
};

CompileOutcome compileChecked(const CompileRequest& request) {
    std::vector<std::unique_ptr<StageCompilation>> stages;
    std::vector<LinkedStage> linked;
    for (const SHADER_TYPE stage : stagesOf(request.type)) {
        if (HlslText::isBlank(request.sources.getMemory(stage))) continue;
        auto& compilation = stages.emplace_back(std::make_unique<StageCompilation>(stage, request));
        if (const std::string error = compilation->parseAndLink(); !error.empty())
            return failAt(stage, error);
        linked.push_back({stage, &compilation->program()});
    }
    std::vector<PlacedSemantic> vertexInputs;
    if (const MapFailure failure = mapInterfaces(linked, vertexInputs); failure.failed())
        return failAt(failure.stage, failure.message);
    CompiledProgram compiled;
    for (const auto& compilation : stages) {
        const SHADER_TYPE stage = compilation->stage();
        auto& spirv = compiled.spirv[static_cast<std::size_t>(stage)];
        if (const std::string error = compilation->translate(spirv); !error.empty())
            return failAt(stage, error);
    }
    auto reflection = reflect(compiled, vertexInputs);
    if (!reflection) return tl::unexpected(reflection.error());
    compiled.reflection = std::move(*reflection);
    return compiled;
}

} // namespace

std::span<const SHADER_TYPE> stagesOf(PROGRAM_TYPE type) {
    switch (type) {
    case PROGRAM_TYPE::PIPELINE:
        return pipelineStages;
    case PROGRAM_TYPE::GEOMETRY:
        return geometryStages;
    case PROGRAM_TYPE::COMPUTE:
        return computeStages;
    case PROGRAM_TYPE::RAYTRACING:
        return raytracingStages;
    case PROGRAM_TYPE::NONE:
        break;
    }
    return {};
}

CompileOutcome compileHlsl(const CompileRequest& request) {
    static const CompilerProcess process;
    if (const auto fault = findFault(request)) return tl::unexpected(*fault);
    CompileOutcome outcome;
    const auto compile = [&] {
        try {
            outcome = compileChecked(request);
        } catch (const std::exception& error) {
            outcome = failAt(stagesOf(request.type).front(),
                             fmt::format("1: it cannot be compiled: {}", error.what()));
        }
    };
    if (!runOnDeepStack(compile))
        return failAt(stagesOf(request.type).front(), "1: no memory for the compiler's stack");
    return outcome;
}

CompileOutcome
compileHlsl(PROGRAM_TYPE type, const ProgramSourcesHolder& sources, bool crossCompilerDefines) {
    return compileHlsl(CompileRequest{type, sources, crossCompilerDefines});
}

} // namespace vlGraphics
