#include "interfaces/ViewedCamera.h"

namespace vlEditor {
namespace {

ViewedCamera* connected = nullptr;

} // namespace

ViewedCamera* ViewedCamera::current() {
    return connected;
}

void ViewedCamera::connect(ViewedCamera* camera) {
    connected = camera;
}

} // namespace vlEditor
