#include "app/LayoutFile.h"

#include "core/EditorLogger.h"

#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace vlEditor {
namespace {

namespace fs = std::filesystem;

bool& enabledFlag() {
    static bool enabled = false;
    return enabled;
}

} // namespace

void LayoutFile::setEnabled(bool enabled) {
    enabledFlag() = enabled;
}

bool LayoutFile::isEnabled() {
    return enabledFlag();
}

std::string LayoutFile::path() {
    const char* settings = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (settings != nullptr && *settings == '/')
        folder = settings;
    else if (home != nullptr && *home == '/')
        folder = fs::path(home) / ".config";
    else
        return {};
    return (folder / "vlEditor" / "layout.json").string();
}

std::optional<WindowLayout> LayoutFile::load() {
    const std::string file = path();
    std::error_code ignored;
    if (!isEnabled() || file.empty() || !fs::exists(file, ignored)) return std::nullopt;
    const auto refuse = [&](const std::string& reason) {
        // It may be of a newer editor, or have one wrong letter: leaving must not write over it.
        const std::string kept = file + ".refused";
        std::error_code failed;
        fs::rename(file, kept, failed);
        const std::string where = failed ? std::string() : " It is kept as '" + kept + "'.";
        EditorLogger::getInstance().log(reason + " The default window layout is used." + where,
                                        "Editor");
        return std::nullopt;
    };
    const auto read = vlResources::ResourceManager::getInstance().readFile(file, largestFile);
    if (!read) return refuse(read.error().message + '.');
    auto layout = WindowLayout::fromText(read->text(), file);
    if (!layout) return refuse(layout.error().message + '.');
    return std::move(*layout);
}

void LayoutFile::save(const WindowLayout& layout) {
    const std::string file = path();
    if (!isEnabled() || file.empty() || layout.tabs.empty()) return;
    const auto folder = vlResources::ResourceManager::getInstance().checkFolderExists(
            fs::path(file).parent_path().string());
    const auto written =
            folder ? vlResources::FileWriter::writeFileWhole(file, layout.toText()) : folder;
    if (!written) std::cerr << "vlEditor: " << written.error().message << '\n';
}

} // namespace vlEditor
