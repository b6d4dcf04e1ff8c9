#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <vlScripts/Value.h>

#include <string>

namespace vlEditor {

/** Runs a text as a script of the engine, and answers its ticket with what it returned. */
class AutomationScriptMessage final : public Message {
public:
    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"text", &AutomationScriptMessage::text},
                          Member{"ticket", &AutomationScriptMessage::ticket}};
    }

    std::string text;
    std::uint64_t ticket = 0;

    // Of the outcome.
    vlScripts::Values returned; ///< without functions
    std::string problem;        ///< empty on success
};

} // namespace vlEditor
