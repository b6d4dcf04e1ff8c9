#include "ListView.h"

#include "Call.h"
#include "LineDelegate.h"
#include "ListModel.h"
#include "PlaceHolder.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int HEADER_GAP = 3; ///< between the header and the rows, pixels

} // namespace

ListView::ListView() : lines_(*new LineDelegate(this)) {
    setItemDelegate(&lines_);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QScrollBar& bar = *verticalScrollBar();
    connect(&bar, &QScrollBar::valueChanged, this, [this, &bar](int value) {
        atEnd_ = value >= bar.maximum();
    });
    // Whatever moved the end: lines that came, a window that became smaller, a filter.
    connect(&bar, &QScrollBar::rangeChanged, this, [this, &bar](int, int end) {
        if (isFollowing()) bar.setValue(end);
    });
}

void ListView::setPlaceHolder(const QString& text) {
    placeHolder_ = text;
    viewport()->update();
}

void ListView::setHeader(QWidget& header, int height) {
    header_ = &header;
    headerHeight_ = height;
    header.setParent(this);
    setViewportMargins(0, height, 0, 0);
    placeHeader();
    header.show();
}

void ListView::setCompact(bool compact) {
    lines_.compact = compact;
    scheduleDelayedItemsLayout();
}

void ListView::setFollowEnd(bool follow) {
    follow_ = follow;
    if (follow) scrollToBottom();
    atEnd_ = true;
}

void ListView::keepPlace(const std::function<void()>& change) {
    const QPersistentModelIndex anchor = indexAt(QPoint(1, 1));
    const int top = visualRect(anchor).top();
    change();
    doItemsLayout();
    QScrollBar& bar = *verticalScrollBar();
    bar.setValue(anchor.isValid() ? bar.value() + visualRect(anchor).top() - top : 0);
}

void ListView::goTo(const QModelIndex& row, QItemSelectionModel::SelectionFlags selection) {
    if (!layoutDue_) {
        selectionModel()->setCurrentIndex(row, selection);
        scrollTo(row);
        return;
    }
    {
        // Told of it, Qt's view would place all rows at once.
        const QSignalBlocker quiet(selectionModel());
        selectionModel()->setCurrentIndex(row, selection);
    }
    viewport()->update();
    if (std::exchange(revealQueued_, true)) return;
    QMetaObject::invokeMethod(
            this, [this] { revealCurrent(); }, Qt::QueuedConnection);
}

void ListView::revealCurrent() {
    revealQueued_ = false;
    if (currentIndex().isValid()) scrollTo(currentIndex());
}

void ListView::doItemsLayout() {
    layoutDue_ = false;
    QListView::doItemsLayout();
}

void ListView::rowsInserted(const QModelIndex& parent, int first, int last) {
    layoutDue_ = true;
    QListView::rowsInserted(parent, first, last);
}

void ListView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
    layoutDue_ = true;
    QListView::rowsAboutToBeRemoved(parent, first, last);
}

/// All that is in view: finding the very rows would place all of them anew for each that goes.
QRegion ListView::visualRegionForSelection(const QItemSelection&) const {
    return viewport()->rect();
}

QString ListView::selectedText() const {
    QModelIndexList rows = selectedIndexes();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList lines;
    for (const QModelIndex& row : rows)
        lines.append(row.data().toString());
    return lines.join('\n');
}

void ListView::copySelection() const {
    const QString text = selectedText();
    if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void ListView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model()->rowCount() > 0) return;
    const auto* lines = dynamic_cast<const ListModel*>(model());
    const bool isFiltered = lines != nullptr && lines->entryCount() > 0;
    paintPlaceHolder(*this, isFiltered ? QStringLiteral("Nothing matches") : placeHolder_);
}

void ListView::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    placeHeader();
}

void ListView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copySelection();
    else
        QListView::keyPressEvent(event);
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    if (!menuWanted) {
        QListView::contextMenuEvent(event);
        return;
    }
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QRect current = visualRect(currentIndex()).intersected(viewport()->rect());
    const QPoint below = viewport()->mapToGlobal(QPoint(8, std::max(current.bottom(), 8)));
    call(menuWanted, byKey ? below : event->globalPos());
}

void ListView::placeHeader() {
    if (!header_) return;
    const QRect rows = viewport()->geometry();
    const int height = headerHeight_ - HEADER_GAP;
    header_->setGeometry(rows.x(), rows.y() - headerHeight_, rows.width(), height);
}

} // namespace vlWinUi
