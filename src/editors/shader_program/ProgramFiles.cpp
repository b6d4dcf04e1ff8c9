#include "editors/shader_program/ProgramFiles.h"

#include "editors/shader_program/ShaderProgramMessages.h"
#include "interfaces/history/PendingEdit.h"

#include <vlResources/ResourceManager.h>

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <utility>

namespace vlEditor {
namespace {

using vlGraphics::SHADER_TYPE;

std::string absoluteOf(const std::string& path) {
    return vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir(path);
}

/// Since about when a file may have been read that is only watched from now on: compiling takes its
/// time, too.
constexpr std::int64_t justNowSeconds = 60;

bool hasJustChanged(const std::string& absolutePath) {
    struct stat found {};
    // Also of a file that was renamed to this.
    return ::stat(absolutePath.c_str(), &found) == 0 &&
           std::time(nullptr) - found.st_ctim.tv_sec < justNowSeconds;
}

/// Where a program of files has that stage; empty for what it has in none.
std::string pathOf(const ShaderProgramRecord& record, std::uint32_t stage) {
    const auto type = static_cast<SHADER_TYPE>(stage);
    // The file of that stage is no copy of its source.
    const bool isInFile = !record.folder.empty() && !record.sources[stage].empty() &&
                          type != SHADER_TYPE::RAYTRACING;
    if (!isInFile) return {};
    return fmt::format("{}/{}",
                       fromWorkingDirectory(record.folder),
                       vlGraphics::ContentLoader::getStageFile(type));
}

} // namespace

ProgramFiles::ProgramFiles() : watcher_([this](const std::string& path) { onFileChanged(path); }) {
    auto& tracker = ShaderProgramUiDataTracker::getInstance();
    tracker.registerListener(*this);
    for (const ShaderProgramRecord* record : tracker.inOrder())
        onResourceUpdated(*record);
}

ProgramFiles::~ProgramFiles() {
    if (ShaderProgramUiDataTracker::hasInstance())
        ShaderProgramUiDataTracker::getInstance().unregisterListener(*this);
}

void ProgramFiles::setFile(const ShaderProgramRecord& record,
                           std::uint32_t stage,
                           const std::string& path) {
    programs_[record.name][stage] = {fromWorkingDirectory(path), record.sources.at(stage)};
    watchLater();
    // Windows show it.
    ShaderProgramUiDataTracker::getInstance().notifyUpdated(record.name);
}

void ProgramFiles::setRead(const std::string& program,
                           std::uint32_t stage,
                           const std::string& path,
                           std::string text,
                           bool isAhead) {
    const StageFile* known = find(program, stage);
    if (known == nullptr || known->path != path) return;
    programs_[program][stage] = {path, std::move(text), isAhead};
}

void ProgramFiles::forget(const std::string& program) {
    programs_.erase(program);
    includes_.erase(program);
    watchLater();
}

const StageFile* ProgramFiles::find(const std::string& program, std::uint32_t stage) const {
    const auto files = programs_.find(program);
    if (files == programs_.end()) return nullptr;
    const auto file = files->second.find(stage);
    return file == files->second.end() ? nullptr : &file->second;
}

void ProgramFiles::onResourceRenamed(const std::string& oldName,
                                     const ShaderProgramRecord& record) {
    if (oldName == record.name) return;
    const auto move = [&](auto& table) {
        table.erase(record.name);
        auto node = table.extract(oldName);
        if (node.empty()) return;
        node.key() = record.name;
        table.insert(std::move(node));
    };
    move(programs_);
    move(includes_);
    watchLater();
}

void ProgramFiles::onResourceUpdated(const ShaderProgramRecord& record) {
    bool isNew = false;
    for (std::uint32_t stage = 0; stage < programStageCount; ++stage) {
        std::string path = pathOf(record, stage);
        if (path.empty()) continue;
        const StageFile* known = find(record.name, stage);
        isNew = isNew || known == nullptr || known->path != path;
        // It is one of files as long as nobody changes its text.
        programs_[record.name][stage] = {std::move(path), record.sources[stage]};
    }
    const auto included = includes_.find(record.name);
    const bool hasIncludes = included != includes_.end();
    if (hasIncludes ? included->second != record.includedFiles : !record.includedFiles.empty()) {
        includes_[record.name] = record.includedFiles;
        isNew = true;
    }
    if (isNew) watchLater();
}

void ProgramFiles::onResourcesCleared() {
    programs_.clear();
    includes_.clear();
    watchLater();
}

void ProgramFiles::onFileChanged(const std::string& absolutePath) {
    // What a person has typed is compared with the file, too.
    PendingEdit::flushAll();
    tellChanged(absolutePath);
}

void ProgramFiles::tellChanged(const std::string& absolutePath) const {
    for (const auto& [name, files] : programs_) {
        for (const auto& [stage, file] : files) {
            if (absoluteOf(file.path) != absolutePath) continue;
            ShaderProgramFileMessage message(name, stage, file.path, file.text);
            message.gesture = History::nextGesture();
            postToGraphics(std::move(message));
        }
    }
    std::set<std::string> changed;
    for (const auto& [name, files] : includes_) {
        for (const std::string& file : files)
            if (absoluteOf(file) == absolutePath) changed.insert(file);
    }
    for (const std::string& file : changed)
        postToGraphics(ShaderProgramIncludeMessage(file));
}

/// Once for all programs that come with a project.
void ProgramFiles::watchLater() {
    if (std::exchange(isToWatch_, true)) return;
    MessageOrchestrator::getInstance().afterUiDrain([this, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) watch();
    });
}

void ProgramFiles::watch() {
    isToWatch_ = false;
    std::set<std::string> paths;
    for (const auto& [name, files] : programs_) {
        for (const auto& [stage, file] : files)
            paths.insert(absoluteOf(file.path));
    }
    for (const auto& [name, files] : includes_) {
        for (const std::string& file : files)
            paths.insert(absoluteOf(file));
    }
    watcher_.setPaths({paths.begin(), paths.end()});
    // What was written after it was read and before it was watched.
    std::vector<std::string> missed;
    for (const std::string& path : paths)
        if (!watched_.contains(path) && hasJustChanged(path)) missed.push_back(path);
    watched_ = std::move(paths);
    // What a person has typed is compared with the files, too.
    if (!missed.empty()) PendingEdit::flushAll();
    for (const std::string& path : missed)
        tellChanged(path);
}

} // namespace vlEditor
