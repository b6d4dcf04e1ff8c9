#include "app/RenderingPropertyWindow.h"

#include "app/MainWindow.h"
#include "core/MessageOrchestrator.h"
#include "core/RenderingScriptChangeMessage.h"
#include "core/RenderingScriptName.h"
#include "interfaces/LayoutTemplate.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/ReservedNames.h"
#include "interfaces/history/PendingEdit.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr const char* windowName = "EDITOR_RENDERING_PROPERTY_WINDOW";

std::string_view shownName(const std::string& name) {
    return name.empty() ? ReservedNames::noScript : std::string_view(name);
}

void chooseScript(const std::string& entry) {
    PendingEdit::flushAll();
    const bool isNone = entry == ReservedNames::noScript;
    postToGraphics(RenderingScriptChangeMessage(isNone ? std::string() : entry));
}

} // namespace

void RenderingPropertyWindow::create() {
    LayoutTemplate(layoutText("rendering_property.json")).instantiate(windowName);
    auto& window = *ComponentManager::createOrRetrieve<vlWinUi::Window>(windowName);
    if (auto* main = ComponentManager::get<vlWinUi::Window>(MainWindow::windowName))
        window.setOwnerWindow(*main);
    auto& change = *ComponentManager::createOrRetrieve<vlWinUi::Button>("RENDERING_SCRIPT_CHANGE");
    change.setAccessibleName("Choose the active script");
    change.setToolTip("Chooses the script that runs once a turn; \"-\" is none");
    change.setButtonClickCallback([&change] {
        const std::string& name = RenderingScriptName::getInstance().get();
        PickListDialog::open("SCRIPT_POP_UP_LIST", change, chooseScript, shownName(name));
    });
    auto& label = *ComponentManager::createOrRetrieve<vlWinUi::Static>("RENDERING_SCRIPT_LABEL");
    // As long as the label, which lives as long as the program's windows.
    label.setData(RenderingScriptName::getInstance().listen(
            [&label](const std::string& name) { label.setText(shownName(name)); }));
    window.load();
}

void RenderingPropertyWindow::show() {
    ComponentManager::createOrRetrieve<vlWinUi::Window>(windowName)->setVisible(true);
}

} // namespace vlEditor
