#include "programs/HlslCompiler.h"

#include "programs/HlslIncluder.h"
#include "programs/HlslMessages.h"
#include "programs/HlslText.h"
#include "programs/InterfaceMapper.h"
#include "programs/LoopGuard.h"
#include "programs/ModuleBounds.h"
#include "programs/ModuleFault.h"
#include "programs/ModuleMender.h"
#include "programs/Reflection.h"
#include "programs/ResourceVariables.h"
#include "programs/SourceBounds.h"
#include "programs/VariableSize.h"

#include <vlMemory/Utf8.h>

#include <fmt/format.h>
#include <glslang/Public/ResourceLimits.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <glslang/SPIRV/SpvTools.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

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

void setUp(glslang::TShader& shader, EShLanguage language) {
    shader.setEntryPoint("main");
    shader.setSourceEntryPoint("main");
    shader.setEnvInput(glslang::EShSourceHlsl, language, glslang::EShClientVulkan, 100);
    shader.setEnvClient(glslang::EShClientVulkan, glslang::EShTargetVulkan_1_1);
    shader.setEnvTarget(glslang::EShTargetSpv, glslang::EShTargetSpv_1_3);
    shader.setHlslIoMapping(true);
    shader.setAutoMapBindings(true);
    shader.setAutoMapLocations(true);
}

/// The compiler's own tables, made before the first compilation and freed at exit.
struct CompilerProcess {
    CompilerProcess() {
        glslang::InitializeProcess();
        // The first text makes most of them.
        glslang::TShader shader(EShLangVertex);
        const char* const text = "void main() {}";
        shader.setStrings(&text, 1);
        setUp(shader, EShLangVertex);
        shader.parse(GetDefaultResources(), 100, false, messages);
    }
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

std::optional<ProgramDiagnostic>
findExcess(const CompileRequest& request, SHADER_TYPE stage, IncludeFiles& files) {
    const std::string preamble = HlslText::preamble(request.sources.getDefineMacros(stage),
                                                    request.crossCompilerDefines);
    SourceBounds bounds;
    if (const auto fault = bounds.findFault(preamble))
        return ProgramDiagnostic{stage, {}, 1, "in the macros: " + fault->text};
    IncludeWalk walk(files);
    const auto fault = bounds.findFault(request.sources.getMemory(stage),
                                        request.mayInclude() ? &walk : nullptr);
    if (!fault) return std::nullopt;
    return ProgramDiagnostic{stage,
                             fault->file == nullptr ? vlMemory::String()
                                                    : files.nameOf(*fault->file),
                             static_cast<std::uint32_t>(fault->line),
                             fault->text};
}

/// What can be said without compiling.
std::optional<ProgramDiagnostic>
findFault(const CompileRequest& request, SHADER_TYPE stage, IncludeFiles& files) {
    auto fault = HlslText::findFault(request.sources.getDefineMacros(stage));
    if (!fault) fault = HlslText::findFault(request.sources.getMemory(stage));
    if (fault) return HlslMessages::error(stage, *fault);
    return findExcess(request, stage, files);
}

/** One stage on its way through the compiler. */
class StageCompilation {
public:
    StageCompilation(SHADER_TYPE stage, const CompileRequest& request, IncludeFiles& files)
        : stage_(stage), source_(request.sources.getMemory(stage)),
          preamble_(HlslText::preamble(request.sources.getDefineMacros(stage),
                                       request.crossCompilerDefines)),
          includer_(files), shader_(languageOf(stage)) {}

    SHADER_TYPE stage() const { return stage_; }
    glslang::TProgram& program() { return *program_; }

    /// Nothing when it went well.
    std::optional<ProgramDiagnostic> parseAndLink() {
        const char* text = source_.data();
        const int length = static_cast<int>(source_.size());
        shader_.setStringsWithLengths(&text, &length, 1);
        shader_.setPreamble(preamble_.c_str());
        setUp(shader_, languageOf(stage_));
        if (!shader_.parse(GetDefaultResources(), 100, false, messages, includer_))
            return parseError();
        if (shader_.getIntermediate()->getNumEntryPoints() == 0)
            return HlslMessages::error(stage_, "1: there is no function 'main'");
        program_ = std::make_unique<glslang::TProgram>();
        program_->addShader(&shader_);
        if (!program_->link(messages)) return linkError();
        return std::nullopt;
    }

