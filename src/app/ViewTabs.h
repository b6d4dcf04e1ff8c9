#pragma once
#include "app/WindowLayout.h"

#include <vlWinUi/TabWindow.h>

#include <vector>

namespace vlEditor {

/** The tabs of views as a whole: as they are at first, as they were, and as they are to be again.
 * UI thread only. */
class ViewTabs {
public:
    ViewTabs() = delete;

    /// The tab "Scene" in front of all others: the scene's graph, and a viewport beside it.
    static void createFirst(vlWinUi::TabWindow& tabs);
    /// In place of all tabs that are there, the first one alone.
    static void reset(vlWinUi::TabWindow& tabs);

    static std::vector<WindowLayout::Tab> describe(const vlWinUi::TabWindow& tabs);
    /// Behind the tabs that are there. A view that is not available leaves its container empty,
    /// with a line in the log.
    static void create(vlWinUi::TabWindow& tabs, const std::vector<WindowLayout::Tab>& described);
};

} // namespace vlEditor
