#pragma once
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/Window.h>

namespace vlEditor {

/** How tabs of view containers begin, behave and end. UI thread only. */
class CommonWindowInit {
public:
    CommonWindowInit() = delete;

    /// Makes a tab window into one of views: "+" makes a new tab, a click with the right button
    /// opens the menu of a tab or of the window, and there are keys for tabs and containers.
    static void setUpTabs(vlWinUi::TabWindow& tabs);
    /// The tab "+", which stays the last one.
    static void addNewTabTab(vlWinUi::TabWindow& tabs);
    /// A tab "New Tab" with one empty container, before the tab "+" if there is one, and selected
    /// if asked for. Gives the tab's page.
    static vlWinUi::Window& createNewTab(vlWinUi::TabWindow& tabs, bool select);
    /// Another empty container, right of those in the page.
    static vlWinUi::Window& addContainer(vlWinUi::Window& page);
    /// With all its views. The tab "+" stays, and so that it is never the only one, a new tab takes
    /// the place of the last other one.
    static void closeTab(vlWinUi::TabWindow& tabs, std::size_t index);
};

} // namespace vlEditor
