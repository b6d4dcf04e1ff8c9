#include "Text.h"
#include "WindowNative.h"
#include "automation/Target.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComponentManager.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QGuiApplication>
#include <QMenu>
#include <QTabBar>
#include <QWindow>

#include <algorithm>

namespace vlWinUi {
namespace {

using vlCommon::Result;

void addLines(const QAbstractItemModel& model,
              const QModelIndex& parent,
              std::size_t depth,
              Automation::Labels& lines) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex line = model.index(row, 0, parent);
        lines.push_back(std::string(2 * depth, ' ') + fromQt(line.data().toString()));
        addLines(model, line, depth + 1, lines);
    }
}

tl::unexpected<vlCommon::Error> lacks(const Component& component, const char* what) {
    return refuse(component.getComponentName(),
                  "is a " + std::string(nameOf(component.getType())) + ": it has no " + what);
}

Automation::Labels labelsOf(const QList<QAction*>& actions) {
    Automation::Labels labels;
    for (const QAction* action : actions)
        labels.push_back(labelOf(*action));
    return labels;
}

Result<Automation::Labels> menuItems(Component& component, const Automation::Labels& path) {
    if (path.empty()) return labelsOf(actionsOf(*component.native().widget));
    const auto action = findAction(component, path);
    if (!action) return tl::unexpected(action.error());
    if ((*action)->menu() == nullptr)
        return refuse(component.getComponentName(), "has no menu '" + path.back() + "'");
    return labelsOf(actionsOf(*(*action)->menu()));
}

} // namespace

bool Automation::exists(vlMemory::StringView name) {
    return ComponentManager::get(name) != nullptr;
}

Result<bool> Automation::isVisible(vlMemory::StringView name) {
    return findComponent(name).map([](Component* found) { return found->isVisible(); });
}

Result<bool> Automation::isEnabled(vlMemory::StringView name, const Labels& path) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    if (path.empty()) return (*found)->isEnabled();
    return findAction(**found, path).map([](const QAction* action) { return action->isEnabled(); });
}

Result<bool> Automation::isChecked(vlMemory::StringView name, const Labels& path) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    if (!path.empty())
        return findAction(**found, path).map([](const QAction* action) {
            return action->isChecked();
        });
    if ((*found)->getType() != ComponentType::CheckBox) return lacks(**found, "tick");
    return static_cast<CheckBox&>(**found).isChecked();
}

Result<std::string> Automation::getText(vlMemory::StringView name) {
    return findComponent(name).map([](Component* found) { return found->getText(); });
}

Result<Automation::Labels> Automation::getItems(vlMemory::StringView name, const Labels& path) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    Component& component = **found;
    if (isMenuOwner(component) || !path.empty()) return menuItems(component, path);
    Labels labels;
    if (const QAbstractItemView* view = linesOf(component)) {
        addLines(*view->model(), {}, 0, labels);
    } else if (component.getType() == ComponentType::ComboBox) {
        addLines(*widgetAs<QComboBox>(component).model(), {}, 0, labels);
    } else if (component.getType() == ComponentType::TabWindow) {
        const auto* bar = component.native().widget->findChild<QTabBar*>();
        for (int i = 0; i < bar->count(); ++i)
            labels.push_back(labelFromQt(bar->tabText(i)));
    } else {
        return lacks(component, "items");
    }
    return labels;
}

Result<Automation::Labels> Automation::getSelected(vlMemory::StringView name) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    const Component& component = **found;
    Labels labels;
    if (const QAbstractItemView* view = linesOf(component)) {
        QModelIndexList marked = view->selectionModel()->selectedIndexes();
        std::sort(marked.begin(), marked.end());
        for (const QModelIndex& line : marked)
            labels.push_back(fromQt(line.data().toString()));
    } else if (component.getType() == ComponentType::ComboBox ||
               component.getType() == ComponentType::TabWindow) {
        std::string text = component.getText();
        if (!text.empty()) labels.push_back(std::move(text));
    } else {
        return lacks(component, "selection");
    }
    return labels;
}

Result<Rectangle> Automation::getRectangle(vlMemory::StringView name) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    const QWidget& widget = *(*found)->native().widget;
    const QPoint at =
            widget.isWindow() ? QPoint(0, 0) : widget.mapTo(widget.window(), QPoint(0, 0));
    return Rectangle{at.x(), at.y(), widget.width(), widget.height()};
}

bool Automation::isSettled() {
    vlCommon::assertUiThread();
    const QWindowList windows = QGuiApplication::allWindows();
    return std::all_of(windows.begin(), windows.end(), [](const QWindow* window) {
        const bool away = window->windowStates().testFlag(Qt::WindowMinimized);
        if (!window->isVisible() || window->isExposed() || away) return true;
        // What is inside a hidden window is visible by its own word only.
        for (const QWindow* up = window->parent(); up != nullptr; up = up->parent())
            if (!up->isVisible()) return true;
        return false;
    });
}

} // namespace vlWinUi
