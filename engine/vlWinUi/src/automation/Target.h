#pragma once
#include "Native.h"

#include <vlCommon/Result.h>
#include <vlMemory/String.h>
#include <vlWinUi/Automation.h>
#include <vlWinUi/Component.h>

#include <QAction>
#include <QModelIndex>
#include <QWidget>

class QAbstractItemView;
class QMenu;

namespace vlWinUi {

/// "'SAVE' is disabled", as every refusal reads.
tl::unexpected<vlCommon::Error> refuse(vlMemory::StringView name, const std::string& why);

vlCommon::Result<Component*> findComponent(vlMemory::StringView name);
/// One that a person could reach now: shown, enabled, in front of every dialog. Open menus are
/// closed, as a click beside them does.
vlCommon::Result<Component*> findUsable(vlMemory::StringView name);

/** Where the mouse goes. */
struct Spot {
    QWidget* widget = nullptr;
    QPoint at; ///< in the widget
};
/// Fails where that place of the widget is out of view or something covers it.
vlCommon::Result<> hits(vlMemory::StringView name, const QWidget& widget, const QPoint& at);
/// Scrolls it into view first; fails where it stays out of view or something covers it.
vlCommon::Result<Spot> spotOn(vlMemory::StringView name, QWidget& widget, const QRect& part);
/// The part of a component that takes a click.
vlCommon::Result<Spot> spotOf(Component& component);
/// The line, tab or menu of that label.
vlCommon::Result<Spot> spotOfItem(Component& component, vlMemory::StringView label);

/// Null unless the component shows lines.
QAbstractItemView* linesOf(const Component& component);
/// The first line of that label; folded lines are found too.
QModelIndex findLine(const QAbstractItemView& view, vlMemory::StringView label);

/// The label without an item's detail, and the tab and shortcut that Qt may keep behind it.
std::string labelOf(const QAction& action);
/// Those of a tool bar or a menu that are shown, without separators.
QList<QAction*> actionsOf(const QWidget& owner);
/// The action at the end of the path; the path is not empty.
vlCommon::Result<QAction*> findAction(Component& component, const Automation::Labels& path);
bool isMenuOwner(const Component& component);

} // namespace vlWinUi
