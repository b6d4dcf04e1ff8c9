#include "interfaces/PickList.h"

#include <algorithm>

namespace vlEditor {

PickList::PickList(std::string name, std::string label, std::vector<std::string> fixedEntries)
    : name_(std::move(name)), label_(std::move(label)), fixedCount_(fixedEntries.size()),
      entries_(std::move(fixedEntries)) {
}

bool PickList::has(vlMemory::StringView entry) const {
    return std::ranges::find(entries_, entry) != entries_.end();
}

void PickList::addEntries(const std::vector<std::string>& entries) {
    bool added = false;
    for (const std::string& entry : entries) {
        if (has(entry)) continue;
        entries_.push_back(entry);
        added = true;
    }
    if (added) notify();
}

void PickList::addEntry(vlMemory::StringView entry) {
    addEntries({std::string(entry)});
}

bool PickList::removeEntry(vlMemory::StringView entry) {
    const auto found = findChangeable(entry);
    if (found == entries_.end()) return false;
    entries_.erase(found);
    notify();
    return true;
}

bool PickList::renameEntry(vlMemory::StringView entry, vlMemory::StringView newName) {
    if (findChangeable(entry) == entries_.end()) return false;
    if (entry == newName) return true;
    const auto replaced = findChangeable(newName);
    if (replaced != entries_.end()) entries_.erase(replaced);
    *findChangeable(entry) = newName;
    notify();
    return true;
}

void PickList::reset() {
    if (entries_.size() == fixedCount_) return;
    entries_.resize(fixedCount_);
    notify();
}

void PickList::addListener(PickListListener& listener) {
    listeners_.push_back(&listener);
}

void PickList::removeListener(PickListListener& listener) {
    std::erase(listeners_, &listener);
}

std::vector<std::string>::iterator PickList::findChangeable(vlMemory::StringView entry) {
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(fixedCount_);
    return std::find(first, entries_.end(), entry);
}

void PickList::notify() {
    // By index: a listener may come or go meanwhile.
    for (std::size_t i = 0; i < listeners_.size(); ++i)
        listeners_[i]->entriesChanged();
}

} // namespace vlEditor
