#include "editors/shader_program/ShaderProgramMessages.h"

#include "editors/shader_program/ProgramFiles.h"

#include <vlResources/ResourceManager.h>
#include <vlWinUi/ComponentManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

namespace vlEditor {
namespace {

using vlGraphics::Program;

std::string failureLine(const ShaderProgramRecord& record) {
    return fmt::format("{} does not compile: {} stage, {}",
                       thingNamed(ShaderProgramKind::texts, record.name),
                       stageLabel(record.failedStage),
                       record.failure);
}

bool isAnyWindowOpen() {
    return !vlWinUi::ComponentManager::startingWith(ShaderProgramKind::texts.prefix).empty();
}

} // namespace

void ShaderProgramFileMessage::runOnGraphicsThread() {
    auto* program = managerOf<ShaderProgramKind>().get(name);
    if (program == nullptr || program->isHidden() || stage >= programStageCount) return;
    const auto read = readStageFile(path);
    if (!read) {
        // Not there, or just emptied to be written: another change follows. The rest would leave a
        // person believing that the text here is the file's.
        std::error_code error;
        const auto bytes = std::filesystem::file_size(
                vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir(path), error);
        if (!error && bytes > 0) postToUi(LogMessage(read.error().message));
        return;
    }
    const std::string& held =
            program->getMemory().getMemory(static_cast<vlGraphics::SHADER_TYPE>(stage));
    ShaderProgramFileMessage outcome = *this;
    outcome.text = *read;
    outcome.isKept = held != *read && held != base && *read != base;
    if (held == base && held != *read) {
        outcome.change.before = mementoOf<ShaderProgramKind>(*program);
        changeResource<ShaderProgramKind>(*program,
                                          [&] { setStageSource(*program, stage, *read); });
        outcome.change.setAfter(*program);
    }
    postToUi(std::move(outcome));
}

void ShaderProgramFileMessage::runOnUiThread() {
    auto& tracker = ShaderProgramUiDataTracker::getInstance();
    if (tracker.get(name) == nullptr) return;
    const auto tell = [&](std::string_view what) {
        logEditorLine(fmt::format("{}, {} stage: '{}' changed on disk{}",
                                  thingNamed(ShaderProgramKind::texts, name),
                                  stageLabel(stage),
                                  path,
                                  what));
    };
    if (ProgramFiles::hasInstance())
        ProgramFiles::getInstance().setRead(name, stage, path, isKept ? base : text, isKept);
    if (change.record) {
        adoptRecord<ShaderProgramKind>(std::move(*change.record));
        recordStep<ShaderProgramKind>(gesture, std::move(change.before), std::move(change.after));
        tell(" and was read again.");
        return;
    }
    if (isKept) tell(", and so did the text here, which stays.");
    tracker.notifyUpdated(name);
}

void ShaderProgramIncludeMessage::runOnGraphicsThread() {
    auto& programs = managerOf<ShaderProgramKind>();
    for (std::size_t i = 0; i < programs.getCount(); ++i) {
        Program* program = programs.getByIndex(i);
        if (program == nullptr) continue;
        const auto& files = program->getIncludedFiles();
        if (std::ranges::find(files, file) != files.end()) logFailure(program->load());
    }
}

void ShaderProgramCompiledMessage::runOnUiThread() {
    auto& tracker = ShaderProgramUiDataTracker::getInstance();
    auto* held = tracker.get(record.name);
    if (held == nullptr) {
        if (record.failed) logEditorLine(failureLine(record) + ".");
        return;
    }
    // Who sees no list of programs would not see which one has gone wrong.
    if (record.failed && !held->failed && !isAnyWindowOpen())
        vlWinUi::System::showHint(failureLine(record));
    const std::string name = record.name;
    *held = std::move(record);
    tracker.notifyUpdated(name);
}

void tellProgramCompiled(const Program& program) {
    ShaderProgramRecord record = recordOf<ShaderProgramKind>(program);
    if (!program.isHidden())
        postToUi(ShaderProgramCompiledMessage(std::move(record)));
    else if (record.failed)
        postToUi(LogMessage(failureLine(record) + "."));
}

} // namespace vlEditor
