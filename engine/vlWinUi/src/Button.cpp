#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Button.h>

#include <QPushButton>
#include <QShortcut>

namespace vlWinUi {
namespace {

struct ButtonNative final : Native {
    ButtonNative() : Native(new QPushButton) {
        button().setAutoDefault(false);
        connect(&button(), &QPushButton::clicked, this, [this] { call(clicked); });
    }
    QPushButton& button() { return *static_cast<QPushButton*>(widget); }

    std::function<void()> clicked;
};

} // namespace

Button::Button(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ButtonNative>()) {
}

void Button::setText(vlMemory::StringView text) {
    widgetAs<QPushButton>(*this).setText(labelToQt(text));
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
    widgetAs<QPushButton>(*this).setShortcut(QKeySequence(toQt(keys), QKeySequence::PortableText));
}

} // namespace vlWinUi
