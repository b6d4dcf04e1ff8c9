#pragma once
#include <vlMemory/String.h>

#include <string>

namespace vlWinUi {

/** The text that is cut, copied and pasted among all programs. UI thread only. */
class Clipboard {
public:
    static void setText(vlMemory::StringView text);
    /// Empty when there is none, or something that is no text.
    static std::string getText();
};

} // namespace vlWinUi
