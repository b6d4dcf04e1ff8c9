#include "PixelLayout.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/RelativeLayout.h>

#include <algorithm>

namespace vlWinUi {

void RelativeLayout::addComponent(const Component& component, const Rectangle& area) {
    add({component.getComponentName(), area, {}, Position::Right});
}

void RelativeLayout::addComponent(const Component& component,
                                  const Rectangle& area,
                                  const Component& relativeTo,
                                  Position position) {
    add({component.getComponentName(), area, relativeTo.getComponentName(), position});
}

void RelativeLayout::add(Placement placement) {
    const auto found = std::ranges::find(placements_, placement.component, &Placement::component);
    if (found == placements_.end())
        placements_.push_back(std::move(placement));
    else
        *found = std::move(placement);
}

bool RelativeLayout::removeComponent(const Component& component) {
    return std::erase_if(placements_, [&](const Placement& place) {
               return place.component == component.getComponentName();
           }) != 0;
}

const RelativeLayout::Placement* RelativeLayout::getPlacement(const Component& component) const {
    const auto found =
            std::ranges::find(placements_, component.getComponentName(), &Placement::component);
    return found == placements_.end() ? nullptr : &*found;
}

void RelativeLayout::update() {
    vlCommon::assertUiThread();
    if (owner_ == nullptr) return;
    layoutOf<PixelLayout>(*owner_->native().content()).show(*this);
}

void RelativeLayout::renameComponent(const std::string& name, const std::string& newName) {
    for (Placement& place : placements_) {
        if (place.component == name) place.component = newName;
        if (place.relativeTo == name) place.relativeTo = newName;
    }
}

} // namespace vlWinUi
