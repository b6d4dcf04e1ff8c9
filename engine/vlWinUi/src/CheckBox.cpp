#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/CheckBox.h>

#include <QCheckBox>

namespace vlWinUi {
namespace {

struct CheckBoxNative final : Native {
    CheckBoxNative() : Native(new QCheckBox) {
        connect(static_cast<QCheckBox*>(widget), &QCheckBox::clicked, this, [this](bool on) {
            call(checked, on);
        });
    }

    std::function<void(bool)> checked;
};

} // namespace

CheckBox::CheckBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<CheckBoxNative>()) {
}

void CheckBox::setText(vlMemory::StringView text) {
    widgetAs<QCheckBox>(*this).setText(labelToQt(text));
}

std::string CheckBox::getText() const {
    return labelFromQt(widgetAs<QCheckBox>(*this).text());
}

void CheckBox::setChecked(bool checked) {
    vlCommon::assertUiThread();
    widgetAs<QCheckBox>(*this).setChecked(checked);
}

bool CheckBox::isChecked() const {
    return widgetAs<QCheckBox>(*this).isChecked();
}

void CheckBox::setCheckCallback(std::function<void(bool)> callback) {
    nativeAs<CheckBoxNative>(*this).checked = std::move(callback);
}

} // namespace vlWinUi
