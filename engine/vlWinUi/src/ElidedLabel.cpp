#include "ElidedLabel.h"

#include "Text.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolTip>

#include <algorithm>

namespace vlWinUi {
namespace {

/// Letters of a text that does not quite fit, in percent of their width: one step, so that labels
/// below each other look alike.
constexpr int NARROW = 80;

} // namespace

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

void ElidedLabel::setElision(Qt::TextElideMode elision) {
    elision_ = elision;
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
    const QFont fitting = fittingFont();
    painter.setFont(fitting);
    const QString shown = text_.contains('\n') || fitting != font()
                                  ? text_
                                  : fontMetrics().elidedText(text_, elision_, area.width());
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
        if (!fits())
            QToolTip::showText(
                    static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text_), this);
        return true;
    }
    return QWidget::event(event);
}

QFont ElidedLabel::fittingFont() const {
    const int room = contentsRect().width() - 4;
    if (text_.contains('\n') || fontMetrics().horizontalAdvance(text_) <= room) return font();
    QFont narrow = font();
    narrow.setStretch(NARROW);
    return QFontMetrics(narrow).horizontalAdvance(text_) <= room ? narrow : font();
}

bool ElidedLabel::fits() const {
    return QFontMetrics(fittingFont()).horizontalAdvance(text_) <= contentsRect().width() - 4;
}

} // namespace vlWinUi
