#include "content/KindLoader.h"
#include "programs/HlslCompiler.h"
#include "programs/StageNames.h"
#include "resources/EnumTexts.h"

#include <vlMemory/Utf8.h>
#include <vlResources/ResourceManager.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace vlGraphics {

namespace {

constexpr std::size_t mostSourceBytes = std::size_t{1} << 24U; ///< of one stage

/// Stands in the declaration where the others are in files: its file is no copy of its source.
constexpr SHADER_TYPE inlineStage = SHADER_TYPE::RAYTRACING;

struct StageValues {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    vlMemory::String file;
    vlMemory::String source;
    std::vector<DefineMacro> macros;
};

template <class Archive, class V> void describeStage(Archive& archive, V& values) {
    archive.required("stage", values.stage, EnumTexts<SHADER_TYPE>::table);
    if (Archive::reading || !values.file.empty()) archive.optional("file", values.file);
    if (Archive::reading || !values.source.empty()) archive.optional("source", values.source);
    archive.check(values.file.empty() || values.source.empty(),
                  "source",
                  "stands beside 'file', where only one of them can be");
    if (Archive::reading || !values.macros.empty()) {
        archive.optionalArray("macros", values.macros, [](auto& child, auto& macro) {
            child.required("name", macro.name);
            child.optional("value", macro.value);
        });
    }
}

vlMemory::StringView withoutByteOrderMark(vlMemory::StringView text) {
    constexpr vlMemory::StringView mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

/// Reads the stage's file; the answer is the folder it belongs to when it is called as the files of
/// a program's folder are, and empty otherwise.
vlCommon::Result<vlMemory::String> readStage(StageValues& values,
                                             const DeclarationFolders& folders) {
    const auto path = folders.resolve(values.file);
    if (!path) return tl::unexpected(path.error());
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(*path, mostSourceBytes);
    if (!bytes) return tl::unexpected(bytes.error());
    values.source = withoutByteOrderMark(bytes->text());
    if (vlMemory::findInvalidUtf8(values.source) != vlMemory::StringView::npos)
        return vlCommon::fail(fmt::format("'{}': the text is not valid UTF-8", values.file));
    const std::filesystem::path file(*path);
    const auto wanted = ContentLoader::getStageFile(values.stage);
    return file.filename().string() == wanted ? file.parent_path().string() : vlMemory::String();
}

} // namespace

vlMemory::StringView ContentLoader::getStageFile(SHADER_TYPE stage) {
    constexpr std::array<vlMemory::StringView, shaderTypeCount> files{"vertexShader.hlsl",
                                                                      "hullShader.hlsl",
                                                                      "domainShader.hlsl",
                                                                      "geometryShader.hlsl",
                                                                      "pixelShader.hlsl",
                                                                      "computeShader.hlsl",
                                                                      "raytraceShader.hlsl"};
    return files[static_cast<std::size_t>(stage)];
}

template <> struct Declared<Program> {
    using Manager = ProgramManager;
    static constexpr vlMemory::StringView list = "programs";
    struct Values {
        PROGRAM_TYPE type = PROGRAM_TYPE::PIPELINE;
        bool crossCompilerDefines = true;
        bool boundLoops = true;
        vlMemory::String folder;        ///< of a memento: where the sources belong
        vlMemory::String includeFolder; ///< of a memento, where that is another
        std::vector<StageValues> stages;
    };
    template <class Archive, class V> static void describe(Archive& archive, V& values) {
        archive.optional("type", values.type, EnumTexts<PROGRAM_TYPE>::table);
        archive.optional("crossCompilerDefines", values.crossCompilerDefines);
        if (Archive::reading || !values.boundLoops)
            archive.optional("boundLoops", values.boundLoops);
        if (Archive::reading || !values.folder.empty()) archive.optional("folder", values.folder);
        if (Archive::reading || !values.includeFolder.empty())
            archive.optional("includeFolder", values.includeFolder);
        archive.optionalArray(
                "stages",
                values.stages,
                [](auto& child, auto& stage) { describeStage(child, stage); },
                shaderTypeCount);
    }
    static Values from(const Program& program, const DeclarationFolders& folders) {
        Values values{program.getType(),
                      program.getActivateCrossCompilerDefines(),
                      program.getBoundLoops(),
                      {},
                      {},
                      {}};
        const bool refers = program.isFromFile() && !folders.isMemento();
        if (folders.isMemento()) {
            values.folder = program.getFolder();
            if (program.getIncludeFolder() != program.getFolder())
                values.includeFolder = program.getIncludeFolder();
        }
        for (const auto& [stage, text] : EnumTexts<SHADER_TYPE>::table) {
            StageValues one{stage, {}, {}, program.getMemory().getDefineMacros(stage)};
            const vlMemory::String& source = program.getMemory().getMemory(stage);
            if (source.empty() && one.macros.empty()) continue;
            if (refers && !source.empty() && stage != inlineStage) {
                const auto name = ContentLoader::getStageFile(stage);
                one.file = folders.refer(fmt::format("{}/{}", program.getFolder(), name));
            } else {
                one.source = source;
            }
            values.stages.push_back(std::move(one));
        }
        return values;
    }
    static vlCommon::Result<> prepare(Values& values, const DeclarationFolders& folders) {
        for (const auto& [name, folder] : {std::pair("folder", &values.folder),
                                           std::pair("includeFolder", &values.includeFolder)}) {
            if (!folder->empty() && !folders.isMemento())
                return vlCommon::fail(fmt::format("'{}' has no place in a file", name));
        }
        std::array<bool, shaderTypeCount> seen{};
        std::optional<vlMemory::String> common;
        bool together = true;
        for (StageValues& stage : values.stages) {
            bool& known = seen[static_cast<std::size_t>(stage.stage)];
            if (known) {
                return vlCommon::fail(
                        fmt::format("'stages' has the stage {} twice", enumText(stage.stage)));
            }
            known = true;
            const bool inText = !stage.source.empty();
            if (stage.file.empty()) {
                together = together && (!inText || stage.stage == inlineStage);
                continue;
            }
            auto folder = readStage(stage, folders);
            if (!folder) return tl::unexpected(folder.error());
            together = together && !folder->empty() && (!common || *common == *folder);
            common = std::move(*folder);
        }
        if (common && together) values.folder = DeclarationFolders::sourcePathOf(*common);
        return {};
    }
    static std::vector<vlMemory::String> findFaults(vlMemory::StringView name,
                                                    const Values& values) {
        // Nothing here compiles these, and that is no fault of theirs.
        if (values.type == PROGRAM_TYPE::RAYTRACING || values.type == PROGRAM_TYPE::NONE) return {};
        const CompileReport report = compileHlsl(makeRequest(
                values.type, sourcesOf(values), values.crossCompilerDefines, values.folder));
        std::vector<vlMemory::String> lines;
        for (const ProgramDiagnostic& fault : faultsOf(report.outcome)) {
            const vlMemory::String file =
                    fault.file.empty() ? "" : fmt::format("'{}' ", fault.file);
            lines.push_back(fmt::format("{} '{}', {} stage, {}line {}: {}",
                                        Program::kindName,
                                        name,
                                        stageName(fault.stage),
                                        file,
                                        fault.line,
                                        fault.text));
        }
        return lines;
    }
    /// Also of what compiles and can be used on no device.
    static std::vector<ProgramDiagnostic> faultsOf(const CompileOutcome& outcome) {
        if (!outcome) return outcome.error().getDiagnostics();
        const ProgramReflection& reflection = outcome->reflection;
        if (reflection.obstacle.empty()) return {};
        return {{reflection.obstacleStage,
                 reflection.obstacleFile,
                 reflection.obstacleLine,
                 reflection.obstacle}};
    }
    static ProgramSourcesHolder sourcesOf(const Values& values) {
        ProgramSourcesHolder sources;
        for (const StageValues& stage : values.stages) {
            sources.setMemory(stage.stage, stage.source);
            for (const DefineMacro& macro : stage.macros) {
                sources.addDefineMacro(stage.stage, macro.name, macro.value);
            }
        }
        return sources;
    }
    static void apply(Program& program, const Values& values) {
        program.setType(values.type);
        program.setActivateCrossCompilerDefines(values.crossCompilerDefines);
        program.setBoundLoops(values.boundLoops);
        program.setFromMemory(sourcesOf(values));
        program.setFromFiles(values.folder);
        program.setIncludeFolder(values.includeFolder.empty() ? values.folder
                                                              : values.includeFolder);
    }
};

} // namespace vlGraphics

VL_DECLARED_KIND(Program);
