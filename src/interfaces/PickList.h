#pragma once
#include <vlMemory/String.h>

#include <string>
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
 *  unique; the first ones given are fixed. Owned by PickLists. UI thread only. */
class PickList {
public:
    PickList(std::string name, std::string label, std::vector<std::string> fixedEntries);

    const std::string& getName() const { return name_; }
    /// The title of its dialog.
    const std::string& getLabel() const { return label_; }
    const std::vector<std::string>& getEntries() const { return entries_; }
    bool has(vlMemory::StringView entry) const;

    /// Entries that are there already are passed over.
    void addEntries(const std::vector<std::string>& entries);
    void addEntry(vlMemory::StringView entry);
    /// False when there is no such entry or it is fixed.
    bool removeEntry(vlMemory::StringView entry);
    /// The entry keeps its place; another one that bears the new name goes. False as above.
    bool renameEntry(vlMemory::StringView entry, vlMemory::StringView newName);
    /// Only the fixed ones stay.
    void reset();

    /// Not owned.
    void addListener(PickListListener& listener);
    void removeListener(PickListListener& listener);

private:
    std::vector<std::string>::iterator findChangeable(vlMemory::StringView entry);
    void notify();

    std::string name_;
    std::string label_;
    std::size_t fixedCount_;
    std::vector<std::string> entries_;
    std::vector<PickListListener*> listeners_;
};

} // namespace vlEditor
