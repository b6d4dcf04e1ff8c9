#include "Call.h"
#include "MenuState.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>

#include <QFontMetrics>
#include <QWidget>

namespace vlWinUi {
namespace {

constexpr int WIDEST_DETAIL = 420; ///< pixels

} // namespace

MenuItem::State::State(QObject* parent, vlMemory::StringView text, std::function<void()> callback)
    : label(text), action(new QAction(parent)) {
    updateText();
    QObject::connect(action, &QAction::triggered, action, [callback = std::move(callback)] {
        call(callback);
    });
}

MenuItem::State::~State() {
    if (action == nullptr) return;
    action->setVisible(false);
    action->deleteLater();
}

void MenuItem::State::updateToolTip() {
    const bool explain = !action->isEnabled() && !disabledReason.empty();
    const QString text = toQt(explain ? disabledReason : toolTip);
    // Qt makes a tooltip of its own from the label: what we have to say is kept apart from it.
    action->setProperty("vlToolTip", text);
    action->setToolTip(text);
}

void MenuItem::State::updateText() {
    action->setProperty("vlLabel", toQt(label));
    // A detail may hold a name of any length, and a menu is as wide as its widest item.
    const QString shown =
            QFontMetrics(action->font()).elidedText(toQt(detail), Qt::ElideMiddle, WIDEST_DETAIL);
    action->setText(labelToQt(detail.empty() ? label : label + "  " + fromQt(shown)));
}

MenuItem::MenuItem(std::unique_ptr<State> state) : state_(std::move(state)) {
}

MenuItem::~MenuItem() = default;

void MenuItem::setLabel(vlMemory::StringView label) {
    vlCommon::assertUiThread();
    state_->label = label;
    state_->updateText();
}

std::string MenuItem::getLabel() const {
    return state_->label;
}

void MenuItem::setDetail(vlMemory::StringView detail) {
    vlCommon::assertUiThread();
    state_->detail = detail;
    state_->updateText();
}

std::string MenuItem::getDetail() const {
    return state_->detail;
}

void MenuItem::setEnabled(bool enabled, vlMemory::StringView reason) {
    vlCommon::assertUiThread();
    state_->disabledReason = enabled ? std::string() : std::string(reason);
    state_->action->setEnabled(enabled);
    state_->updateToolTip();
}

bool MenuItem::isEnabled() const {
    return state_->action->isEnabled();
}

void MenuItem::setToolTip(vlMemory::StringView text) {
    state_->toolTip = text;
    state_->updateToolTip();
}

std::string MenuItem::getToolTip() const {
    return fromQt(state_->action->property("vlToolTip").toString());
}

void MenuItem::setShortcut(vlMemory::StringView keys) {
    state_->action->setShortcut(QKeySequence(toQt(keys), QKeySequence::PortableText));
}

void MenuItem::setChecked(bool checked) {
    state_->action->setCheckable(true);
    state_->action->setChecked(checked);
}

void MenuItem::setVisible(bool visible) {
    state_->action->setVisible(visible);
}

void MenuItem::trigger() {
    vlCommon::assertUiThread();
    state_->action->trigger();
}

std::unique_ptr<MenuItem>
makeMenuItem(QWidget* parent, vlMemory::StringView label, std::function<void()> callback) {
    auto state = std::make_unique<MenuItem::State>(parent, label, std::move(callback));
    parent->addAction(state->action);
    return std::make_unique<MenuItem>(std::move(state));
}

} // namespace vlWinUi
