#include "app/MainWindow.h"

#include "app/ClosePath.h"
#include "app/Icon.h"
#include "app/JobStatus.h"
#include "app/RenderingPropertyWindow.h"
#include "app/Themes.h"
#include "app/ViewTabs.h"
#include "core/EditorLogger.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/history/History.h"

#include <vlWinUi/ComponentManager.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr float toolBarHeight = 27;
constexpr unsigned leastWidth = 640;
constexpr unsigned leastHeight = 360;
constexpr unsigned menuWidth = 200;

void addUnavailable(vlWinUi::Menu& menu, std::string_view label, std::string_view reason) {
    menu.addItem(label, [] {}).setEnabled(false, reason);
}

} // namespace

void MainWindow::create() {
    window_ = ComponentManager::createOrRetrieve<vlWinUi::Window>(windowName);
    window_->setText("Vorlane Editor");
    window_->setRectangle({0, 0, 0, 0});
    window_->setMinSize(leastWidth, leastHeight);
    window_->setVisibleOnLoad(true);
    window_->setIcon(Icon::size, Icon::size, Icon::pixels());

    tabs_ = ComponentManager::createOrRetrieve<vlWinUi::TabWindow>("VL_EDITOR_TABS");
    CommonWindowInit::setUpTabs(*tabs_);
    auto& bar = *ComponentManager::createOrRetrieve<vlWinUi::ToolBar>("VL_EDITOR_TOOL_BAR");
    bar.setText("Main menu");
    fillMenus(bar);

    vlWinUi::GridLayout layout(1, 2);
    layout.setFixedSizeRow(0, toolBarHeight);
    layout.ignoreInternalBorder(0, 0);
    layout.addComponent(bar, 0, 0);
    layout.addComponent(*tabs_, 0, 1);
    window_->setLayout(std::move(layout));
    JobStatus::create(*window_);
    EditorLogger::getInstance().addWindow(*this);
}

void MainWindow::show() {
    window_->load();
}

WindowLayout MainWindow::describe() const {
    WindowLayout layout;
    layout.rectangle = window_->getRectangle();
    layout.maximized = window_->isMaximized();
    layout.tabs = ViewTabs::describe(*tabs_);
    const auto selected = tabs_->getSelected();
    if (selected && *selected < layout.tabs.size())
        layout.selectedTab = static_cast<std::uint32_t>(*selected);
    return layout;
}

void MainWindow::apply(const WindowLayout& layout) {
    if (layout.rectangle) window_->setRectangle(*layout.rectangle);
    window_->setMaximized(layout.maximized);
    ViewTabs::create(*tabs_, layout.tabs);
    tabs_->select(layout.selectedTab);
}

void MainWindow::appendLine(const std::string& line) {
    window_->setStatusText(line);
}

void MainWindow::fillMenus(vlWinUi::ToolBar& bar) {
    fillFileMenu(bar.addMenu("File", menuWidth));
    fillEditMenu(bar.addMenu("Edit", menuWidth));
    fillViewMenu(bar.addMenu("View", menuWidth));
    bar.addMenu("Scene", menuWidth).addItem("RenderingLogic", RenderingPropertyWindow::show);
}

void MainWindow::fillFileMenu(vlWinUi::Menu& menu) {
    addUnavailable(menu, "New", "Starting a new project is not available yet.");
    addUnavailable(menu,
                   "Load",
                   "Loading from here is not available yet: start the editor with the project's "
                   "path.");
    addUnavailable(menu, "Save", "Saving a project is not available yet.");
    menu.addItem("Leave", ClosePath::leave).setShortcut("Ctrl+Q");
}

void MainWindow::fillEditMenu(vlWinUi::Menu& menu) {
    auto& undo = menu.addItem("Undo", [] { History::getInstance().undo(); });
    undo.setShortcut("Ctrl+Z");
    auto& redo = menu.addItem("Redo", [] { History::getInstance().redo(); });
    redo.setShortcut("Ctrl+Shift+Z");
    const auto refresh = [&undo, &redo] {
        const History& history = History::getInstance();
        undo.setEnabled(history.canUndo(), "Nothing has been changed yet.");
        undo.setDetail(history.describeUndo());
        redo.setEnabled(history.canRedo(), "Nothing has been undone.");
        redo.setDetail(history.describeRedo());
    };
    refresh();
    History::getInstance().setChangeCallback(refresh);
}

void MainWindow::fillViewMenu(vlWinUi::Menu& menu) {
    menu.addItem("Switch Fullscreen State", [this] {
            window_->setFullscreen(!window_->isFullscreen());
        }).setShortcut("F11");
    menu.addItem("Switch To Dark Theme", Themes::activateDark);
    menu.addItem("Switch To Light Theme", Themes::activateLight);
    menu.addItem("Reset Layout", [this] {
            ViewTabs::reset(*tabs_);
        }).setToolTip("Closes all tabs and brings back the one that the editor begins with");
}

} // namespace vlEditor
