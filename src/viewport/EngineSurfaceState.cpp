#include "viewport/EngineSurfaceState.h"

#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowPictureMessage.h"

namespace vlEditor {

EngineSurfaceState::~EngineSurfaceState() {
    delete picture_.load();
}

void EngineSurfaceState::setNativeHandle(const vlWinUi::SurfaceHandle& handle) {
    const bool isWindow = handle.kind == vlWinUi::SurfaceHandle::Kind::Xcb;
    window_ = handle.window;
    kind_ = isWindow ? Kind::xcbWindow : Kind::picture;
}

void EngineSurfaceState::setSize(std::uint32_t width, std::uint32_t height) {
    const std::uint64_t size = std::uint64_t{width} << 32U | height;
    if (size_.exchange(size) != size) ++revision_;
}

void EngineSurfaceState::setExposed(bool exposed) {
    if (exposed) ++revision_;
    exposed_ = exposed;
}

void EngineSurfaceState::setFocused() {
    static std::uint64_t newest = 0;
    focusOrder_ = ++newest;
}

std::unique_ptr<vlImages::Image> EngineSurfaceState::takePicture() {
    return std::unique_ptr<vlImages::Image>(picture_.exchange(nullptr));
}

vlGraphics::PresentSurface::Size EngineSurfaceState::getSize() const {
    const std::uint64_t size = size_;
    return {static_cast<std::uint32_t>(size >> 32U), static_cast<std::uint32_t>(size)};
}

void EngineSurfaceState::present(vlImages::Image picture) {
    auto newest = std::make_unique<vlImages::Image>(std::move(picture));
    const std::unique_ptr<vlImages::Image> unseen(picture_.exchange(newest.release()));
    if (!unseen) postToUi(EngineWindowPictureMessage(name_));
}

bool EngineSurfaceState::isDrawable() const {
    const Size size = getSize();
    return isExposed() && size.width > 0 && size.height > 0;
}

} // namespace vlEditor
