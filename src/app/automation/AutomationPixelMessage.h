#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <array>
#include <string>

namespace vlEditor {

/** Answers its ticket with a pixel of the last picture of a viewport: red, green, blue, alpha. */
class AutomationPixelMessage final : public Message {
public:
    void runOnUiThread() override;
    void runOnGraphicsThread() override;
    bool isRoutine() const override { return true; }

    static constexpr auto members() {
        return std::tuple{Member{"window", &AutomationPixelMessage::window},
                          Member{"x", &AutomationPixelMessage::x},
                          Member{"y", &AutomationPixelMessage::y},
                          Member{"ticket", &AutomationPixelMessage::ticket}};
    }

    std::string window;  ///< the viewport's base name, or its surface's
    std::uint32_t x = 0; ///< from the left
    std::uint32_t y = 0; ///< from the top
    std::uint64_t ticket = 0;

    // Of the outcome.
    std::array<std::uint8_t, 4> color{};
    std::string problem; ///< empty on success
};

} // namespace vlEditor
