#include "scene/GraphElementUiDataTracker.h"

#include <vlCommon/ThreadBorder.h>

namespace vlEditor {

template <class Call> void GraphElementUiDataTracker::notify(Call&& call) {
    // By index: a listener may come or go meanwhile.
    for (std::size_t i = 0; i < listeners_.size(); ++i)
        call(*listeners_[i]);
}

std::vector<std::uint32_t>& GraphElementUiDataTracker::siblingsOf(const SceneElement& element) {
    const auto parent = elements_.find(element.parent);
    return parent == elements_.end() ? roots_ : parent->second.children;
}

void GraphElementUiDataTracker::add(const std::vector<SceneElement>& elements) {
    vlCommon::assertUiThread();
    std::vector<std::uint32_t> ids;
    for (const SceneElement& given : elements) {
        std::vector<std::uint32_t> children;
        if (const auto known = elements_.find(given.id); known != elements_.end()) {
            std::erase(siblingsOf(known->second), given.id);
            children = std::move(known->second.children);
        }
        SceneElement& element = elements_[given.id] = given;
        element.children = std::move(children);
        if (!elements_.contains(element.parent)) element.parent = SceneElement::noParent;
        siblingsOf(element).push_back(element.id);
        ids.push_back(element.id);
    }
    if (!ids.empty()) notify([&](GraphElementUiListener& l) { l.elementsAdded(ids); });
}

void GraphElementUiDataTracker::update(std::uint32_t id, const Transform& transform) {
    vlCommon::assertUiThread();
    const auto found = elements_.find(id);
    if (found == elements_.end()) return;
    found->second.transform = transform;
    notify([&](GraphElementUiListener& l) { l.elementUpdated(id); });
}

void GraphElementUiDataTracker::erase(std::uint32_t id) {
    vlCommon::assertUiThread();
    const auto found = elements_.find(id);
    if (found == elements_.end()) return;
    std::erase(siblingsOf(found->second), id);
    for (const std::uint32_t child : found->second.children) {
        elements_.at(child).parent = SceneElement::noParent;
        roots_.push_back(child);
    }
    elements_.erase(found);
    notify([&](GraphElementUiListener& l) { l.elementErased(id); });
}

const SceneElement* GraphElementUiDataTracker::find(std::uint32_t id) const {
    const auto found = elements_.find(id);
    return found == elements_.end() ? nullptr : &found->second;
}

void GraphElementUiDataTracker::addListener(GraphElementUiListener& listener) {
    listeners_.push_back(&listener);
}

void GraphElementUiDataTracker::removeListener(GraphElementUiListener& listener) {
    std::erase(listeners_, &listener);
}

} // namespace vlEditor
