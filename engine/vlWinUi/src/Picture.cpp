#include "Native.h"
#include "PictureView.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace vlWinUi {
namespace {

QImage::Format formatOf(vlImages::PixelFormat format) {
    if (format == vlImages::PixelFormat::r8) return QImage::Format_Grayscale8;
    // Blue first in memory, on the machines there are.
    return format == vlImages::PixelFormat::bgra8 ? QImage::Format_ARGB32 : QImage::Format_RGBA8888;
}

void copyFloats(const std::byte* from, uchar* to, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i) {
        float value = 0;
        std::memcpy(&value, from + i * sizeof(float), sizeof(float));
        // What is no number is shown as none.
        const float shown = std::isnan(value) ? 0.0F : std::clamp(value, 0.0F, 1.0F);
        to[i] = static_cast<uchar>(std::lround(shown * 255.0F));
    }
}

QImage toQt(const vlImages::Image& image) {
    const vlImages::ImageView view = image.view();
    if (image.empty() || !view.valid()) return {};
    QImage shown(
            static_cast<int>(view.width), static_cast<int>(view.height), formatOf(view.format));
    for (std::uint32_t y = 0; y < view.height && !shown.isNull(); ++y) {
        uchar* line = shown.scanLine(static_cast<int>(y));
        if (view.format == vlImages::PixelFormat::rgba32f)
            copyFloats(view.row(y), line, std::size_t{view.width} * 4);
        else
            std::memcpy(line, view.row(y), image.rowBytes());
    }
    return shown;
}

} // namespace

Picture::Picture(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<Native>(new PictureView)) {
}

void Picture::setImage(const vlImages::Image& image) {
    vlCommon::assertUiThread();
    widgetAs<PictureView>(*this).setImage(toQt(image));
}

unsigned Picture::getImageWidth() const {
    return static_cast<unsigned>(widgetAs<PictureView>(*this).image().width());
}

unsigned Picture::getImageHeight() const {
    return static_cast<unsigned>(widgetAs<PictureView>(*this).image().height());
}

void Picture::setScaling(Scaling scaling) {
    widgetAs<PictureView>(*this).setScaling(scaling);
}

void Picture::setText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    widgetAs<PictureView>(*this).setText(vlWinUi::toQt(text));
}

std::string Picture::getText() const {
    return fromQt(widgetAs<PictureView>(*this).text());
}

} // namespace vlWinUi
