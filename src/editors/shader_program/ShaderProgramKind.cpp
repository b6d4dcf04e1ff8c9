#include "editors/shader_program/ShaderProgramKind.h"

#include "core/EditorLogger.h"
#include "editors/shader_program/DefaultSources.h"
#include "interfaces/kinds/EngineSide.h"

#include <vlGraphics/StructToString.h>
#include <vlResources/FileBatch.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <filesystem>

namespace vlEditor {
namespace {

using vlGraphics::ContentLoader;
using vlGraphics::Program;
using vlGraphics::ProgramSourcesHolder;
using vlGraphics::SHADER_TYPE;

/// The sources without what an undo does not lead back to.
vlExport::Node settingsOf(const ShaderProgramMemento& memento) {
    vlExport::Node settings = memento.declaration;
    ShaderProgramKind::detach(settings);
    return settings;
}

/// Where a declaration's program has its sources. Fails for a name that no folder can have.
vlCommon::Result<std::string> sourcesFolder(const Program& program, const std::string& path) {
    const std::string name = program.getName() + "_src";
    if (name.find('/') != std::string::npos) {
        return vlCommon::fail(fmt::format("{}: no folder for its sources can be called '{}'",
                                          thingNamed(ShaderProgramKind::texts, program.getName()),
                                          name));
    }
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? name : path.substr(0, slash + 1) + name;
}

/// Another program that is not saved under its new name yet still has its sources where those of
/// the old name belong: they would be lost.
vlCommon::Result<> checkNobodyElses(const std::string& absolute, const Program& program) {
    const auto& files = vlResources::ResourceManager::getInstance();
    const auto& programs = *vlGraphics::ProgramManager::getInstance();
    for (std::size_t i = 0; i < programs.getCount(); ++i) {
        const Program* other = programs.getByIndex(i);
        if (other == nullptr || other == &program || other->getFolder().empty()) continue;
        if (files.getAbsoluteFromWorkingDir(other->getFolder()) != absolute) continue;
        return vlCommon::fail(
                fmt::format("{}: the sources of '{}' are in '{}'; save that one first",
                            thingNamed(ShaderProgramKind::texts, program.getName()),
                            other->getName(),
                            other->getFolder()));
    }
    return {};
}

constexpr std::size_t mostIncludedBytes = std::size_t{4} << 20U; ///< that the compiler reads

/// What the sources include from the folder in which they have looked so far would not be found
/// beside them in another one. What stands there already stays.
void addIncluded(const Program& program, const std::string& absolute, vlResources::FileBatch& to) {
    const auto& files = vlResources::ResourceManager::getInstance();
    const std::string start = program.getIncludeFolder() + "/";
    for (const std::string& path : program.findIncludedFiles()) {
        if (!path.starts_with(start)) continue;
        const std::string copy = fmt::format("{}/{}", absolute, path.substr(start.size()));
        std::error_code error;
        if (std::filesystem::exists(copy, error)) continue;
        if (const auto bytes = files.readFile(path, mostIncludedBytes)) to.add(copy, *bytes);
    }
}

/// The later of two files with one path counts.
void addSources(const ProgramSourcesHolder& sources,
                const std::string& absolute,
                vlResources::FileBatch& to) {
    for (std::uint32_t i = 0; i < programStageCount; ++i) {
        const auto stage = static_cast<SHADER_TYPE>(i);
        if (sources.getMemory(stage).empty()) continue;
        // The ray tracing file holds the compute text, and none where that is empty.
        const bool isRaytracing = stage == SHADER_TYPE::RAYTRACING;
        const auto written = isRaytracing ? SHADER_TYPE::COMPUTE : stage;
        const vlMemory::String& text = sources.getMemory(written);
        if (isRaytracing && text.empty()) continue;
        to.add(fmt::format("{}/{}", absolute, ContentLoader::getStageFile(stage)), text);
    }
}

constexpr std::array<const char*, 4> registerLetters{"b", "t", "s", "u"};

} // namespace

std::string_view stageLabel(std::uint32_t stage) {
    constexpr PerStage<std::string_view> labels{
            "Vertex", "Hull", "Domain", "Geometry", "Pixel", "Compute", "Raytracing"};
    return labels.at(stage);
}

bool operator==(const ShaderProgramMemento& a, const ShaderProgramMemento& b) {
    return a.name == b.name && settingsOf(a) == settingsOf(b);
}

PerStage<std::string> ShaderProgramKind::sourcesOf(const Program& program) {
    PerStage<std::string> sources;
    for (std::uint32_t stage = 0; stage < programStageCount; ++stage)
        sources[stage] = program.getMemory().getMemory(static_cast<SHADER_TYPE>(stage));
    return sources;
}

PerStage<ShaderProgramMacroList> ShaderProgramKind::macrosOf(const Program& program) {
    PerStage<ShaderProgramMacroList> macros;
    for (std::uint32_t i = 0; i < programStageCount; ++i) {
        for (const auto& each : program.getMemory().getDefineMacros(static_cast<SHADER_TYPE>(i)))
            macros[i].push_back({each.name, each.value});
    }
    return macros;
}

std::vector<ShaderProgramDiagnostic> ShaderProgramKind::diagnosticsOf(const Program& program) {
    std::vector<ShaderProgramDiagnostic> diagnostics;
    for (const auto& each : program.getLastCompilationResult().getDiagnostics()) {
        const auto stage = static_cast<std::uint32_t>(each.stage);
        diagnostics.push_back({stage, each.file, each.line, each.text});
    }
    return diagnostics;
}

std::vector<ShaderProgramResource> ShaderProgramKind::resourcesOf(const Program& program) {
    std::vector<ShaderProgramResource> resources;
    for (const auto& each : program.getReflection().resources) {
        const char* letter = registerLetters.at(static_cast<std::size_t>(each.resourceClass));
        auto& resource = resources.emplace_back();
        resource = {letter, each.slot, each.space, each.name, each.byteSize, {}};
        for (const auto& member : each.members)
            resource.memberNames.push_back(member.name);
    }
    return resources;
}

std::vector<std::string> ShaderProgramKind::includedFilesOf(const Program& program) {
    const auto& files = program.getIncludedFiles();
    return {files.begin(), files.end()};
}

void ShaderProgramKind::makeFresh(Program& program) {
    program.setType(vlGraphics::PROGRAM_TYPE::PIPELINE);
    program.setFromMemory(defaultSources(vlGraphics::PROGRAM_TYPE::PIPELINE));
}

void ShaderProgramKind::separate(vlExport::Node& declaration) {
    const vlExport::Node* folder = declaration.find("folder");
    if (folder == nullptr) return;
    declaration.add("includeFolder", *folder);
    declaration.remove("folder");
}

vlCommon::Result<> ShaderProgramKind::save(Program& program, const std::string& path) {
    const auto folder = sourcesFolder(program, path);
    if (!folder) return tl::unexpected(folder.error());
    const std::string absolute =
            vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir(*folder);
    vlResources::FileBatch files;
    addSources(program.getMemory(), absolute, files);
    if (files.size() > 0) {
        if (auto checked = checkNobodyElses(absolute, program); !checked) return checked;
    }
    if (files.size() == 0 || program.getFolder() == *folder)
        return ContentLoader::saveObjectDeclaration(program, path, files);
    const std::string before = program.getFolder();
    const std::string included = program.getIncludeFolder();
    const bool looksElsewhere = !included.empty() && included != *folder;
    if (looksElsewhere) {
        files = {};
        addIncluded(program, absolute, files);
        addSources(program.getMemory(), absolute, files);
    }
    program.setFromFiles(*folder);
    auto saved = ContentLoader::saveObjectDeclaration(program, path, files);
    if (!saved) {
        program.setFromFiles(before);
        program.setIncludeFolder(included);
    } else if (looksElsewhere) {
        // From now on with the files beside the sources, which are the ones to follow.
        logFailure(program.load());
    }
    return saved;
}

std::string ShaderProgramKind::savePath(std::string chosen) {
    const std::string path = withExtension(texts, std::move(chosen));
    EditorLogger::getInstance().log("Saving Shader program file : " + path, "Save");
    return path;
}

std::string ShaderProgramKind::faultOf(const ShaderProgramRecord& record) {
    if (!record.failed) return {};
    return fmt::format(
            "It does not compile: {} stage, {}", stageLabel(record.failedStage), record.failure);
}

} // namespace vlEditor
