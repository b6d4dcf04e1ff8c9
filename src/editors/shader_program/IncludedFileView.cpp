#include "editors/shader_program/IncludedFileView.h"

#include "core/EditorLogger.h"
#include "editors/shader_program/ShaderProgram.h"
#include "interfaces/DialogOwner.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::CodeEdit;
using vlWinUi::ComponentManager;
using vlWinUi::Window;

constexpr const char* windowName = "EDITOR_SHADER_PROGRAM_INCLUDED_FILE";
constexpr const char* editName = "EDITOR_SHADER_PROGRAM_INCLUDED_FILE_EDIT";
constexpr std::uint32_t escapeKey = 27;

CodeEdit& edit() {
    return *ComponentManager::createOrRetrieve<CodeEdit>(editName);
}

Window& window() {
    const bool isNew = ComponentManager::get(windowName) == nullptr;
    auto& made = *ComponentManager::createOrRetrieve<Window>(windowName);
    if (!isNew) return made;
    made.setRectangle({0, 0, 720, 480});
    edit().setLanguage(CodeEdit::Language::Hlsl);
    edit().setReadOnly(true);
    edit().setAccessibleName("Included file");
    edit().setKeyFilter([](const vlWinUi::KeyEvent& key) {
        if (key.virtualKey != escapeKey) return false;
        if (auto* shown = ComponentManager::get<Window>(windowName)) shown->setVisible(false);
        return true;
    });
    vlWinUi::GridLayout layout(1, 1);
    layout.addComponent(edit(), 0, 0);
    made.setLayout(std::move(layout));
    return made;
}

} // namespace

void IncludedFileView::open(const std::string& path,
                            std::size_t line,
                            const vlWinUi::Component& anchor) {
    const auto text = readStageFile(path);
    if (!text) {
        logEditorLine(text.error().message);
        return;
    }
    Window& shown = window();
    shown.setData(path);
    shown.setText(path + " (read only)");
    edit().setText(*text);
    DialogOwner::set(shown, anchor);
    shown.setVisible(true);
    edit().goToLine(line);
    edit().focusWindow();
}

std::string IncludedFileView::getPath() {
    const auto* shown = ComponentManager::get<Window>(windowName);
    const std::string* path = shown == nullptr ? nullptr : shown->getDataAs<std::string>();
    return path != nullptr && shown->isVisible() ? *path : std::string();
}

void IncludedFileView::update(std::vector<vlWinUi::CodeProblem> problems) {
    const std::string path = getPath();
    if (path.empty()) return;
    // One that has gone stays to be read.
    if (const auto text = readStageFile(path)) edit().setText(*text);
    edit().setProblems(std::move(problems));
}

} // namespace vlEditor
