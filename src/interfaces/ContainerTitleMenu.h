#pragma once
#include <vlWinUi/Geometry.h>

#include <string>

namespace vlEditor {

/** The menu "EDITOR_CONTAINER_TITLE_MENU" of a container's title bar. UI thread only. */
class ContainerTitleMenu {
public:
    ContainerTitleMenu() = delete;

    /// For the container of that name; nothing when there is none.
    static void open(const std::string& container, vlWinUi::Point screen);
    /// Below the title, for the keyboard.
    static void openBelowTitle(const std::string& container);
};

} // namespace vlEditor
