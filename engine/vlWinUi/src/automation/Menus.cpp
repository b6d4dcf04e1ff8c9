#include "Text.h"
#include "automation/Events.h"
#include "automation/Steps.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>

namespace vlWinUi {
namespace {

using vlCommon::Result;

/// Clicks the item that the first `depth` labels lead to, in the menu that is open by then.
Result<> clickItem(const std::string& name, const Automation::Labels& path, std::size_t depth) {
    const auto found = depth == 1 ? findUsable(name) : findComponent(name);
    if (!found) return tl::unexpected(found.error());
    const Automation::Labels before(path.begin(),
                                    path.begin() + static_cast<std::ptrdiff_t>(depth) - 1);
    QWidget* owner = (*found)->native().widget;
    if (!before.empty()) {
        const auto outer = findAction(**found, before);
        if (!outer) return tl::unexpected(outer.error());
        owner = (*outer)->menu();
    }
    const auto action =
            findAction(**found, {path.begin(), path.begin() + static_cast<std::ptrdiff_t>(depth)});
    if (!action) return tl::unexpected(action.error());
    if (!(*action)->isEnabled()) return refuse(name, "has '" + path[depth - 1] + "' disabled");
    if (owner == nullptr || !owner->isVisible())
        return refuse(name, "has no open menu with '" + path[depth - 1] + "'");
    const auto* bar = qobject_cast<const QMenuBar*>(owner);
    auto* menu = qobject_cast<QMenu*>(owner);
    const QRect place =
            bar != nullptr ? bar->actionGeometry(*action) : menu->actionGeometry(*action);
    if (menu != nullptr && !menu->rect().contains(place.center())) {
        // In a menu longer than the screen the keyboard reaches what the mouse would scroll to.
        menu->setActiveAction(*action);
        if (QWindow* window = windowOf(*menu))
            sendKey(*window, Qt::Key_Return, Qt::NoModifier, "\r");
        return {};
    }
    const auto spot = spotOn(name, *owner, place);
    if (!spot) return tl::unexpected(spot.error());
    sendClick(*spot, Qt::LeftButton);
    return {};
}

} // namespace

void Automation::menu(vlMemory::StringView name, Labels path, Done done) {
    std::vector<Steps::Step> steps;
    const auto named = std::string(name);
    if (path.empty()) steps.push_back([named] { return refuse(named, "needs the item's label"); });
    for (std::size_t depth = 1; depth <= path.size(); ++depth)
        steps.push_back([named, path, depth] { return clickItem(named, path, depth); });
    // A menu that was opened on the way to a refusal does not stay.
    const auto closing = [done = std::move(done)](Result<> result) {
        if (!result)
            while (QWidget* popup = QApplication::activePopupWidget())
                if (!popup->close()) break;
        done(std::move(result));
    };
    Steps::run(std::move(steps), closing);
}

} // namespace vlWinUi
