#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** Lets a viewport be seen through another compositor. An unknown one, and the one it is seen
 *  through already, changes nothing. */
class EngineWindowChangeCompositorMessage final : public Message {
public:
    EngineWindowChangeCompositorMessage() = default;
    explicit EngineWindowChangeCompositorMessage(std::string_view surfaceValue,
                                                 std::string_view compositorValue,
                                                 std::string_view baseNameValue)
        : surface(surfaceValue), compositor(compositorValue), baseName(baseNameValue) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowChangeCompositorMessage::surface},
                          Member{"compositor", &EngineWindowChangeCompositorMessage::compositor},
                          Member{"baseName", &EngineWindowChangeCompositorMessage::baseName}};
    }

    std::string surface;
    std::string compositor;
    std::string baseName; ///< of the window's widgets
};

} // namespace vlEditor
