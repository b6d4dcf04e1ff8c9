#pragma once
#include <QAbstractScrollArea>
#include <QPainter>
#include <QPalette>

namespace vlWinUi {

/// Says in the middle of an empty list what would be in it.
inline void paintPlaceHolder(QAbstractScrollArea& view, const QString& text) {
    QPainter painter(view.viewport());
    painter.setPen(view.palette().color(QPalette::PlaceholderText));
    const QRect area = view.viewport()->rect().adjusted(12, 12, -12, -12);
    painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, text);
}

} // namespace vlWinUi
