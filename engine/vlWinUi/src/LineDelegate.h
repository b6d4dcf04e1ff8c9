#pragma once
#include <QStyledItemDelegate>

namespace vlWinUi {

/** Draws the rows of a ListBox: what stands out in its colour, what came several times with its
 * count at the right, what is marked with a dot there, and what does not fit with an ellipsis and
 * whole in the tooltip. */
class LineDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool compact = false; ///< rows as close as lines of text

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// As wide as the view, whatever the text.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event,
                   QAbstractItemView* view,
                   const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace vlWinUi
