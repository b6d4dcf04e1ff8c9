#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstdint>

namespace vlGraphics {

template <class T> class ResourceManager;

/** Base of everything that lives in a manager under a unique name. Owned by its manager.
 *  Graphics thread only (whoever owns the engine). */
class Resource {
public:
    Resource(const Resource&) = delete;
    Resource& operator=(const Resource&) = delete;
    virtual ~Resource() = default;

    const vlMemory::String& getName() const { return name_; }

    /// Hidden resources are the editor's or the engine's own: no list shows them, no project saves
    /// them.
    bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }

    /// Makes the device side from the current settings. Loading again without unload() changes
    /// nothing. Resources without a device side succeed at once.
    virtual vlCommon::Result<> load() { return {}; }
    /// Gives the device side back once no frame in flight uses it. Settings are kept.
    virtual void unload() {}

    /// Grows with every change of this resource; never 0. Caches compare it.
    std::uint64_t getRevision() const { return revision_; }

protected:
    Resource() = default;
    /// To be called by every setter: bumps the revision and marks every picture out of date.
    void markChanged();

private:
    template <class T> friend class ResourceManager;
    vlMemory::String name_;
    bool hidden_ = false;
    std::uint64_t revision_ = 1;
};

} // namespace vlGraphics
