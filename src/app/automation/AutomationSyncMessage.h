#pragma once
#include "core/Members.h"
#include "core/Message.h"

namespace vlEditor {

/** Goes once through both threads and answers its ticket with three values: whether it found the
 *  editor at rest (no program compiling, no picture out of date, no job pending), how many messages
 *  were posted by then, and whether every window stands on the display. */
class AutomationSyncMessage final : public Message {
public:
    AutomationSyncMessage() = default;
    explicit AutomationSyncMessage(std::uint64_t ticketValue) : ticket(ticketValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;
    bool isRoutine() const override { return true; }

    static constexpr auto members() {
        return std::tuple{Member{"ticket", &AutomationSyncMessage::ticket}};
    }

    std::uint64_t ticket = 0;

    // Of the outcome.
    bool engineAtRest = false;
};

} // namespace vlEditor
