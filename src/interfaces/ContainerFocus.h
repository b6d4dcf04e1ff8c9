#pragma once
#include <vlWinUi/Static.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/Window.h>

namespace vlEditor {

/** Which container the person works in: its title is marked, keys go from one to the next, and the
 *  menu key opens its menu. UI thread only. */
class ContainerFocus {
public:
    ContainerFocus() = delete;

    /// F6 and Shift+F6 go through the containers of the selected tab; the mark follows the keyboard
    /// focus.
    static void setUp(vlWinUi::TabWindow& tabs);
    /// Makes a new container's title a place for the keyboard.
    static void
    setUp(vlWinUi::Window& container, vlWinUi::Static& title, vlWinUi::ToolBar& leftBar);

    /// To its view if that takes the keyboard, otherwise to its title.
    static void focus(vlWinUi::Window& container);
    /// The first container of a page.
    static void focusIn(vlWinUi::Window& page);
    /// It is about to end.
    static void leave(const vlWinUi::Window& container);
    /// The one that had the focus last; null when that has ended.
    static vlWinUi::Window* current();
};

} // namespace vlEditor
