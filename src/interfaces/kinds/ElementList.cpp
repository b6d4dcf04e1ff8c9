#include "interfaces/kinds/ElementList.h"

#include "core/EditorLogger.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlWinUi::ListBox;

constexpr std::uint32_t deleteKey = 46;
constexpr std::uint32_t upKey = 38;
constexpr std::uint32_t downKey = 40;

ListBox* listOf(const std::string& component) {
    return vlWinUi::ComponentManager::get<ListBox>(component);
}

bool sameLabels(const std::vector<ListedElement>& a, const std::vector<ListedElement>& b) {
    return std::ranges::equal(a, b, {}, &ListedElement::label, &ListedElement::label);
}

} // namespace

ElementList::ElementList(std::string component, Callbacks callbacks)
    : component_(std::move(component)), callbacks_(std::move(callbacks)) {
    ListBox* list = listOf(component_);
    if (list == nullptr) {
        EditorLogger::getInstance().log("The layout lacks '" + component_ + "'.", "Editor");
        return;
    }
    list->setSelectionCallback([this](std::optional<std::size_t> index) {
        selected_ = index;
        callbacks_.chosen();
    });
    list->setKeyFilter([this](const vlWinUi::KeyEvent& key) {
        if (!key.pressed || key.control || key.shift) return false;
        const bool moves = key.alt && (key.virtualKey == upKey || key.virtualKey == downKey);
        if (moves && callbacks_.moved) callbacks_.moved(key.virtualKey == upKey ? -1 : 1);
        const bool deletes = !key.alt && key.virtualKey == deleteKey;
        if (deletes && callbacks_.deleted) callbacks_.deleted();
        return moves || deletes;
    });
}

void ElementList::show(Owner owner,
                       std::vector<ListedElement> elements,
                       const std::string& placeHolder) {
    const bool isSameOwner = owner == owner_;
    const std::vector<ListedElement> earlier = std::exchange(elements_, std::move(elements));
    if (isSameOwner) {
        selected_ = findSelection(earlier);
    } else {
        selected_ = elements_.empty() ? std::nullopt : std::optional<std::size_t>(0);
        followsNew_ = false;
    }
    followed_.reset();
    owner_ = owner;
    if (ListBox* list = listOf(component_)) list->setPlaceHolder(placeHolder);
    fillList(earlier);
}

const ListedElement* ElementList::getSelected() const {
    return selected_ && *selected_ < elements_.size() ? &elements_[*selected_] : nullptr;
}

std::optional<std::size_t> ElementList::indexOf(std::uint64_t key) const {
    const auto found = std::ranges::find(elements_, key, &ListedElement::key);
    if (found == elements_.end()) return {};
    return static_cast<std::size_t>(found - elements_.begin());
}

std::optional<std::size_t> ElementList::firstNew(const std::vector<ListedElement>& earlier) const {
    const auto found = std::ranges::find_if(elements_, [&](const ListedElement& element) {
        return std::ranges::find(earlier, element.key, &ListedElement::key) == earlier.end();
    });
    if (found == elements_.end()) return {};
    return static_cast<std::size_t>(found - elements_.begin());
}

std::optional<std::size_t> ElementList::findSelection(const std::vector<ListedElement>& earlier) {
    if (elements_.empty()) return {};
    if (followed_ && indexOf(*followed_)) return indexOf(*followed_);
    const auto fresh = firstNew(earlier);
    if (followsNew_ && fresh) {
        followsNew_ = false;
        return fresh;
    }
    if (!selected_ || *selected_ >= earlier.size()) return 0;
    if (const auto same = indexOf(earlier[*selected_].key)) return same;
    // It has got another key, or it has gone.
    if (fresh && earlier.size() == elements_.size()) return fresh;
    return std::min(*selected_, elements_.size() - 1);
}

void ElementList::fillList(const std::vector<ListedElement>& earlier) {
    ListBox* list = listOf(component_);
    if (list == nullptr) return;
    if (!isFilled_ || !sameLabels(earlier, elements_)) {
        std::vector<vlWinUi::ListEntry> entries;
        for (const ListedElement& element : elements_)
            entries.push_back({element.label, {}});
        list->setEntries(std::move(entries));
        isFilled_ = true;
    }
    for (const ListedElement& element : elements_)
        list->setEntryMark(element.label, !element.remark.empty(), element.remark);
    if (list->getSelectedIndex() != selected_) list->select(selected_);
}

} // namespace vlEditor
