#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Component.h>

#include <functional>
#include <string>

namespace vlEditor {

/** A small window that asks for a name. UI thread only. */
class RenameDialog {
public:
    RenameDialog() = delete;

    /// In front of the anchor's window; accepted() gets what was entered, and is not called for an
    /// empty name or without a choice.
    static void open(vlMemory::StringView name,
                     const vlWinUi::Component& anchor,
                     std::function<void(const std::string&)> accepted);
};

} // namespace vlEditor
