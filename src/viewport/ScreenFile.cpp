#include "viewport/ScreenFile.h"

#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/FileExplorer.h>
#include <vlWinUi/System.h>

#include <memory>

namespace vlEditor {
namespace {

constexpr std::string_view explorerName = "SCREEN_SAVE_EXPLORER";

vlWinUi::FileExplorer& explorer() {
    auto* found = vlWinUi::ComponentManager::get<vlWinUi::FileExplorer>(explorerName);
    if (found != nullptr) return *found;
    auto& made = *vlWinUi::ComponentManager::createOrRetrieve<vlWinUi::FileExplorer>(explorerName);
    made.setText("Save the picture");
    made.addFilter("Images", "jpg");
    made.setFollowSelfDir(true);
    made.setCurrentDir(vlResources::ResourceManager::getInstance().getWorkingPathAbsolute());
    made.setMode(vlWinUi::FileExplorer::Mode::Save);
    return made;
}

} // namespace

void ScreenFile::save(vlMemory::Buffer jpeg) {
    explorer().open(
            [kept = std::make_shared<vlMemory::Buffer>(std::move(jpeg))](const std::string& path) {
                const auto written =
                        vlResources::FileWriter::writeFileWhole(withEnding(path), kept->span());
                if (!written) vlWinUi::System::showHint(written.error().message);
            });
}

std::string ScreenFile::withEnding(vlMemory::StringView path) {
    std::string file(path);
    if (!file.ends_with(".jpg")) file += ".jpg";
    return file;
}

} // namespace vlEditor
