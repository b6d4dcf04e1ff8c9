#include "interfaces/LogInterfaceCreator.h"

#include "interfaces/LogInterface.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr unsigned filterHeight = 29;
constexpr float launchWidth = 50;
constexpr float commandHeight = 30;
constexpr std::uint32_t escapeKey = 27;

/// The interface that the root of that name belongs to; null once it has gone.
LogInterface* interfaceOf(const std::string& base) {
    const vlWinUi::Component* root = ComponentManager::get(base);
    if (root == nullptr) return nullptr;
    LogInterface* const* stored = root->getDataAs<LogInterface*>();
    return stored == nullptr ? nullptr : *stored;
}

void createFilter(const std::string& base, vlWinUi::ListBox& log) {
    auto& filter = *ComponentManager::createOrRetrieve<vlWinUi::EditBox>(base + "_FILTER");
    filter.setPlaceHolder("Filter");
    filter.setAccessibleName("Filter of the log");
    filter.setToolTip("Shows only the lines that contain this text (Ctrl+F; Escape shows all)");
    const auto apply = [base, &filter] { interfaceOf(base)->setFilter(filter.getText()); };
    filter.setChangeCallback(apply);
    filter.setKeyDownCallback([&filter, apply](std::uint32_t key) {
        if (key != escapeKey) return;
        filter.setText("");
        apply();
    });
    log.setHeader(filter, filterHeight);
}

void createMenu(const std::string& base, vlWinUi::ListBox& log) {
    auto& menu = *ComponentManager::createOrRetrieve<vlWinUi::ContextMenu>(base + "_MENU");
    menu.setText("Log");
    auto& copy = menu.addItem("Copy", [&log] { log.copySelection(); });
    copy.setShortcut("Ctrl+C");
    menu.addItem("Select All", [&log] { log.selectAll(); }).setShortcut("Ctrl+A");
    menu.getMenu().addSeparator();
    menu.addItem("Filter", [base] {
            ComponentManager::get(base + "_FILTER")->focusWindow();
        }).setShortcut("Ctrl+F");
    menu.addItem("Clear This View", [&log] {
            log.clear();
        }).setToolTip("Empties this window; the editor keeps the last lines for new ones");
    menu.getMenu().setOpenCallback([&copy, &log] {
        copy.setEnabled(!log.getSelectedIndices().empty(), "No line is selected.");
    });
    log.setMenuCallback([&menu](vlWinUi::Point screen) { menu.open(screen); });
}

vlWinUi::ListBox& createLog(const std::string& base) {
    auto& log = *ComponentManager::createOrRetrieve<vlWinUi::ListBox>(base + "_LOG");
    log.setAccessibleName("Log");
    log.setPlaceHolder("Nothing has been logged yet");
    log.setMultiSelection(true);
    log.setCompact(true);
    log.setMostEntries(LogInterface::mostLines);
    log.setFollowEnd(true);
    createFilter(base, log);
    createMenu(base, log);
    return log;
}

vlWinUi::EditBox& createEdit(const std::string& base) {
    auto& edit = *ComponentManager::createOrRetrieve<vlWinUi::EditBox>(base + "_EDIT");
    edit.setPlaceHolder("Command");
    edit.setToolTip("A script to run: Enter runs it, Tab completes a name, up and down bring "
                    "earlier ones back; '= x' shows a value");
    edit.setKeyDownCallback([base](std::uint32_t key) { interfaceOf(base)->handleKey(key); });
    edit.setTabCallback([base] { return interfaceOf(base)->complete(); });
    return edit;
}

vlWinUi::Button& createLaunch(const std::string& base) {
    auto& launch = *ComponentManager::createOrRetrieve<vlWinUi::Button>(base + "_LAUNCH");
    launch.setText("Launch");
    launch.setToolTip("Runs the command (Enter)");
    launch.setButtonClickCallback([base] { interfaceOf(base)->launch(); });
    return launch;
}

} // namespace

std::unique_ptr<Interface> LogInterfaceCreator::create() {
    static unsigned number = 0;
    const std::string base = "COMMAND_LINE_" + std::to_string(number++);
    auto& root = *ComponentManager::createOrRetrieve<vlWinUi::Window>(base);
    vlWinUi::GridLayout layout(2, 2);
    layout.setInternalBorders(1, 1);
    layout.setFixedSizeColumn(1, launchWidth);
    layout.setFixedSizeRow(1, commandHeight);
    layout.addComponent(createLog(base), 0, 0, 2, 1);
    layout.addComponent(createEdit(base), 0, 1);
    layout.addComponent(createLaunch(base), 1, 1);
    root.setLayout(std::move(layout));
    root.setKeyCallback([base](const vlWinUi::KeyEvent& key) {
        if (key.pressed && key.control && key.virtualKey == 'F')
            ComponentManager::get(base + "_FILTER")->focusWindow();
    });
    return std::make_unique<LogInterface>(root);
}

} // namespace vlEditor
