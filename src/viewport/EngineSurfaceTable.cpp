#include "viewport/EngineSurfaceTable.h"

namespace vlEditor {

std::shared_ptr<EngineSurfaceState> EngineSurfaceTable::create(const std::string& name) {
    auto state = std::make_shared<EngineSurfaceState>(name);
    const std::lock_guard guard(lock_);
    states_[name] = state;
    return state;
}

std::shared_ptr<EngineSurfaceState> EngineSurfaceTable::find(vlMemory::StringView name) const {
    const std::lock_guard guard(lock_);
    const auto found = states_.find(name);
    return found == states_.end() ? nullptr : found->second;
}

void EngineSurfaceTable::erase(vlMemory::StringView name) {
    const std::lock_guard guard(lock_);
    const auto found = states_.find(name);
    if (found != states_.end()) states_.erase(found);
}

} // namespace vlEditor
