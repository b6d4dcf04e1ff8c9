#include "viewport/DefaultView.h"

#include <vlGraphics/Camera.h>

namespace vlEditor {

void DefaultView::apply(vlGraphics::Camera& camera) {
    camera.setPosition({0, 1, -1, 1});
    camera.lookAt({0, 0, 0, 1}, {0, 0, 0, 0});
}

} // namespace vlEditor
