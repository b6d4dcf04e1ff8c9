#include "SplitHandle.h"

#include <QMouseEvent>

namespace vlWinUi {

SplitHandle::SplitHandle(QWidget* parent, bool betweenColumns)
    : QWidget(parent), betweenColumns_(betweenColumns) {
    setObjectName(betweenColumns ? "vlColumnBorder" : "vlRowBorder");
    setAttribute(Qt::WA_StyledBackground);
    setAttribute(Qt::WA_Hover);
    setCursor(betweenColumns ? Qt::SplitHCursor : Qt::SplitVCursor);
}

int SplitHandle::along(const QMouseEvent& event) const {
    const QPoint at = event.globalPosition().toPoint();
    return betweenColumns_ ? at.x() : at.y();
}

void SplitHandle::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    from_ = along(*event);
    dragging_ = true;
    pressed();
}

void SplitHandle::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_) moved(along(*event) - from_);
}

void SplitHandle::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !dragging_) return;
    dragging_ = false;
    released();
}

void SplitHandle::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragging_ = false;
    doubleClicked();
}

} // namespace vlWinUi
