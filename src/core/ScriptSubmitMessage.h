#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <vlScripts/CompiledScript.h>

#include <memory>
#include <string>

namespace vlEditor {

/** Runs a script once on the graphics thread, with the engine's tables. Why it failed comes back as
 *  a line of the log. Each message has a snapshot of its own, so two in quick succession both run.
 */
class ScriptSubmitMessage final : public Message {
public:
    ScriptSubmitMessage() = default;
    explicit ScriptSubmitMessage(std::shared_ptr<const vlScripts::CompiledScript> script)
        : name(script->getName()), text(script->getText()), compiled(std::move(script)) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"name", &ScriptSubmitMessage::name},
                          Member{"text", &ScriptSubmitMessage::text}};
    }

    std::string name;
    std::string text;
    /// What a message made from name and text alone has not: it is compiled when it runs.
    std::shared_ptr<const vlScripts::CompiledScript> compiled;
};

} // namespace vlEditor
