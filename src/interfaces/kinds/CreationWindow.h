#pragma once
#include "interfaces/kinds/ResourceCommands.h"

#include <vlWinUi/Component.h>
#include <vlWinUi/FileExplorer.h>

#include <string>

namespace vlEditor {

/** The window in which resources of one kind are created and loaded, with the kind's file dialog.
 *  There is one for each kind, made with the first window of the kind and kept to the end. UI
 *  thread only. */
class CreationWindow {
public:
    CreationWindow() = delete;

    /// Nothing happens when it is there already.
    static void create(const ResourceCommands& commands);
    /// Beside the button of the editor window with that base name.
    static void show(const KindTexts& texts, const vlWinUi::Component& anchor, std::string base);
    /// Whether that resource was asked for from that window; true once.
    static bool takeAwaited(const std::string& base, const std::string& name);

    static vlWinUi::FileExplorer& explorer(const KindTexts& texts);
    /// Asks for a file to save the resource of that name to; `chosen` gets its path.
    static void askForFile(const KindTexts& texts,
                           std::string_view name,
                           std::function<void(const std::string&)> chosen);
};

} // namespace vlEditor
