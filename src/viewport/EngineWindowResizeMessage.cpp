#include "viewport/EngineWindowResizeMessage.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowEngineDataTracker.h"

#include <atomic>

namespace vlEditor {
namespace {

std::atomic<unsigned> pendingCount = 0;

} // namespace

EngineWindowResizeMessage::~EngineWindowResizeMessage() {
    if (counted_) --pendingCount;
}

void EngineWindowResizeMessage::post(std::string_view surface) {
    auto message = std::make_unique<EngineWindowResizeMessage>(surface);
    message->counted_ = true;
    ++pendingCount;
    MessageOrchestrator::getInstance().postToGraphics(std::move(message));
}

bool EngineWindowResizeMessage::isLastOfBurst() const {
    return pendingCount == (counted_ ? 1U : 0U);
}

void EngineWindowResizeMessage::runOnGraphicsThread() {
    if (!isLastOfBurst()) return;
    for (const auto& [name, data] : EngineWindowEngineDataTracker::getInstance().all()) {
        const auto resized = data->resizeToSurface();
        if (resized) continue;
        postToUi(
                LogMessage("Could not resize viewport '" + name + "': " + resized.error().message));
    }
}

} // namespace vlEditor
