#include "PictureView.h"

#include "Registry.h"
#include "Style.h"
#include "Text.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

constexpr int SQUARE = 8;       ///< of the checkerboard, pixels
constexpr int SMALLEST = 48;    ///< asked for on a side, pixels
constexpr int LIKED = 256;      ///< at most, on a side, pixels
constexpr int TEXT_ROOM = 4;    ///< around the text, pixels
constexpr int REASON_LINES = 6; ///< of a text without a picture, for the size asked for

/// Neutral, so that the colours of the picture are seen as they are.
void drawCheckerboard(QPainter& painter, const QRectF& area, const Shades& shades) {
    const bool dark = shades.field.lightnessF() < 0.5F;
    const QColor colors[] = {dark ? QColor(72, 72, 72) : QColor(255, 255, 255),
                             dark ? QColor(96, 96, 96) : QColor(216, 216, 216)};
    painter.save();
    painter.setClipRect(area);
    const auto columns = static_cast<int>(std::ceil(area.width() / SQUARE));
    const auto rows = static_cast<int>(std::ceil(area.height() / SQUARE));
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
            painter.fillRect(QRectF(area.x() + x * SQUARE, area.y() + y * SQUARE, SQUARE, SQUARE),
                             colors[(x + y) % 2]);
    painter.restore();
}

} // namespace

PictureView::PictureView() {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void PictureView::setImage(QImage image) {
    if (image.size() != image_.size()) updateGeometry();
    image_ = std::move(image);
    scaled_ = {};
    update();
}

void PictureView::setScaling(Picture::Scaling scaling) {
    scaling_ = scaling;
    scaled_ = {};
    update();
}

void PictureView::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleDescription(text);
    updateGeometry();
    update();
}

int PictureView::captionHeight() const {
    return text_.isEmpty() ? 0 : fontMetrics().height() + TEXT_ROOM;
}

QRectF PictureView::place() const {
    if (image_.isNull()) return {};
    const qreal ratio = devicePixelRatioF();
    // In the screen's own pixels, so that whole multiples are whole.
    const QSizeF room = QSizeF(width() - 2, height() - 2 - captionHeight()) * ratio;
    if (room.width() < 1 || room.height() < 1) return {};
    qreal factor = std::min(room.width() / image_.width(), room.height() / image_.height());
    if (factor > 1 && scaling_ != Picture::Scaling::Smooth) factor = std::floor(factor);
    const QSizeF size(std::max(1.0, std::round(image_.width() * factor)),
                      std::max(1.0, std::round(image_.height() * factor)));
    const QPointF corner(std::floor((room.width() - size.width()) / 2),
                         std::floor((room.height() - size.height()) / 2));
    return {corner / ratio + QPointF(1, 1), size / ratio};
}

QSize PictureView::sizeHint() const {
    if (image_.isNull()) return {LIKED / 2, fontMetrics().height() * REASON_LINES};
    const QSize picture = image_.size().boundedTo({LIKED, LIKED}).expandedTo({SMALLEST, SMALLEST});
    return picture + QSize(2, 2 + captionHeight());
}

QSize PictureView::minimumSizeHint() const {
    return {SMALLEST, SMALLEST + captionHeight()};
}

void PictureView::drawText(QPainter& painter) const {
    const Shades& shades = Registry::slot()->style->getShades();
    painter.setPen(isEnabled() ? shades.muted : shades.disabled);
    if (image_.isNull()) {
        const QRect room = rect().adjusted(TEXT_ROOM, TEXT_ROOM, -TEXT_ROOM, -TEXT_ROOM);
        painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, text_);
        return;
    }
    const int top = static_cast<int>(place().bottom()) + 1;
    painter.drawText(QRect(0, top, width(), captionHeight()),
                     Qt::AlignHCenter | Qt::AlignBottom,
                     fontMetrics().elidedText(text_, Qt::ElideRight, width()));
}

void PictureView::drawImage(QPainter& painter) {
    const QRectF area = place();
    if (area.isEmpty()) return;
    const Shades& shades = Registry::slot()->style->getShades();
    painter.fillRect(area.adjusted(-1, -1, 1, 1), shades.border);
    if (image_.hasAlphaChannel()) drawCheckerboard(painter, area, shades);
    if (!isEnabled()) painter.setOpacity(0.5);
    const QSize pixels = (area.size() * devicePixelRatioF()).toSize();
    const bool smaller = pixels.width() < image_.width() || pixels.height() < image_.height();
    const bool smooth = scaling_ == Picture::Scaling::Smooth ||
                        (smaller && scaling_ == Picture::Scaling::Automatic);
    // The painter's own way of making smaller leaves out pixels.
    if (smooth && smaller) {
        if (scaled_.size() != pixels)
            scaled_ = image_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter.drawImage(area, scaled_);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter.drawImage(area, image_);
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawText(painter);
    drawImage(painter);
}

bool PictureView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty()) return QWidget::event(event);
    if (fontMetrics().horizontalAdvance(text_) > width())
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text_), this);
    return true;
}

} // namespace vlWinUi
