#include "vulkan/Presenter.h"

#include "vulkan/PicturePresenter.h"
#include "vulkan/WindowPresenter.h"

namespace vlGraphics::vulkan {

vlCommon::Result<std::unique_ptr<Presenter>> Presenter::create(PresentSurface& surface) {
    switch (surface.getKind()) {
    case PresentSurface::Kind::xcbWindow:
        return WindowPresenter::create(surface);
    case PresentSurface::Kind::picture:
        return std::make_unique<PicturePresenter>(surface);
    case PresentSurface::Kind::none:
        break;
    }
    return nullptr;
}

} // namespace vlGraphics::vulkan
