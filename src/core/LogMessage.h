#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Brings one line to the log from any thread. A line that does not begin with "[" gets the source
 *  "Editor". */
class LogMessage final : public Message {
public:
    LogMessage() = default;
    explicit LogMessage(std::string line) : text(std::move(line)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override {}

    static constexpr auto members() { return std::tuple{Member{"text", &LogMessage::text}}; }

    std::string text;
};

} // namespace vlEditor
