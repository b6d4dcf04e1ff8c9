#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ProgressBar.h>

#include <QProgressBar>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

constexpr int STEPS = 1000;

std::unique_ptr<Native> makeBar() {
    auto* bar = new QProgressBar;
    bar->setTextVisible(false);
    bar->setRange(0, 0);
    return std::make_unique<Native>(bar);
}

} // namespace

ProgressBar::ProgressBar(std::string name) : Component(std::move(name), TYPE, makeBar()) {
}

void ProgressBar::setText(vlMemory::StringView text) {
    setAccessibleName(text);
}

std::string ProgressBar::getText() const {
    return fromQt(native().widget->accessibleName());
}

void ProgressBar::setShare(std::optional<double> share) {
    vlCommon::assertUiThread();
    auto& bar = widgetAs<QProgressBar>(*this);
    bar.setRange(0, share ? STEPS : 0);
    if (share) bar.setValue(static_cast<int>(std::lround(std::clamp(*share, 0.0, 1.0) * STEPS)));
}

std::optional<double> ProgressBar::getShare() const {
    const auto& bar = widgetAs<QProgressBar>(*this);
    if (bar.maximum() == 0) return std::nullopt;
    return static_cast<double>(bar.value()) / STEPS;
}

} // namespace vlWinUi
