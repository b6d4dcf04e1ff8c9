#include "automation/Target.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <cstring>

namespace vlWinUi {
namespace {

using vlCommon::Result;

/// The display's own picture: native windows and whatever lies in front are in it.
QImage grabFromDisplay(const QWidget& window) {
    const QRect area(window.mapToGlobal(QPoint(0, 0)), window.size());
    const QPoint at = area.topLeft() - window.screen()->geometry().topLeft();
    return window.screen()->grabWindow(0, at.x(), at.y(), area.width(), area.height()).toImage();
}

/// Widgets drawn in memory: the window, then dialogs and menus in the order of their opening.
QImage drawWindows(QWidget& window) {
    QPixmap canvas = window.grab();
    QPainter painter(&canvas);
    QWidgetList others = QApplication::topLevelWidgets();
    std::stable_partition(others.begin(), others.end(), [](const QWidget* other) {
        return other->windowType() != Qt::Popup && other->windowType() != Qt::ToolTip;
    });
    for (QWidget* other : others) {
        if (other == &window || !other->isVisible() || other->windowHandle() == nullptr) continue;
        painter.drawPixmap(other->geometry().topLeft() - window.geometry().topLeft(),
                           other->grab());
    }
    painter.end();
    return canvas.toImage();
}

} // namespace

Result<Automation::Picture> Automation::takePicture(vlMemory::StringView name) {
    const auto found = findComponent(name);
    if (!found) return tl::unexpected(found.error());
    QWidget& window = *(*found)->native().widget;
    if (!window.isWindow()) return refuse(name, "is no window of its own");
    if (!window.isVisible()) return refuse(name, "is not visible");
    QImage image = QGuiApplication::platformName() == "xcb" ? grabFromDisplay(window)
                                                            : drawWindows(window);
    image = image.convertToFormat(QImage::Format_RGB888);
    if (image.isNull()) return refuse(name, "cannot be pictured");
    Picture picture{
            static_cast<unsigned>(image.width()), static_cast<unsigned>(image.height()), {}};
    const std::size_t row = std::size_t{picture.width} * 3;
    picture.pixels.resize(row * picture.height);
    for (unsigned y = 0; y < picture.height; ++y)
        std::memcpy(picture.pixels.data() + y * row, image.constScanLine(static_cast<int>(y)), row);
    return picture;
}

} // namespace vlWinUi
