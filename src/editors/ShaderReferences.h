#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <vlCommon/SingletonClass.h>

#include <memory>
#include <string>
#include <vector>

namespace vlEditor {

/** Has the UI's records of shaders read again when something that they name is called otherwise,
 *  goes, or comes back. Lives from the start of the interface to its end; without it the records
 *  keep the names. UI thread only. */
class ShaderReferences final : public vlCommon::SingletonClass<ShaderReferences> {
public:
    ShaderReferences();
    ~ShaderReferences();

private:
    struct Listeners;
    std::unique_ptr<Listeners> listeners_;
};

/** What these shaders refer to has changed: their records are read again. Enters the graphics
 *  queue. */
class ShaderReferencesChangedMessage final : public Message {
public:
    ShaderReferencesChangedMessage() = default;
    explicit ShaderReferencesChangedMessage(std::vector<std::string> users)
        : shaders(std::move(users)) {}

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"shaders", &ShaderReferencesChangedMessage::shaders}};
    }

    std::vector<std::string> shaders;
};

} // namespace vlEditor
