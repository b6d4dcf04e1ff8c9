#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <vlScripts/CompiledScript.h>

#include <memory>
#include <string>

namespace vlEditor {

/** Makes a script the one that runs in each turn of the graphics thread; without a name, there is
 *  none any more. One that does not compile leaves the earlier one and gives a line of the log. */
class RenderingScriptMessage final : public Message {
public:
    RenderingScriptMessage() = default;
    explicit RenderingScriptMessage(std::shared_ptr<const vlScripts::CompiledScript> script)
        : name(script->getName()), text(script->getText()), compiled(std::move(script)) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"name", &RenderingScriptMessage::name},
                          Member{"text", &RenderingScriptMessage::text}};
    }

    std::string name;
    std::string text;
    /// What a message made from name and text alone has not: it is compiled when it runs.
    std::shared_ptr<const vlScripts::CompiledScript> compiled;
};

} // namespace vlEditor
