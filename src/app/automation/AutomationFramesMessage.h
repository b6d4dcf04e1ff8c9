#pragma once
#include "core/Members.h"
#include "core/Message.h"

namespace vlEditor {

/** Answers its ticket with the number of frames drawn since the engine's start. */
class AutomationFramesMessage final : public Message {
public:
    AutomationFramesMessage() = default;
    explicit AutomationFramesMessage(std::uint64_t ticketValue) : ticket(ticketValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;
    bool isRoutine() const override { return true; }

    static constexpr auto members() {
        return std::tuple{Member{"ticket", &AutomationFramesMessage::ticket}};
    }

    std::uint64_t ticket = 0;

    // Of the outcome.
    std::uint64_t frames = 0;
};

} // namespace vlEditor
