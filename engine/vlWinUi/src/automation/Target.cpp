#include "automation/Target.h"

#include "ScrollPanel.h"
#include "SurfaceNative.h"
#include "Text.h"

#include <vlWinUi/ComponentManager.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QToolButton>
#include <QTreeView>
#include <fmt/format.h>

namespace vlWinUi {
namespace {

using vlCommon::Result;

/// The dialog that keeps a person from the widget, or null.
const QWidget* dialogInFrontOf(const QWidget& widget) {
    const QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog == widget.window()) return nullptr;
    for (const QWidget* at = widget.window(); at != nullptr; at = at->parentWidget())
        if (at->window() == dialog) return nullptr;
    if (dialog->windowModality() != Qt::WindowModal) return dialog;
    // Only the windows that it belongs to.
    for (const QWidget* at = dialog->parentWidget(); at != nullptr; at = at->parentWidget())
        if (at->window() == widget.window()) return dialog;
    return nullptr;
}

void closePopups() {
    while (QWidget* popup = QApplication::activePopupWidget())
        if (!popup->close()) break;
}

QRect clickableOf(const QWidget& widget) {
    if (const auto* box = qobject_cast<const QCheckBox*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(box);
        return box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    }
    return widget.rect();
}

QRect inView(const QWidget& widget, QRect part) {
    for (const QWidget* at = &widget; at != nullptr; at = at->parentWidget()) {
        part &= at->rect();
        if (at->isWindow()) break;
        part.translate(at->pos());
    }
    return part;
}

/// A bar that is too short has arrows at its end, which would take the click meant for a tab.
void scrollToTab(const QTabBar& bar, int tab) {
    QToolButton* left = nullptr;
    QToolButton* right = nullptr;
    for (auto* button : bar.findChildren<QToolButton*>()) {
        if (!button->isVisible()) continue;
        if (button->arrowType() == Qt::LeftArrow) left = button;
        if (button->arrowType() == Qt::RightArrow) right = button;
    }
    if (left == nullptr || right == nullptr) return;
    const auto middle = [&] { return bar.tabRect(tab).center().x(); };
    for (int i = 0; i < bar.count() && middle() >= left->x() && right->isEnabled(); ++i)
        right->click();
    for (int i = 0; i < bar.count() && middle() < 0 && left->isEnabled(); ++i)
        left->click();
}

Result<Spot> spotOnTab(const Component& component, vlMemory::StringView label) {
    auto* bar = component.native().widget->findChild<QTabBar*>();
    for (int i = 0; i < bar->count(); ++i) {
        if (labelFromQt(bar->tabText(i)) != label) continue;
        scrollToTab(*bar, i);
        return spotOn(component.getComponentName(), *bar, bar->tabRect(i));
    }
    return refuse(component.getComponentName(), fmt::format("has no tab '{}'", label));
}

} // namespace

tl::unexpected<vlCommon::Error> refuse(vlMemory::StringView name, const std::string& why) {
    return vlCommon::fail(fmt::format("'{}' {}", name, why));
}

Result<Component*> findComponent(vlMemory::StringView name) {
    Component* found = ComponentManager::get(name);
    if (found == nullptr) return refuse(name, "does not exist");
    return found;
}

Result<Component*> findUsable(vlMemory::StringView name) {
    const auto found = findComponent(name);
    if (!found) return found;
    const QWidget& widget = *(*found)->native().widget;
    if (!widget.isVisible()) return refuse(name, "is not visible");
    if (!widget.isEnabled()) return refuse(name, "is disabled");
    if (const QWidget* dialog = dialogInFrontOf(widget))
        return refuse(name, "is behind the dialog '" + fromQt(dialog->windowTitle()) + "'");
    if (QApplication::activePopupWidget() != nullptr && !qobject_cast<const QMenu*>(&widget))
        closePopups();
    return found;
}

