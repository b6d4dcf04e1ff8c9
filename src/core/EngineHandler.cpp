#include "core/EngineHandler.h"

#include "core/GraphicsLoop.h"

#include <vlCommon/ThreadBorder.h>
#include <vlScripts/Environment.h>

#include <algorithm>
#include <cassert>

namespace vlEditor {

EngineHandler::~EngineHandler() {
    release();
    join();
}

void EngineHandler::start(std::unique_ptr<FrameRenderer> renderer,
                          std::unique_ptr<TurnClock> clock,
                          double framesPerSecond) {
    assert(!thread_.joinable() && !renderer_);
    renderer_ = std::move(renderer);
    clock_ = std::move(clock);
    thread_ = std::thread([this, framesPerSecond] {
        vlCommon::ThreadBorder::claimEngine();
        GraphicsLoop(*this, *renderer_, *clock_, framesPerSecond).run(stopToken_);
    });
}

void EngineHandler::release() {
    leaving_ = true;
    stopToken_.release();
    // The environment was set before the thread started, and stays until its join.
    if (isRunning() && scriptEnvironment_ != nullptr) scriptEnvironment_->interpreter().interrupt();
}

void EngineHandler::join() {
    if (!thread_.joinable()) return;
    thread_.join();
    vlCommon::ThreadBorder::claimEngine();
}

void EngineHandler::registerWindow(RenderWindow& window) {
    vlCommon::assertGraphicsThread();
    if (find(window) != nullptr) return;
    windows_.emplace_back().window = &window;
}

void EngineHandler::unregisterWindow(const RenderWindow& window) {
    vlCommon::assertGraphicsThread();
    std::erase_if(windows_, [&](const Registration& entry) { return entry.window == &window; });
}

void EngineHandler::setUpdate(const RenderWindow& window, bool update) {
    if (Registration* entry = find(window)) entry->update = update;
}

void EngineHandler::setOverlay(const RenderWindow& window, std::unique_ptr<WindowOverlay> overlay) {
    if (Registration* entry = find(window)) entry->overlay = std::move(overlay);
}

void EngineHandler::setScriptEnvironment(vlScripts::Environment* environment) {
    vlCommon::assertGraphicsThread();
    scriptEnvironment_ = environment;
}

bool EngineHandler::isEveryPictureCurrent() const {
    vlCommon::assertGraphicsThread();
    return std::all_of(windows_.begin(), windows_.end(), [this](const Registration& entry) {
        if (!entry.window->isDrawable()) return true;
        const PictureState now{renderer_->getChangeCount(), entry.window->getRevision()};
        return entry.update ? entry.drawn.has_value() : entry.drawn == now;
    });
}

EngineHandler::Registration* EngineHandler::find(const RenderWindow& window) {
    vlCommon::assertGraphicsThread();
    const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const auto& entry) {
        return entry.window == &window;
    });
    return found == windows_.end() ? nullptr : &*found;
}

} // namespace vlEditor
