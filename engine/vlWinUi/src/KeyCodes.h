#pragma once
#include <vlWinUi/KeyEvent.h>

class QKeyEvent;

namespace vlWinUi {

/// Both codes of a key, whatever the platform told of it.
KeyEvent keyOf(const QKeyEvent& event, bool pressed);
/// Qt's key for a virtual key code; 0 where there is none.
int qtKeyOf(std::uint32_t virtualKey);

} // namespace vlWinUi
