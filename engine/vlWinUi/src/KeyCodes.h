#pragma once
#include <vlWinUi/KeyEvent.h>

class QKeyEvent;

namespace vlWinUi {

/// Both codes of a key, whatever the platform told of it.
KeyEvent keyOf(const QKeyEvent& event, bool pressed);

} // namespace vlWinUi
