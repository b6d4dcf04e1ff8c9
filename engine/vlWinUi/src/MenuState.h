#pragma once
#include <vlWinUi/Menu.h>

#include <QAction>
#include <QMenu>
#include <QPointer>

#include <memory>
#include <string>
#include <vector>

namespace vlWinUi {

/** A line of a menu or a tool bar. The action goes at the event loop's next turn: it may be
 * running. */
struct MenuItem::State {
    State(QObject* parent, vlMemory::StringView label, std::function<void()> callback);
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State();

    void updateToolTip();
    void updateText();

    std::string label;
    std::string detail;
    QPointer<QAction> action;
    std::string toolTip;
    std::string disabledReason;
};

struct Menu::State {
    State(QWidget* parent, vlMemory::StringView label, unsigned width);
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State();

    QPointer<QMenu> menu;
    std::vector<std::unique_ptr<MenuItem>> items;
    std::vector<std::unique_ptr<Menu>> menus;
    std::function<void()> opening;
};

/// A menu of its own, and a line, as a bar and a context menu make them.
std::unique_ptr<Menu>
makeMenu(QWidget* parent, vlMemory::StringView label, unsigned width, QMenu** made);
std::unique_ptr<MenuItem>
makeMenuItem(QWidget* parent, vlMemory::StringView label, std::function<void()> callback);

} // namespace vlWinUi
