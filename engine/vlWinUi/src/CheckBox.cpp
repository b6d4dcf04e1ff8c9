#include "Call.h"
#include "MixedValues.h"
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
            end();
            call(checked, on);
        });
    }
    QCheckBox& box() const { return *static_cast<QCheckBox*>(widget); }

    /// Qt's third state is left by one click, and then it is not to come back by another.
    void end() {
        box().setTristate(false);
        describeAsMixed(box(), false);
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
    auto& native = nativeAs<CheckBoxNative>(*this);
    native.end();
    native.box().setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

bool CheckBox::isChecked() const {
    return widgetAs<QCheckBox>(*this).checkState() == Qt::Checked;
}

void CheckBox::setMixed() {
    vlCommon::assertUiThread();
    auto& box = widgetAs<QCheckBox>(*this);
    box.setCheckState(Qt::PartiallyChecked);
    describeAsMixed(box, true);
}

bool CheckBox::isMixed() const {
    return widgetAs<QCheckBox>(*this).checkState() == Qt::PartiallyChecked;
}

void CheckBox::setCheckCallback(std::function<void(bool)> callback) {
    nativeAs<CheckBoxNative>(*this).checked = std::move(callback);
}

} // namespace vlWinUi
