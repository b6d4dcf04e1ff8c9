#include "project/OpenProject.h"

#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "project/LoadProjectMessage.h"

#include <vlResources/ResourceManager.h>

#include <filesystem>

namespace vlEditor {

void OpenProject::open(vlMemory::StringView path) {
    std::error_code failed;
    const std::filesystem::path absolute = std::filesystem::absolute(path, failed);
    const std::string full = failed ? std::string(path) : absolute.lexically_normal().string();
    const std::string relative =
            vlResources::ResourceManager::getInstance().getFromWorkingDirFromAbsolute(full);
    EditorLogger::getInstance().log("Appending scene file : " + relative, "Editor");
    postToGraphics(LoadProjectMessage(relative));
}

} // namespace vlEditor
