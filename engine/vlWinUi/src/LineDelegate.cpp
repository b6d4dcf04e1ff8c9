#include "LineDelegate.h"

#include "ListModel.h"
#include "Registry.h"
#include "Style.h"
#include "Text.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace vlWinUi {
namespace {

constexpr int SIDE_ROOM = 8;    ///< around the text of a row, pixels
constexpr int BADGE_ROOM = 12;  ///< around the digits of a count, pixels
constexpr int MARK_SIZE = 7;    ///< across, pixels
constexpr int MARK_ROOM = 14;   ///< with what is around it, pixels
constexpr int COMPACT_ROOM = 5; ///< over and under the text, pixels

const Shades& shades() {
    return Registry::slot()->style->getShades();
}

QString badgeOf(const QModelIndex& index) {
    const unsigned count = index.data(ListModel::CountRole).toUInt();
    return count < 2 ? QString() : QStringLiteral("×%1").arg(count);
}

bool isMarked(const QModelIndex& index) {
    return index.data(ListModel::MarkRole).toBool();
}

int roomForText(const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString badge = badgeOf(index);
    const int badgeWidth =
            badge.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(badge) + BADGE_ROOM;
    const int markWidth = isMarked(index) ? MARK_ROOM : 0;
    return option.rect.width() - badgeWidth - markWidth - 2 * SIDE_ROOM;
}

void drawMark(QPainter& painter, const QStyleOptionViewItem& option) {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPointF centre(option.rect.right() - MARK_ROOM / 2.0, QRectF(option.rect).center().y());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(selected ? shades().accentText : shades().warning);
    painter.drawEllipse(centre, MARK_SIZE / 2.0, MARK_SIZE / 2.0);
    painter.restore();
}

} // namespace

void LineDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto emphasis = static_cast<Emphasis>(index.data(ListModel::EmphasisRole).toInt());
    const bool enabled = option->state.testFlag(QStyle::State_Enabled);
    if (emphasis != Emphasis::None && enabled) {
        const QColor color = emphasis == Emphasis::Error ? shades().error : shades().warning;
        option->palette.setColor(QPalette::Text, color);
    }
    option->text = option->fontMetrics.elidedText(
            option->text, Qt::ElideRight, roomForText(*option, index));
}

void LineDelegate::paint(QPainter* painter,
                         const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    const bool marked = isMarked(index);
    if (marked) drawMark(*painter, option);
    const QString badge = badgeOf(index);
    if (badge.isEmpty()) return;
    const int width = option.fontMetrics.horizontalAdvance(badge) + BADGE_ROOM;
    const int inset = compact ? 1 : 4;
    const QRectF box(option.rect.right() - width - 3 - (marked ? MARK_ROOM : 0),
                     option.rect.top() + inset,
                     width,
                     option.rect.height() - 2 * inset);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(shades().border);
    painter->drawRoundedRect(box, box.height() / 2, box.height() / 2);
    painter->setPen(shades().text);
    painter->drawText(box, Qt::AlignCenter, badge);
    painter->restore();
}

QSize LineDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int height = compact ? QFontMetrics(option.font).height() + COMPACT_ROOM
                               : QStyledItemDelegate::sizeHint(option, index).height();
    return {1, height};
}

bool LineDelegate::helpEvent(QHelpEvent* event,
                             QAbstractItemView* view,
                             const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = index.data().toString();
    const QString reason = index.data(ListModel::ReasonRole).toString();
    QString whole;
    if (option.fontMetrics.horizontalAdvance(text) > roomForText(option, index))
        whole = index.data(ListModel::LabelRole).toString();
    if (!whole.isEmpty() && !reason.isEmpty()) whole += '\n';
    whole += reason;
    if (whole.isEmpty()) return false;
    QToolTip::showText(event->globalPos(), plainToolTip(whole), view);
    return true;
}

} // namespace vlWinUi
