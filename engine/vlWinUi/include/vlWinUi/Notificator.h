#pragma once
#include <vlMemory/String.h>

#include <functional>
#include <string>

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

    /// Further lines under the text of the dialog in front, less prominent than that; an empty text
    /// takes them away. Nothing happens when none is open.
    static void setDetails(vlMemory::StringView text);
    /// Of the dialog in front; empty when none is open.
    static std::string getText();
    static std::string getDetails();
};

} // namespace vlWinUi
