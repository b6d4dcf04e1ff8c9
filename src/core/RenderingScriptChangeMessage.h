#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Makes a script of the ScriptManager the one that runs in each turn; an empty name, none. What is
 *  not loaded is compiled first; one that does not compile, or does not exist, gives a line of the
 *  log and leaves the earlier one. The graphics thread posts it back, too, whenever another script
 *  runs or the one that does is called otherwise. */
class RenderingScriptChangeMessage final : public Message {
public:
    RenderingScriptChangeMessage() = default;
    explicit RenderingScriptChangeMessage(std::string script) : name(std::move(script)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"name", &RenderingScriptChangeMessage::name}};
    }

    std::string name;
};

} // namespace vlEditor
