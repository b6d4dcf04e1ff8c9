#include "Registry.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/InputSystem.h>

namespace vlWinUi {

void InputSystem::setCloseCallback(std::function<bool(Component&)> callback) {
    vlCommon::assertUiThread();
    if (Registry::slot()) Registry::slot()->close = std::move(callback);
}

void InputSystem::requestClose(Component& component) {
    vlCommon::assertUiThread();
    if (!Registry::slot()) return;
    const auto close = Registry::slot()->close;
    if (!close || !close(component)) component.setVisible(false);
}

} // namespace vlWinUi
