#pragma once
#include "core/Members.h"
#include "core/Message.h"

#include <string>

namespace vlEditor {

/** A viewport's surface has another size. Only the last message of a burst does the work, for every
 *  viewport whose buffers differ from its surface: the others of the burst may have been of other
 *  viewports. Those that are posted are counted from their making to their end, so a copy kept
 *  elsewhere (a journal's) holds nothing up. */
class EngineWindowResizeMessage final : public Message {
public:
    EngineWindowResizeMessage() = default;
    explicit EngineWindowResizeMessage(std::string_view surfaceValue) : surface(surfaceValue) {}
    ~EngineWindowResizeMessage() override;
    EngineWindowResizeMessage(const EngineWindowResizeMessage&) = delete;
    EngineWindowResizeMessage& operator=(const EngineWindowResizeMessage&) = delete;

    /// UI thread.
    static void post(std::string_view surface);
    /// No other one that is posted is still to come.
    bool isLastOfBurst() const;

    void runOnUiThread() override {}
    void runOnGraphicsThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"surface", &EngineWindowResizeMessage::surface}};
    }

    std::string surface;

private:
    bool counted_ = false;
};

} // namespace vlEditor
