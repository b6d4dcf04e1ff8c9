#pragma once
#include "app/WindowLayout.h"
#include "core/LogWindow.h"

#include <vlCommon/SingletonClass.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/Window.h>

#include <string>

namespace vlEditor {

/** The editor's window: menus, tabs of views, and the newest log line at its bottom. UI thread
 *  only. */
class MainWindow final : public vlCommon::SingletonClass<MainWindow>, public LogWindow {
public:
    static constexpr const char* windowName = "VL_EDITOR_MAIN_WIN";

    /// Once, after the widget library's start; everything else afterwards.
    void create();
    void show();
    vlWinUi::TabWindow& getTabs() { return *tabs_; }
    /// As the person has made it, and as it was at an earlier time; before show().
    WindowLayout describe() const;
    void apply(const WindowLayout& layout);

    void appendLine(const std::string& line) override;

private:
    void fillMenus(vlWinUi::ToolBar& bar);
    void fillFileMenu(vlWinUi::Menu& menu);
    static void fillEditMenu(vlWinUi::Menu& menu);
    void fillViewMenu(vlWinUi::Menu& menu);

    vlWinUi::Window* window_ = nullptr;
    vlWinUi::TabWindow* tabs_ = nullptr;
};

} // namespace vlEditor
