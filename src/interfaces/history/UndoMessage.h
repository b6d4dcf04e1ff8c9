#pragma once
#include "core/Members.h"
#include "core/Message.h"

namespace vlEditor {

/** A person asks for the last gesture to be taken back, or made again. It travels through the
 *  graphics thread behind the changes posted before it. */
class UndoMessage final : public Message {
public:
    UndoMessage() = default;
    explicit UndoMessage(bool wantsRedo) : redo(wantsRedo) {}

    void runOnUiThread() override;
    void runOnGraphicsThread() override;

    static constexpr auto members() { return std::tuple{Member{"redo", &UndoMessage::redo}}; }

    bool redo = false;
};

} // namespace vlEditor
