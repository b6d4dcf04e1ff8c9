#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** A shader program has another result of compilation, or another type: the UI's records of the
 *  shaders that use it are read again. Enters the graphics queue. */
class ShaderProgramChangedMessage final : public Message {
public:
    ShaderProgramChangedMessage() = default;
    explicit ShaderProgramChangedMessage(std::string changed) : program(std::move(changed)) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"program", &ShaderProgramChangedMessage::program}};
    }

    std::string program;
};

} // namespace vlEditor
