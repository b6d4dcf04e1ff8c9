#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/System.h>

#include <algorithm>

namespace vlGraphics {

namespace {

const RenderContext* activeContext() {
    System* system = System::getInstance();
    return system == nullptr ? nullptr : system->getRenderer().getActiveContext();
}

} // namespace

void Camera::prepareForContext(const RenderContext& context) {
    setAspectRatio(static_cast<float>(std::max(1U, context.getWidth())) /
                   static_cast<float>(std::max(1U, context.getHeight())));
}

Camera* CameraManager::getActiveRenderCamera() {
    const RenderContext* context = activeContext();
    return context == nullptr ? getDefaultCamera() : context->getRenderCamera();
}

Compositor* CompositorManager::getActiveCompositor() {
    const RenderContext* context = activeContext();
    Compositor* own = context == nullptr ? nullptr : resolve(context->getCompositor());
    return own != nullptr ? own : getDefaultCompositor();
}

} // namespace vlGraphics