Result<> hits(vlMemory::StringView name, const QWidget& widget, const QPoint& at) {
    if (!inView(widget, {at, QSize(1, 1)}).isValid())
        return refuse(name, fmt::format("is not to be seen at ({}, {})", at.x(), at.y()));
    const QWidget* window = widget.window();
    const QWidget* hit = window->childAt(widget.mapTo(window, at));
    if (hit == nullptr) hit = window;
    if (hit == &widget || widget.isAncestorOf(hit)) return {};
    const Component* over = nullptr;
    for (const QWidget* up = hit; up != nullptr && over == nullptr; up = up->parentWidget())
        over = Native::componentOf(up);
    return refuse(name,
                  over == nullptr ? "is covered"
                                  : fmt::format("is covered by '{}'", over->getComponentName()));
}

Result<Spot> spotOn(vlMemory::StringView name, QWidget& widget, const QRect& part) {
    for (QWidget* at = widget.parentWidget(); at != nullptr; at = at->parentWidget())
        if (auto* panel = dynamic_cast<ScrollPanel*>(at)) panel->reveal(&widget);
    const QRect seen = inView(widget, part);
    if (seen.isEmpty()) return refuse(name, "is out of view");
    const QPoint at = widget.mapFrom(widget.window(), seen.center());
    if (auto free = hits(name, widget, at); !free) return tl::unexpected(std::move(free.error()));
    return Spot{&widget, at};
}

Result<Spot> spotOf(Component& component) {
    QWidget& widget = *component.native().widget;
    return spotOn(component.getComponentName(), widget, clickableOf(widget));
}

Result<Spot> spotOfItem(Component& component, vlMemory::StringView label) {
    const std::string& name = component.getComponentName();
    if (component.getType() == ComponentType::TabWindow) return spotOnTab(component, label);
    QAbstractItemView* view = linesOf(component);
    if (view == nullptr)
        return refuse(name,
                      "is a " + std::string(nameOf(component.getType())) + ": it has no lines");
    const QModelIndex line = findLine(*view, label);
    if (!line.isValid()) return refuse(name, fmt::format("has no line '{}'", label));
    if (auto* tree = qobject_cast<QTreeView*>(view))
        for (QModelIndex up = line.parent(); up.isValid(); up = up.parent())
            tree->expand(up);
    view->scrollTo(line);
    return spotOn(name, *view->viewport(), view->visualRect(line));
}

QAbstractItemView* linesOf(const Component& component) {
    return qobject_cast<QAbstractItemView*>(component.native().widget);
}

QModelIndex findLine(const QAbstractItemView& view, vlMemory::StringView label) {
    const QAbstractItemModel& model = *view.model();
    if (model.rowCount() == 0) return {};
    const auto found = model.match(model.index(0, 0),
                                   Qt::DisplayRole,
                                   toQt(label),
                                   1,
                                   Qt::MatchExactly | Qt::MatchCaseSensitive | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.first();
}

std::string labelOf(const QAction& action) {
    const QVariant label = action.property("vlLabel");
    return label.isValid() ? fromQt(label.toString())
                           : labelFromQt(action.text().section('\t', 0, 0));
}

QList<QAction*> actionsOf(const QWidget& owner) {
    QList<QAction*> shown;
    for (QAction* action : owner.actions())
        if (action->isVisible() && !action->isSeparator()) shown.append(action);
    return shown;
}

bool isMenuOwner(const Component& component) {
    return component.getType() == ComponentType::ToolBar ||
           component.getType() == ComponentType::ContextMenu;
}

Result<QAction*> findAction(Component& component, const Automation::Labels& path) {
    const std::string& name = component.getComponentName();
    if (!isMenuOwner(component))
        return refuse(name,
                      "is a " + std::string(nameOf(component.getType())) + ": it has no menu");
    const QWidget* owner = component.native().widget;
    QAction* found = nullptr;
    for (const std::string& label : path) {
        if (owner == nullptr) return refuse(name, fmt::format("has no menu before '{}'", label));
        found = nullptr;
        for (QAction* action : actionsOf(*owner))
            if (found == nullptr && labelOf(*action) == label) found = action;
        if (found == nullptr) return refuse(name, fmt::format("has no item '{}'", label));
        owner = found->menu();
    }
    return found;
}

} // namespace vlWinUi
