#pragma once
#include "viewport/EngineSurfaceState.h"

#include <vlCommon/SingletonClass.h>
#include <vlMemory/String.h>

#include <map>
#include <memory>
#include <mutex>

namespace vlEditor {

/** The surface states by name, so that messages need not carry them. Any thread; made by the UI
 *  thread, which adds a state before it posts the first message about it and erases it when its
 *  native window goes. */
class EngineSurfaceTable final : public vlCommon::SingletonClass<EngineSurfaceTable> {
public:
    std::shared_ptr<EngineSurfaceState> create(const std::string& name);
    /// Null when there is none.
    std::shared_ptr<EngineSurfaceState> find(vlMemory::StringView name) const;
    void erase(vlMemory::StringView name);

private:
    mutable std::mutex lock_;
    std::map<std::string, std::shared_ptr<EngineSurfaceState>, std::less<>> states_;
};

} // namespace vlEditor
