#pragma once
#include <string>

namespace vlEditor {

/** Hears what happens to the records of one kind. UI thread only. */
template <class Kind> class ResourceUiListener {
public:
    using Record = typename Kind::Record;

    virtual ~ResourceUiListener() = default;
    virtual void onResourceAdded(const Record& record) = 0;
    /// The record is still alive.
    virtual void onResourceErased(const Record& record) = 0;
    virtual void onResourceRenamed(const std::string& oldName, const Record& record) = 0;
    virtual void onResourceUpdated(const Record& record) = 0;
    virtual void onResourcesCleared() = 0;

protected:
    ResourceUiListener() = default;
    ResourceUiListener(const ResourceUiListener&) = default;
    ResourceUiListener& operator=(const ResourceUiListener&) = default;
};

} // namespace vlEditor
