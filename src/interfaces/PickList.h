#pragma once
#include <vlMemory/String.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vlEditor {

/** Hears how a pick list changes. UI thread only. */
class PickListListener {
public:
    virtual void entriesChanged() = 0;

protected:
    PickListListener() = default;
    PickListListener(const PickListListener&) = default;
    PickListListener& operator=(const PickListListener&) = default;
    ~PickListListener() = default;
};

/** The names of one kind that a person may choose from, in the order of their coming. Names are
 *  unique; the first ones given are fixed. Thousands may come and go one by one. Owned by
 * PickLists. UI thread only. */
class PickList {
public:
    PickList(std::string name, std::string label, std::vector<std::string> fixedEntries);

    const std::string& getName() const { return name_; }
    /// The title of its dialog.
    const std::string& getLabel() const { return label_; }
    /// Valid until they change.
    const std::vector<std::string>& getEntries() const;
    bool has(vlMemory::StringView entry) const;

    /// Entries that are there already are passed over.
    void addEntries(const std::vector<std::string>& entries);
    void addEntry(vlMemory::StringView entry);
    /// False when there is no such entry or it is fixed.
    bool removeEntry(vlMemory::StringView entry);
    /// The entry keeps its place; another one that bears the new name goes, or, where that is
    /// fixed, the entry itself. False as above.
    bool renameEntry(vlMemory::StringView entry, vlMemory::StringView newName);
    /// Only the fixed ones stay.
    void reset();

    /// Not owned.
    void addListener(PickListListener& listener);
    void removeListener(PickListListener& listener);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>{}(text);
        }
    };
    using Places = std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>>;

    bool add(const std::string& entry);
    Places::iterator findChangeable(vlMemory::StringView entry);
    /// Its place stays empty until somebody reads the entries.
    void drop(Places::iterator entry);
    void notify();

    std::string name_;
    std::string label_;
    std::size_t fixedCount_ = 0;
    mutable std::vector<std::string> entries_;
    mutable Places places_; ///< of each name among the entries
    mutable std::vector<std::size_t> gaps_;
    std::vector<PickListListener*> listeners_;
};

} // namespace vlEditor
