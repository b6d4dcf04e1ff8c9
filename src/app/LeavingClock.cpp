#include "app/LeavingClock.h"

#include "app/LeaveMessage.h"
#include "core/GraphicsLoop.h"
#include "core/MessageOrchestrator.h"

#include <vlGraphics/Program.h>
#include <vlGraphics/System.h>

#include <charconv>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace vlEditor {

void LeavingClock::sleepFor(Duration duration) {
    const bool idle = duration >= GraphicsLoop::idleRest;
    const bool drawn =
            vlGraphics::System::getInstance()->getRenderer().getCounts().frames >= frames_;
    if (drawn && !said_) {
        said_ = true;
        std::cout << "drawn" << std::endl;
    }
    if (idle && drawn && !asked_ && !vlGraphics::ProgramManager::getInstance()->isAnyCompiling()) {
        asked_ = true;
        std::cout << "complete" << std::endl;
        postToUi(LeaveMessage());
    }
    TurnClock::sleepFor(duration);
}

std::unique_ptr<TurnClock> LeavingClock::fromEnvironment() {
    const char* text = std::getenv("VLEDITOR_LEAVE_AFTER_FRAMES");
    if (text == nullptr) return std::make_unique<TurnClock>();
    const std::string_view digits = text;
    std::uint64_t frames = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), frames);
    if (error != std::errc() || frames == 0) return std::make_unique<TurnClock>();
    return std::make_unique<LeavingClock>(frames);
}

} // namespace vlEditor