    /// Empty when it went well.
    std::string translate(const CompileRequest& request, CompiledProgram& into) {
        std::vector<std::uint32_t>& spirv = into.spirv[static_cast<std::size_t>(stage_)];
        const glslang::TIntermediate* intermediate = program_->getIntermediate(languageOf(stage_));
        glslang::SpvOptions options;
        options.disableOptimizer = true; // loops are still plain to see then
        spv::SpvBuildLogger logger;
        if (intermediate != nullptr) glslang::GlslangToSpv(*intermediate, spirv, &logger, &options);
        if (const std::string excess = ModuleBounds::findExcess(spirv); !excess.empty())
            return "1: " + excess;
        if (!spirv.empty()) {
            mendModule(spirv, stage_);
            if (request.boundLoops) boundLoops(*intermediate, request, into);
            options.disableOptimizer = false;
            glslang::SpirvToolsTransform(*intermediate, spirv, &logger, &options);
            if (const std::string fault = replaceResourceVariables(spirv); !fault.empty())
                return "1: " + fault;
        }
        if (const std::uint64_t bytes = variableBytes(spirv); bytes > maxVariableBytes)
            return fmt::format("1: the variables have {} bytes, more than the {} possible",
                               bytes,
                               maxVariableBytes);
        if (!spirv.empty()) return {};
        const std::string log = logger.getAllMessages();
        return log.empty() ? "1: it compiles to nothing" : "1: " + log.substr(0, log.find('\n'));
    }

private:
    ProgramDiagnostic parseError() {
        ProgramDiagnostic error = HlslMessages::firstError(stage_, shader_.getInfoLog());
        if (!includer_.failure().empty() && error.text.starts_with("'#include'"))
            error.text = "#include " + includer_.failure();
        return error;
    }

    /// Its place is that of the function that it names, if it does.
    ProgramDiagnostic linkError() {
        ProgramDiagnostic error = HlslMessages::firstError(stage_, program_->getInfoLog());
        const auto* tree = shader_.getIntermediate()->getTreeRoot();
        const auto* all = tree == nullptr ? nullptr : tree->getAsAggregate();
        if (all == nullptr || error.line != 1) return error;
        for (TIntermNode* node : const_cast<glslang::TIntermAggregate*>(all)->getSequence()) {
            const glslang::TIntermAggregate* function = node->getAsAggregate();
            if (function == nullptr || function->getOp() != glslang::EOpFunction) continue;
            if (error.text.find(function->getName().c_str()) == std::string::npos) continue;
            error.file = function->getLoc().getFilenameStr();
            error.line = static_cast<std::uint32_t>(std::max(function->getLoc().line, 1));
            break;
        }
        return error;
    }

    void boundLoops(const glslang::TIntermediate& intermediate,
                    const CompileRequest& request,
                    CompiledProgram& into) const {
        const auto index = static_cast<std::size_t>(stage_);
        const bool tells = (request.writingStages >> index & 1U) != 0;
        const std::vector<std::size_t> watched =
                guardLoops(into.spirv[index], stage_, {request.mostPasses, tells});
        into.mostPasses = request.mostPasses;
        if (watched.empty()) return;
        if (tells) into.tellingStages |= 1U << index;
        std::vector<std::uint32_t> placed;
        spv::SpvBuildLogger logger;
        glslang::SpvOptions options;
        options.disableOptimizer = true;
        options.generateDebugInfo = true;
        glslang::GlslangToSpv(intermediate, placed, &logger, &options);
        const std::vector<LoopPlace> places = findLoopPlaces(placed);
        for (const std::size_t loop : watched)
            into.loops[index].push_back(loop < places.size() ? places[loop] : LoopPlace());
    }

