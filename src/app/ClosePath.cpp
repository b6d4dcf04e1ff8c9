#include "app/ClosePath.h"

#include "app/Configuration.h"
#include "app/LayoutFile.h"
#include "app/MainWindow.h"
#include "core/EngineHandler.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/System.h>

namespace vlEditor {

bool ClosePath::close(vlWinUi::Component& component) {
    if (component.getComponentName() != MainWindow::windowName) {
        component.setVisible(false);
        return true;
    }
    EngineHandler& engine = EngineHandler::getInstance();
    engine.release();
    engine.join();
    Configuration::save();
    if (LayoutFile::isEnabled()) LayoutFile::save(MainWindow::getInstance().describe());
    vlWinUi::System::prepareForShutdown();
    return true;
}

void ClosePath::leave() {
    if (auto* window = vlWinUi::ComponentManager::get(MainWindow::windowName)) {
        vlWinUi::InputSystem::requestClose(*window);
    }
}

} // namespace vlEditor
