#pragma once
#include "core/Members.h"
#include "core/Message.h"
#include "editors/script/ScriptKind.h"

#include <optional>

namespace vlEditor {

/** Compiles a script's source as it is. An error is a line of the log and of the script's windows;
 *  the last good snapshot runs on. */
class ScriptCompileMessage final : public Message {
public:
    ScriptCompileMessage() = default;
    explicit ScriptCompileMessage(std::string script, bool makesItRender = false)
        : name(std::move(script)), render(makesItRender) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"name", &ScriptCompileMessage::name},
                          Member{"render", &ScriptCompileMessage::render}};
    }

    std::string name;
    bool render = false;                ///< it becomes the rendering script where it compiles
    std::optional<ScriptRecord> record; ///< on its way back
};

/** Runs a script once, as its source is, with the engine's tables. What came of it is a line of the
 *  log, unless it is nothing, and of the script's windows. */
class ScriptRunMessage final : public Message {
public:
    ScriptRunMessage() = default;
    explicit ScriptRunMessage(std::string script) : name(std::move(script)) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() { return std::tuple{Member{"name", &ScriptRunMessage::name}}; }

    std::string name;
    std::optional<ScriptRecord> record; ///< on its way back
};

} // namespace vlEditor
