#include "code/LineNumbers.h"

#include "Registry.h"
#include "Style.h"
#include "code/CodeView.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int MARK_SIZE = 7;  ///< across, pixels
constexpr int MARK_ROOM = 14; ///< left of the numbers, pixels
constexpr int RIGHT_ROOM = 7; ///< pixels
constexpr int FEWEST_DIGITS = 3;

} // namespace

LineNumbers::LineNumbers(CodeView& view) : QWidget(&view), view_(view) {
    setFocusPolicy(Qt::NoFocus);
}

int LineNumbers::wantedWidth() const {
    const auto digits = std::max(QString::number(view_.blockCount()).size(),
                                 static_cast<qsizetype>(FEWEST_DIGITS));
    return MARK_ROOM + view_.fontMetrics().horizontalAdvance(QString(digits, u'9')) + RIGHT_ROOM;
}

void LineNumbers::paintEvent(QPaintEvent* event) {
    const Shades& shades = Registry::slot()->style->getShades();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(event->rect(), shades.bar);
    painter.setFont(view_.font());
    const int current = view_.textCursor().blockNumber();
    view_.forVisibleBlocks([&](const QTextBlock& block, const QRectF& place) {
        const QRectF room(MARK_ROOM, place.top(), width() - MARK_ROOM - RIGHT_ROOM, place.height());
        painter.setPen(block.blockNumber() == current ? shades.text : shades.muted);
        painter.drawText(
                room, Qt::AlignRight | Qt::AlignTop, QString::number(block.blockNumber() + 1));
        const CodeView::Problem* problem = view_.problemIn(block.blockNumber());
        if (problem == nullptr) return;
        painter.setPen(Qt::NoPen);
        painter.setBrush(colorOf(problem->emphasis, shades));
        painter.drawEllipse(
                QPointF(MARK_ROOM / 2.0 + 1, place.top() + view_.fontMetrics().height() / 2.0),
                MARK_SIZE / 2.0,
                MARK_SIZE / 2.0);
    });
}

void LineNumbers::wheelEvent(QWheelEvent* event) {
    QCoreApplication::sendEvent(view_.viewport(), event);
}

bool LineNumbers::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto& help = *static_cast<const QHelpEvent*>(event);
    view_.showProblem(help.pos().y(), help.globalPos());
    return true;
}

} // namespace vlWinUi
