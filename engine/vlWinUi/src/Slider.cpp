#include "Call.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Slider.h>

#include <QSlider>

#include <algorithm>

namespace vlWinUi {
namespace {

struct SliderNative final : Native {
    SliderNative() : Native(new QSlider(Qt::Horizontal)) {
        static_cast<QSlider*>(widget)->setRange(0, 100);
        connect(static_cast<QSlider*>(widget), &QSlider::valueChanged, this, [this](int value) {
            if (quiet == 0) call(slid, value);
        });
    }

    std::function<void(int)> slid;
};

} // namespace

Slider::Slider(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<SliderNative>()) {
}

void Slider::setText(vlMemory::StringView text) {
    bool isNumber = false;
    const int value = toQt(text).toInt(&isNumber);
    if (isNumber) setCurrent(value);
}

std::string Slider::getText() const {
    return std::to_string(getCurrent());
}

void Slider::setRange(int min, int max) {
    const Quiet quiet(native().quiet);
    widgetAs<QSlider>(*this).setRange(min, std::max(min, max));
}

int Slider::getMin() const {
    return widgetAs<QSlider>(*this).minimum();
}

int Slider::getMax() const {
    return widgetAs<QSlider>(*this).maximum();
}

void Slider::setCurrent(int value) {
    vlCommon::assertUiThread();
    const Quiet quiet(native().quiet);
    widgetAs<QSlider>(*this).setValue(value);
}

int Slider::getCurrent() const {
    return widgetAs<QSlider>(*this).value();
}

void Slider::setSlideCallback(std::function<void(int)> callback) {
    nativeAs<SliderNative>(*this).slid = std::move(callback);
}

} // namespace vlWinUi
