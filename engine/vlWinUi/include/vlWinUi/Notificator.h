#pragma once
#include <vlMemory/String.h>

#include <functional>

namespace vlWinUi {

class Component;

/** Questions and messages in a small dialog. All return at once. UI thread only. */
class Notificator {
public:
    /// In front of the anchor's window. Declining, and closing the dialog, does nothing.
    static void confirm(vlMemory::StringView text, Component& anchor, std::function<void()> accept);
    static void inform(vlMemory::StringView text, Component& anchor);
    /// The dialog in front, if one is open: for automation and tests.
    static bool isOpen();
    static void answer(bool accept);
};

} // namespace vlWinUi
