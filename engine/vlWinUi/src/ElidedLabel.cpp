#include "ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>

namespace vlWinUi {

ElidedLabel::ElidedLabel() : QWidget(nullptr) {
    setAttribute(Qt::WA_StyledBackground);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void ElidedLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void ElidedLabel::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

QSize ElidedLabel::sizeHint() const {
    return fontMetrics().size(0, text_) + QSize(4, 2);
}

QSize ElidedLabel::minimumSizeHint() const {
    const int few = fontMetrics().averageCharWidth() * 4;
    return {std::min(sizeHint().width(), few), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    const QRect area = contentsRect().adjusted(2, 0, -2, 0);
    const QString shown = text_.contains('\n')
                                  ? text_
                                  : fontMetrics().elidedText(text_, Qt::ElideRight, area.width());
    style()->drawItemText(&painter,
                          area,
                          static_cast<int>(alignment_),
                          palette(),
                          isEnabled(),
                          shown,
                          foregroundRole());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        if (!fits()) QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text_, this);
        return true;
    }
    return QWidget::event(event);
}

bool ElidedLabel::fits() const {
    return fontMetrics().horizontalAdvance(text_) <= contentsRect().width() - 4;
}

} // namespace vlWinUi
