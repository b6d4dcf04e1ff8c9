#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Button.h>

#include <QEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>

namespace vlWinUi {
namespace {

constexpr int ROOM_BESIDE_TEXT = 24; ///< as the style sheet has it, pixels

struct ButtonNative final : Native {
    ButtonNative() : Native(new QPushButton) {
        button().setAutoDefault(false);
        connect(&button(), &QPushButton::clicked, this, [this] { call(clicked); });
    }
    QPushButton& button() { return *static_cast<QPushButton*>(widget); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize) fitText();
        return Native::eventFilter(watched, event);
    }
    /// Where the cell is too narrow, the room beside the text goes before the text does.
    void fitText() {
        const int text = button().fontMetrics().horizontalAdvance(button().text());
        const bool snug = button().width() < text + ROOM_BESIDE_TEXT;
        if (button().property("snug").toBool() == snug) return;
        button().setProperty("snug", snug);
        button().style()->unpolish(&button());
        button().style()->polish(&button());
    }

    std::function<void()> clicked;
    QKeySequence shortcut;
};

} // namespace

Button::Button(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ButtonNative>()) {
}

void Button::setText(vlMemory::StringView text) {
    auto& native = nativeAs<ButtonNative>(*this);
    native.button().setText(labelToQt(text));
    // Qt looks for a shortcut in each new text.
    native.button().setShortcut(native.shortcut);
    native.fitText();
}

std::string Button::getText() const {
    return labelFromQt(widgetAs<QPushButton>(*this).text());
}

void Button::setButtonClickCallback(std::function<void()> callback) {
    nativeAs<ButtonNative>(*this).clicked = std::move(callback);
}

void Button::click() {
    vlCommon::assertUiThread();
    widgetAs<QPushButton>(*this).click();
}

void Button::setDefault(bool isDefault) {
    auto& native = nativeAs<ButtonNative>(*this);
    native.button().setProperty("defaultButton", isDefault);
    native.button().update();
}

void Button::setShortcut(vlMemory::StringView keys) {
    auto& native = nativeAs<ButtonNative>(*this);
    native.shortcut = QKeySequence(toQt(keys), QKeySequence::PortableText);
    native.button().setShortcut(native.shortcut);
    native.shownKeys = fromQt(native.shortcut.toString(QKeySequence::NativeText));
    native.updateToolTip();
}

} // namespace vlWinUi
