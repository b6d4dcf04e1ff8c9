#include "app/RenderingPropertyWindow.h"

#include "app/MainWindow.h"
#include "interfaces/LayoutTemplate.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr const char* windowName = "EDITOR_RENDERING_PROPERTY_WINDOW";

} // namespace

void RenderingPropertyWindow::create() {
    LayoutTemplate(layoutText("rendering_property.json")).instantiate(windowName);
    auto& window = *ComponentManager::createOrRetrieve<vlWinUi::Window>(windowName);
    if (auto* main = ComponentManager::get<vlWinUi::Window>(MainWindow::windowName))
        window.setOwnerWindow(*main);
    auto& change = *ComponentManager::createOrRetrieve<vlWinUi::Button>("RENDERING_SCRIPT_CHANGE");
    change.setAccessibleName("Choose the active script");
    change.setEnabled(false, "Choosing a script is not available yet.");
    window.load();
}

void RenderingPropertyWindow::show() {
    ComponentManager::createOrRetrieve<vlWinUi::Window>(windowName)->setVisible(true);
}

} // namespace vlEditor
