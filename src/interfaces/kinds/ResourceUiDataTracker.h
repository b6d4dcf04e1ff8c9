#pragma once
#include "interfaces/kinds/KindPickLists.h"
#include "interfaces/kinds/ResourceUiListener.h"

#include <vlCommon/SingletonClass.h>
#include <vlCommon/ThreadBorder.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vlEditor {

/** The UI's copy of every resource of one kind that the editor created, loaded or was told of. A
 *  record keeps its address from its coming to its going, also through a rename. UI thread only. */
template <class Kind>
class ResourceUiDataTracker final : public vlCommon::SingletonClass<ResourceUiDataTracker<Kind>> {
public:
    using Record = typename Kind::Record;
    using Listener = ResourceUiListener<Kind>;

    /// The name must be free.
    void add(Record record) {
        vlCommon::assertUiThread();
        std::string name = record.name;
        const auto [at, isNew] =
                entries_.try_emplace(std::move(name), Entry{std::move(record), {}, ++lastOrder_});
        if (!isNew) return;
        const Record& held = at->second.record;
        tell([&](Listener& listener) { listener.onResourceAdded(held); });
        addToPickLists(Kind::texts, held.name);
    }
    /// Null when there is none.
    Record* get(const std::string& name) {
        vlCommon::assertUiThread();
        const auto found = entries_.find(name);
        return found == entries_.end() ? nullptr : &found->second.record;
    }
    void notifyUpdated(const std::string& name) {
        const Record* held = get(name);
        if (held == nullptr) return;
        tell([&](Listener& listener) { listener.onResourceUpdated(*held); });
    }
    /// A record that bore the new name is deleted: whether a name may be taken is the engine's to
    /// say. Nothing happens when no record bears the old one.
    void rename(const std::string& oldName, const std::string& newName) {
        vlCommon::assertUiThread();
        auto node = entries_.extract(oldName);
        if (node.empty()) return;
        entries_.erase(newName);
        node.key() = newName;
        node.mapped().record.name = newName;
        const Record& held = entries_.insert(std::move(node)).position->second.record;
        tell([&](Listener& listener) { listener.onResourceRenamed(oldName, held); });
        renameInPickLists(Kind::texts, oldName, newName);
    }
    void erase(const std::string& name) {
        const Record* held = get(name);
        if (held == nullptr) return;
        const std::string kept = name; // it may be the record's own
        tell([&](Listener& listener) { listener.onResourceErased(*held); });
        entries_.erase(kept);
        eraseFromPickLists(Kind::texts, kept);
    }
    void clear() {
        vlCommon::assertUiThread();
        for (const auto& [name, entry] : entries_)
            eraseFromPickLists(Kind::texts, name);
        entries_.clear();
        tell([](Listener& listener) { listener.onResourcesCleared(); });
    }

    /// What a file holds of the resource from now on.
    void markSaved(const Record& saved) {
        const auto found = entries_.find(saved.name);
        if (found != entries_.end()) found->second.saved = saved;
    }
    /// No file holds the resource as it is now.
    bool isChanged(const std::string& name) const {
        const auto found = entries_.find(name);
        return found != entries_.end() && found->second.saved != found->second.record;
    }

    /// In the order of their coming.
    std::vector<const Record*> inOrder() const {
        std::vector<const Entry*> sorted;
        sorted.reserve(entries_.size());
        for (const auto& [name, entry] : entries_)
            sorted.push_back(&entry);
        std::ranges::sort(sorted, {}, [](const Entry* entry) { return entry->order; });
        std::vector<const Record*> records;
        records.reserve(sorted.size());
        for (const Entry* entry : sorted)
            records.push_back(&entry->record);
        return records;
    }
    std::size_t getCount() const { return entries_.size(); }

    /// Not owned.
    void registerListener(Listener& listener) { listeners_.push_back(&listener); }
    void unregisterListener(Listener& listener) { std::erase(listeners_, &listener); }

private:
    struct Entry {
        Record record;
        std::optional<Record> saved;
        std::uint64_t order = 0;
    };
    template <class Call> void tell(Call&& call) {
        // By index: a listener may unregister.
        for (std::size_t i = 0; i < listeners_.size(); ++i)
            call(*listeners_[i]);
    }

    std::unordered_map<std::string, Entry> entries_;
    std::vector<Listener*> listeners_;
    std::uint64_t lastOrder_ = 0;
};

} // namespace vlEditor
