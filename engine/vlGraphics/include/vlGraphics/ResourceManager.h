#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/Handle.h>
#include <vlGraphics/Resource.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vlGraphics {

/// Names are 1 to 4096 bytes of UTF-8 without control characters.
bool isValidResourceName(vlMemory::StringView name);
/// "Refused the name '' for a raster state: ..." through the library's log.
void logRefusedName(vlMemory::StringView kind, vlMemory::StringView name);

/// "Refused the name 'VORLANE_DEFAULT_CAMERA' for a camera: ..." through the library's log.
void logHiddenBearer(vlMemory::StringView kind, vlMemory::StringView name);

/** Owns the resources of one kind by unique name. Made and ended with the engine.
 *  T needs a default constructor and `static constexpr StringView kindName`.
 *  Graphics thread only (whoever owns the engine). */
template <class T> class ResourceManager {
public:
    /// The resource of that name, or null.
    T* get(vlMemory::StringView name) const {
        const auto found = byName_.find(name);
        return found == byName_.end() ? nullptr : entries_[found->second].resource.get();
    }

    /// Null, with a log line, only when the name is not valid.
    T* createOrRetrieve(vlMemory::StringView name) {
        if (T* known = get(name)) return known;
        if (!isValidResourceName(name)) {
            logRefusedName(T::kindName, name);
            return nullptr;
        }
        const std::uint32_t index = entryFor(name);
        Entry& entry = entries_[index];
        entry.resource = std::make_unique<T>();
        entry.resource->name_ = entry.name;
        order_.push_back(index);
        structureChanged();
        return entry.resource.get();
    }

    /// Gives the resource another name; one that bore it is replaced (erased). False, with nothing
    /// changed, when there is no such resource (silent), when the new name is not valid or when a
    /// hidden resource bears it (log line).
    bool rename(vlMemory::StringView oldName, vlMemory::StringView wantedName) {
        // The text may be the name of the bearer that is about to be erased.
        const vlMemory::String newName(wantedName);
        const auto found = byName_.find(oldName);
        if (found == byName_.end() || !entries_[found->second].resource) return false;
        if (oldName == newName) return true;
        if (!isValidResourceName(newName)) {
            logRefusedName(T::kindName, newName);
            return false;
        }
        if (const T* bearer = get(newName); bearer != nullptr && bearer->isHidden()) {
            logHiddenBearer(T::kindName, newName);
            return false;
        }
        const std::uint32_t index = found->second;
        erase(newName);
        byName_.erase(found);
        // What referred to the replaced bearer refers from now on to the resource that took its
        // name.
        const auto old = byName_.find(newName);
        if (old != byName_.end()) {
            entries_[old->second].movedTo = index;
            byName_.erase(old);
        }
        Entry& entry = entries_[index];
        entry.name = newName;
        entry.resource->name_ = entry.name;
        byName_.emplace(entry.name, index);
        structureChanged();
        return true;
    }

    /// False when there is none. References to it resolve to null until the name is made again.
    bool erase(vlMemory::StringView name) {
        const auto found = byName_.find(name);
        if (found == byName_.end() || !entries_[found->second].resource) return false;
        const std::uint32_t index = found->second;
        order_.erase(std::find(order_.begin(), order_.end(), index));
        // The name text may belong to the resource: it dies last.
        const std::unique_ptr<T> dying = std::move(entries_[index].resource);
        dying->unload();
        structureChanged();
        return true;
    }

    /// In order of creation; null past the last.
    T* getByIndex(std::size_t index) const {
        return index < order_.size() ? entries_[order_[index]].resource.get() : nullptr;
    }
    std::size_t getCount() const { return order_.size(); }

    /// A reference to that name, whether or not a resource bears it yet. Null handle for an empty
    /// name.
    Handle<T> handleOf(vlMemory::StringView name) {
        if (name.empty()) return {};
        const std::uint32_t index = entryFor(name);
        return {index, entries_[index].generation};
    }
    Handle<T> handleOf(const T* resource) {
        return resource == nullptr ? Handle<T>{} : handleOf(resource->getName());
    }

    /// Null for a null handle and while no resource bears the name.
    T* resolve(Handle<T> handle) const {
        const Entry* entry = entryOf(handle);
        return entry == nullptr ? nullptr : entry->resource.get();
    }

    /// The name a handle stands for, also while no resource bears it; empty for a null handle.
    /// Valid until the next name that this manager has not seen.
    vlMemory::StringView nameOf(Handle<T> handle) const {
        const Entry* entry = entryOf(handle);
        return entry == nullptr ? vlMemory::StringView() : vlMemory::StringView(entry->name);
    }

    /// Changes whenever a resource comes, goes or takes another's place, so whoever keeps pointers
    /// that it resolved compares this before it uses them. Never 0.
    std::uint64_t getStructureRevision() const { return structureRevision_; }

    /// Erases every resource, newest first, so that what was built on others goes before them.
    void clear() {
        while (!order_.empty()) {
            const vlMemory::String name = entries_[order_.back()].name;
            erase(name);
        }
    }

private:
    static constexpr std::uint32_t nowhere = 0xFFFFFFFF;

    struct Entry {
        vlMemory::String name;
        std::unique_ptr<T> resource;
        std::uint32_t generation = 1;
        std::uint32_t movedTo = nowhere;
    };
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(vlMemory::StringView name) const {
            return std::hash<vlMemory::StringView>()(name);
        }
    };

    void structureChanged() {
        ++structureRevision_;
        ChangeCount::bump();
    }
    std::uint32_t entryFor(vlMemory::StringView name) {
        const auto found = byName_.find(name);
        if (found != byName_.end()) return found->second;
        const auto index = static_cast<std::uint32_t>(entries_.size());
        entries_.emplace_back().name = name;
        byName_.emplace(vlMemory::String(name), index);
        return index;
    }
    const Entry* entryOf(Handle<T> handle) const {
        if (handle.isNull() || handle.index() >= entries_.size()) return nullptr;
        const Entry* entry = &entries_[handle.index()];
        if (entry->generation != handle.generation()) return nullptr;
        while (entry->movedTo != nowhere)
            entry = &entries_[entry->movedTo];
        return entry;
    }

    std::vector<Entry> entries_; ///< never shrinks: handles index it
    std::vector<std::uint32_t> order_;
    std::uint64_t structureRevision_ = 1;
    std::unordered_map<vlMemory::String, std::uint32_t, NameHash, std::equal_to<>> byName_;
};

} // namespace vlGraphics
