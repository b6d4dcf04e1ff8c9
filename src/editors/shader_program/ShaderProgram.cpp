#include "editors/shader_program/ShaderProgram.h"

#include "editors/AllKinds.h"
#include "editors/shader_program/DefaultSources.h"
#include "editors/shader_program/IncludeLines.h"
#include "editors/shader_program/ProgramFiles.h"
#include "editors/shader_program/ShaderProgramMessages.h"
#include "editors/shader_program/ShaderProgramWindow.h"
#include "interfaces/kinds/KindEntry.h"

#include <vlMemory/Utf8.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlGraphics::Program;
using vlGraphics::PROGRAM_TYPE;
using vlGraphics::ProgramSourcesHolder;
using vlGraphics::SHADER_TYPE;

constexpr std::size_t mostFileBytes = std::size_t{16} << 20U;

template <class Sources, class Macros>
ProgramSourcesHolder holderOf(const Sources& sources, const Macros& macros) {
    ProgramSourcesHolder holder;
    for (std::uint32_t i = 0; i < programStageCount; ++i) {
        const auto stage = static_cast<SHADER_TYPE>(i);
        holder.setMemory(stage, sources[i]);
        for (const ShaderProgramMacro& macro : macros[i])
            holder.addDefineMacro(stage, macro.name, macro.value);
    }
    return holder;
}

/// Texts that are the same leave a program of files one.
void put(Program& program, ProgramSourcesHolder sources) {
    if (program.getMemory() != sources) program.setFromMemory(std::move(sources));
}

vlCommon::Result<> checkStage(const Program& program, std::uint32_t stage) {
    if (stage < programStageCount) return {};
    return vlCommon::fail(fmt::format("{}: there is no stage {}",
                                      thingNamed(ShaderProgramKind::texts, program.getName()),
                                      stage));
}

/// A file's source includes what lies beside it. A program has one folder for that: another stage
/// that includes something keeps its own.
void lookBeside(const std::string& path, std::uint32_t stage, Program& program) {
    const auto includesAny = [&](std::uint32_t each) {
        const auto& source = program.getMemory().getMemory(static_cast<SHADER_TYPE>(each));
        return !includeLines(source).empty();
    };
    // The same text as before leaves it one of its files.
    if (program.isFromFile()) return;
    if (!program.getIncludeFolder().empty() && !includesAny(stage)) return;
    for (std::uint32_t other = 0; other < programStageCount; ++other)
        if (other != stage && includesAny(other)) return;
    const std::string file = fromWorkingDirectory(path);
    const std::size_t slash = file.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : file.substr(0, slash);
    if (folder != program.getIncludeFolder()) program.setIncludeFolder(folder);
}

} // namespace

vlCommon::Result<std::string> readStageFile(const std::string& path) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const std::string line = "Error while loading hlsl file : " + path;
    const auto bytes = vlResources::ResourceManager::getInstance().readFile(path, mostFileBytes);
    std::string_view text = bytes ? bytes->text() : std::string_view();
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    if (text.empty()) return vlCommon::fail(line);
    const std::size_t broken = vlMemory::findInvalidUtf8(text);
    if (broken == std::string_view::npos) return std::string(text);
    const auto number = 1 + std::ranges::count(text.substr(0, broken), '\n');
    return vlCommon::fail(fmt::format("{}, line {} is not valid UTF-8", line, number));
}

void setStageSource(Program& program, std::uint32_t stage, const std::string& text) {
    auto sources = ShaderProgramKind::sourcesOf(program);
    sources.at(stage) = text;
    put(program, holderOf(sources, ShaderProgramKind::macrosOf(program)));
}

vlCommon::Result<> ShaderProgramSource::applyTo(Program& program) const {
    if (auto checked = checkStage(program, stage); !checked) return checked;
    setStageSource(program, stage, value);
    return {};
}

void ShaderProgramSource::readFrom(const ShaderProgramRecord& record) {
    if (stage < programStageCount) value = record.sources[stage];
}

vlCommon::Result<> ShaderProgramMacros::applyTo(Program& program) const {
    if (auto checked = checkStage(program, stage); !checked) return checked;
    auto macros = ShaderProgramKind::macrosOf(program);
    macros[stage] = value;
    put(program, holderOf(ShaderProgramKind::sourcesOf(program), macros));
    return {};
}

void ShaderProgramMacros::readFrom(const ShaderProgramRecord& record) {
    if (stage < programStageCount) value = record.macros[stage];
}

vlCommon::Result<> ChangeShaderProgramType::applyTo(Program& program) const {
    const auto type = static_cast<PROGRAM_TYPE>(value);
    if (type < PROGRAM_TYPE::PIPELINE || type > PROGRAM_TYPE::RAYTRACING) {
        return vlCommon::fail(fmt::format("{}: there is no program type {}",
                                          thingNamed(ShaderProgramKind::texts, program.getName()),
                                          value));
    }
    program.setType(type);
    program.setFromMemory(defaultSources(type));
    return {};
}

void ChangeShaderProgramType::onMade(const ShaderProgramRecord& record) const {
    if (ProgramFiles::hasInstance()) ProgramFiles::getInstance().forget(record.name);
    logEditorLine("Shader program type changed : " + record.name);
}

vlCommon::Result<> CompileShaderProgramSources::applyTo(Program& program) const {
    const auto isFit = [](std::size_t count) { return count == 0 || count == programStageCount; };
    if (!isFit(sources.size()) || !isFit(macros.size())) {
        return vlCommon::fail(fmt::format("{}: it has {} stages",
                                          thingNamed(ShaderProgramKind::texts, program.getName()),
                                          programStageCount));
    }
    auto allSources = ShaderProgramKind::sourcesOf(program);
    auto allMacros = ShaderProgramKind::macrosOf(program);
    std::ranges::copy(sources, allSources.begin());
    std::ranges::copy(macros, allMacros.begin());
    put(program, holderOf(allSources, allMacros));
    return {};
}

vlCommon::Result<> LoadShaderProgramSources::applyTo(Program& program) const {
    if (auto checked = checkStage(program, stage); !checked) return checked;
    const auto text = readStageFile(path);
    if (!text) return tl::unexpected(text.error());
    setStageSource(program, stage, *text);
    lookBeside(path, stage, program);
    return {};
}

void LoadShaderProgramSources::onMade(const ShaderProgramRecord& record) const {
    if (ProgramFiles::hasInstance()) ProgramFiles::getInstance().setFile(record, stage, path);
}

void ShaderProgramKind::bind(Bindings<ShaderProgramKind>& window) {
    ShaderProgramWindow::bind(window);
}

void ShaderProgramKind::registerMessages(MessageRegistry& registry) {
    registry.add<ShaderProgramFileMessage>(MessageQueue::graphics);
    registry.add<ShaderProgramIncludeMessage>(MessageQueue::graphics);
    registry.add<ShaderProgramCompiledMessage>(MessageQueue::ui);
}

const AnyKind& shaderProgramKind() {
    static const KindEntry<ShaderProgramKind,
                           ShaderProgramSource,
                           ShaderProgramMacros,
                           ChangeShaderProgramType,
                           CompileShaderProgramSources,
                           LoadShaderProgramSources>
            kind;
    return kind;
}

} // namespace vlEditor
