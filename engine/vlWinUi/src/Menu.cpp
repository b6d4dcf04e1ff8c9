#include "Call.h"
#include "MenuState.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/System.h>

#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>

namespace vlWinUi {
namespace {

/** Says why a line is disabled: Qt's menus are silent about those. */
class MenuWatch final : public QObject {
public:
    explicit MenuWatch(QMenu* menu) : QObject(menu), menu_(*menu) {
        menu->setMouseTracking(true);
        menu->installEventFilter(this);
        connect(menu, &QMenu::hovered, this, [](const QAction* action) { hint(action); });
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide) System::showHint({});
        if (event->type() == QEvent::MouseMove)
            hint(menu_.actionAt(static_cast<QMouseEvent*>(event)->position().toPoint()));
        if (event->type() != QEvent::ToolTip) return false;
        const auto& help = *static_cast<QHelpEvent*>(event);
        const QAction* action = menu_.actionAt(help.pos());
        QToolTip::showText(help.globalPos(), plainToolTip(reasonOf(action)), &menu_);
        return true;
    }

private:
    static QString reasonOf(const QAction* action) {
        return action == nullptr ? QString() : action->property("vlToolTip").toString();
    }
    static void hint(const QAction* action) { System::showHint(fromQt(reasonOf(action))); }

    QMenu& menu_;
};

} // namespace

Menu::State::State(QWidget* parent, vlMemory::StringView label, unsigned width)
    : menu(new QMenu(labelToQt(label), parent)) {
    menu->setMinimumWidth(static_cast<int>(width));
    new MenuWatch(menu);
    QObject::connect(menu, &QMenu::aboutToShow, menu, [this] { call(opening); });
}

Menu::State::~State() {
    items.clear();
    menus.clear();
    if (menu == nullptr) return;
    QObject::disconnect(menu, &QMenu::aboutToShow, menu, nullptr);
    menu->hide();
    menu->deleteLater();
}

Menu::Menu(std::unique_ptr<State> state) : state_(std::move(state)) {
}

Menu::~Menu() = default;

std::string Menu::getLabel() const {
    return labelFromQt(state_->menu->title());
}

MenuItem& Menu::addItem(vlMemory::StringView label, std::function<void()> callback) {
    vlCommon::assertUiThread();
    state_->items.push_back(makeMenuItem(state_->menu, label, std::move(callback)));
    return *state_->items.back();
}

Menu& Menu::addMenu(vlMemory::StringView label, unsigned width) {
    vlCommon::assertUiThread();
    QMenu* made = nullptr;
    state_->menus.push_back(makeMenu(state_->menu, label, width, &made));
    state_->menu->addMenu(made);
    return *state_->menus.back();
}

void Menu::addSeparator() {
    state_->menu->addSeparator();
}

void Menu::clear() {
    vlCommon::assertUiThread();
    state_->items.clear();
    state_->menus.clear();
    state_->menu->clear();
}

std::size_t Menu::getItemCount() const {
    return state_->items.size();
}

MenuItem& Menu::getItem(std::size_t index) {
    return *state_->items.at(index);
}

MenuItem* Menu::find(vlMemory::StringView label) {
    const auto found = std::ranges::find_if(
            state_->items, [label](const auto& item) { return item->getLabel() == label; });
    return found == state_->items.end() ? nullptr : found->get();
}

void Menu::open(Point screen) {
    vlCommon::assertUiThread();
    if (QMenu* menu = state_->menu) menu->popup(QPoint(screen.x, screen.y));
}

bool Menu::isOpen() const {
    const QMenu* menu = state_->menu;
    return menu != nullptr && menu->isVisible();
}

void Menu::setOpenCallback(std::function<void()> callback) {
    state_->opening = std::move(callback);
}

std::unique_ptr<Menu>
makeMenu(QWidget* parent, vlMemory::StringView label, unsigned width, QMenu** made) {
    auto state = std::make_unique<Menu::State>(parent, label, width);
    *made = state->menu;
    return std::make_unique<Menu>(std::move(state));
}

} // namespace vlWinUi
