#include "interfaces/PickList.h"

#include <algorithm>

namespace vlEditor {

PickList::PickList(std::string name, std::string label, std::vector<std::string> fixedEntries)
    : name_(std::move(name)), label_(std::move(label)) {
    for (const std::string& entry : fixedEntries)
        add(entry);
    fixedCount_ = entries_.size();
}

const std::vector<std::string>& PickList::getEntries() const {
    if (gaps_.empty()) return entries_;
    std::ranges::sort(gaps_);
    auto gap = gaps_.begin();
    std::size_t kept = *gap;
    for (std::size_t place = kept; place < entries_.size(); ++place) {
        if (gap != gaps_.end() && *gap == place) {
            ++gap;
            continue;
        }
        places_.at(entries_[place]) = kept;
        entries_[kept++] = std::move(entries_[place]);
    }
    entries_.resize(kept);
    gaps_.clear();
    return entries_;
}

bool PickList::has(vlMemory::StringView entry) const {
    return places_.contains(entry);
}

bool PickList::add(const std::string& entry) {
    if (!places_.try_emplace(entry, entries_.size()).second) return false;
    entries_.push_back(entry);
    return true;
}

void PickList::addEntries(const std::vector<std::string>& entries) {
    bool added = false;
    for (const std::string& entry : entries)
        added = add(entry) || added;
    if (added) notify();
}

void PickList::addEntry(vlMemory::StringView entry) {
    addEntries({std::string(entry)});
}

void PickList::drop(Places::iterator entry) {
    gaps_.push_back(entry->second);
    places_.erase(entry);
}

bool PickList::removeEntry(vlMemory::StringView entry) {
    const auto found = findChangeable(entry);
    if (found == places_.end()) return false;
    drop(found);
    notify();
    return true;
}

bool PickList::renameEntry(vlMemory::StringView entry, vlMemory::StringView newName) {
    const auto found = findChangeable(entry);
    if (found == places_.end()) return false;
    if (entry == newName) return true;
    const auto bearer = places_.find(newName);
    if (bearer != places_.end() && bearer->second < fixedCount_) {
        drop(found);
        notify();
        return true;
    }
    if (bearer != places_.end()) drop(bearer);
    const std::size_t place = found->second;
    places_.erase(found);
    entries_[place] = newName;
    places_.try_emplace(entries_[place], place);
    notify();
    return true;
}

void PickList::reset() {
    if (places_.size() == fixedCount_) return;
    std::erase_if(places_, [this](const auto& entry) { return entry.second >= fixedCount_; });
    entries_.resize(fixedCount_);
    gaps_.clear();
    notify();
}

void PickList::addListener(PickListListener& listener) {
    listeners_.push_back(&listener);
}

void PickList::removeListener(PickListListener& listener) {
    std::erase(listeners_, &listener);
}

PickList::Places::iterator PickList::findChangeable(vlMemory::StringView entry) {
    const auto found = places_.find(entry);
    return found != places_.end() && found->second < fixedCount_ ? places_.end() : found;
}

void PickList::notify() {
    // By index: a listener may come or go meanwhile.
    for (std::size_t i = 0; i < listeners_.size(); ++i)
        listeners_[i]->entriesChanged();
}

} // namespace vlEditor
