#pragma once
#include "core/Members.h"
#include "core/Message.h"

namespace vlEditor {

/** Ends the program as "Leave" does, asked for from any thread. */
class LeaveMessage final : public Message {
public:
    void runOnUiThread() override;
    void runOnGraphicsThread() override {}

    static constexpr auto members() { return std::tuple{}; }
};

} // namespace vlEditor
