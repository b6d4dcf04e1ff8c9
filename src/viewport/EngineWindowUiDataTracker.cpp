#include "viewport/EngineWindowUiDataTracker.h"

#include <vlCommon/ThreadBorder.h>

namespace vlEditor {

void EngineWindowUiDataTracker::add(const Record& record) {
    vlCommon::assertUiThread();
    records_[record.surface] = record;
    // By index: a listener may come or go meanwhile.
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
        listeners_[i]->windowFinalized(record.surface);
    }
}

void EngineWindowUiDataTracker::setCompositor(vlMemory::StringView surface,
                                              vlMemory::StringView compositor) {
    const auto found = records_.find(surface);
    if (found != records_.end()) found->second.compositor = compositor;
}

void EngineWindowUiDataTracker::erase(vlMemory::StringView surface) {
    const auto found = records_.find(surface);
    if (found != records_.end()) records_.erase(found);
}

const EngineWindowUiDataTracker::Record*
EngineWindowUiDataTracker::find(vlMemory::StringView surface) const {
    const auto found = records_.find(surface);
    return found == records_.end() ? nullptr : &found->second;
}

} // namespace vlEditor
