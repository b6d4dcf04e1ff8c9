#include "viewport/EngineWindowPictureMessage.h"

#include "viewport/EngineSurfaceTable.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Surface.h>

namespace vlEditor {

void EngineWindowPictureMessage::runOnUiThread() {
    const auto state = EngineSurfaceTable::getInstance().find(surface);
    auto* widget = vlWinUi::ComponentManager::get<vlWinUi::Surface>(surface);
    if (!state || widget == nullptr) return;
    const auto picture = state->takePicture();
    if (picture) widget->presentPicture(picture->width, picture->height, picture->pixels.span());
}

} // namespace vlEditor