    SHADER_TYPE stage_;
    const vlMemory::String& source_;
    std::string preamble_;
    HlslIncluder includer_; ///< the shader keeps what it includes
    glslang::TShader shader_;
    std::unique_ptr<glslang::TProgram> program_; ///< goes before the shader that it links
};

using Faults = std::vector<ProgramDiagnostic>;
using Stages = std::vector<std::unique_ptr<StageCompilation>>;

/// Every stage for itself, so that one fault does not hide another stage's.
Stages
compileStages(const CompileRequest& request, IncludeFiles& files, Faults& faults, ApartNote& note) {
    Stages stages;
    for (const SHADER_TYPE stage : stagesOf(request.type)) {
        note = static_cast<std::uint32_t>(stage);
        if (HlslText::isBlank(request.sources.getMemory(stage))) {
            if (isNeeded(request.type, stage, request.sources))
                faults.push_back(HlslMessages::error(stage, "1: the source is empty"));
            continue;
        }
        auto fault = findFault(request, stage, files);
        if (!fault) {
            auto& compilation =
                    stages.emplace_back(std::make_unique<StageCompilation>(stage, request, files));
            fault = compilation->parseAndLink();
        }
        if (fault) faults.push_back(*std::move(fault));
    }
    return stages;
}

/// Puts a path in the place of the compiler's name for a file.
template <class Text> void nameFile(Text& file, const IncludeFiles& files) {
    ProgramDiagnostic named;
    named.file = file;
    HlslMessages::finish(named, files);
    file = named.file;
}

void nameFiles(CompiledProgram& program, const IncludeFiles& files) {
    for (std::vector<LoopPlace>& ofStage : program.loops)
        for (LoopPlace& place : ofStage)
            nameFile(place.file, files);
    for (ReflectedResource& resource : program.reflection.resources)
        nameFile(resource.file, files);
    nameFile(program.reflection.obstacleFile, files);
}

/// The compiler forgets where inputs and outputs stand; what a fault begins with is a semantic
/// then.
ProgramDiagnostic placed(ProgramDiagnostic fault, const CompileRequest& request) {
    if (fault.line > 1 || !fault.file.empty() || !fault.text.starts_with('\'')) return fault;
    const StringView semantic = StringView(fault.text).substr(1, fault.text.find('\'', 1) - 1);
    fault.line = HlslText::lineOfSemantic(request.sources.getMemory(fault.stage), semantic);
    return fault;
}

/// An invalid module stands in the way of using the program.
void findObstacle(CompiledProgram& program) {
    for (std::uint32_t index = 0; index < shaderTypeCount; ++index) {
        if (!program.reflection.obstacle.empty()) return;
        if (program.spirv[index].empty()) continue;
        program.reflection.obstacle = findModuleFault(program.spirv[index]);
        program.reflection.obstacleStage = static_cast<SHADER_TYPE>(index);
    }
}

/// The faults are those of a program that cannot be used.
CompiledProgram compileProgram(const CompileRequest& request,
                               IncludeFiles& files,
                               Faults& faults,
                               ApartNote& note) {
    CompiledProgram compiled;
    const Stages stages = compileStages(request, files, faults, note);
    if (!faults.empty()) return compiled;
    std::vector<LinkedStage> linked;
    for (const auto& compilation : stages)
        linked.push_back(
                {compilation->stage(), &compilation->program(), languageOf(compilation->stage())});
    MappedInterfaces interfaces;
    if (auto fault = mapInterfaces(linked, interfaces)) {
        faults.push_back(placed(*std::move(fault), request));
        return compiled;
    }
    for (const auto& compilation : stages) {
        note = shaderTypeCount + static_cast<std::uint32_t>(compilation->stage());
        if (const std::string error = compilation->translate(request, compiled); !error.empty())
            faults.push_back(HlslMessages::error(compilation->stage(), error));
    }
    if (!faults.empty()) return compiled;
    auto reflection = reflect(compiled, interfaces);
    if (!reflection) {
        faults.push_back(placed(std::move(reflection.error()), request));
        return compiled;
    }
    compiled.reflection = *std::move(reflection);
    nameFiles(compiled, files);
    findObstacle(compiled);
    return compiled;
}

CompileOutcome compileChecked(const CompileRequest& request, IncludeFiles& files, ApartNote& note) {
    Faults faults;
    CompiledProgram compiled = compileProgram(request, files, faults, note);
    if (faults.empty()) return compiled;
    for (ProgramDiagnostic& fault : faults)
        HlslMessages::finish(fault, files);
    return tl::unexpected(ProgramCompilationResult(std::move(faults)));
}

CompileOutcome failAt(SHADER_TYPE stage, StringView message) {
    return tl::unexpected(ProgramCompilationResult(stage, vlMemory::printable(message)));
}

CompileOutcome compileIn(const CompileRequest& request, IncludeFiles& files, ApartNote& note) {
    if (request.type == PROGRAM_TYPE::NONE)
        return failAt(SHADER_TYPE::VERTEX, "1: the program has no type");
    if (request.type == PROGRAM_TYPE::RAYTRACING)
        return failAt(SHADER_TYPE::RAYTRACING, "1: ray tracing programs cannot be compiled here");
    try {
        return compileChecked(request, files, note);
    } catch (const std::exception& error) {
        return failAt(stagesOf(request.type).front(),
                      fmt::format("1: it cannot be compiled: {}", error.what()));
    }
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

void warmUpCompiler() {
    static const CompilerProcess process;
}

void readIncludes(const CompileRequest& request, IncludeFiles& files) {
    if (!request.mayInclude()) return;
    for (const SHADER_TYPE stage : stagesOf(request.type))
        static_cast<void>(findFault(request, stage, files));
}

CompileReport compileHere(const CompileRequest& request, ApartNote& note) {
    warmUpCompiler();
    IncludeFiles files(request.workingPath, request.folder, request.filePrefix);
    CompileReport report = compileIn(request, files, note);
    report.probes = files.probes();
    report.includedFiles = files.names();
    return report;
}

} // namespace vlGraphics
