#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Component.h>

#include <string>

namespace vlEditor {

/** What a container shows: an editor window of one kind. Holds its root component and erases it,
 *  with all in it, at its own end. Owned by its container. UI thread only. */
class Interface {
public:
    explicit Interface(const vlWinUi::Component& root);
    virtual ~Interface();
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    /// Its name for a person: "Log / Commands".
    virtual std::string title() const = 0;
    /// The resource of that name has changed; refreshes what shows it.
    virtual void resourceChanged(vlMemory::StringView name) { static_cast<void>(name); }

    /// Null once somebody else has erased it.
    vlWinUi::Component* getRoot() const;
    /// Also the base of the names of what is in it.
    const std::string& getRootName() const { return rootName_; }

private:
    std::string rootName_;
};

} // namespace vlEditor
