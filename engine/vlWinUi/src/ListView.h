#pragma once
#include <QListView>
#include <QPointer>

#include <functional>

namespace vlWinUi {

class LineDelegate;

/** The view of a ListBox: rows of one height, each a line that ends in an ellipsis where it does
 * not fit. Can stay at its end while lines come, and carry a widget above the rows. */
class ListView final : public QListView {
public:
    ListView();

    void setPlaceHolder(const QString& text);
    /// Above the rows and inside the frame; becomes this one's child.
    void setHeader(QWidget& header, int height);
    void setCompact(bool compact);
    void setFollowEnd(bool follow);
    /// True while new lines at the end come into view by themselves.
    bool isFollowing() const { return follow_ && atEnd_; }
    /// Runs a change of the rows, after which the topmost line is where it was.
    void keepPlace(const std::function<void()>& change);

    /// Makes it the current row, with what is said about the selection, and brings it into view: at
    /// the loop's next turn while rows have come or gone, since placing all rows anew for each of
    /// many changes would take long.
    void goTo(const QModelIndex& row, QItemSelectionModel::SelectionFlags selection);

    void doItemsLayout() override;

    /// Of the selected rows, in their order, a line each.
    QString selectedText() const;
    void copySelection() const;

    QSize minimumSizeHint() const override { return {40, 40 + headerHeight_}; }
    QSize sizeHint() const override { return {160, 120}; }

    /// Where the person asked for a menu, in screen pixels.
    std::function<void(QPoint)> menuWanted;

protected:
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void placeHeader();
    void revealCurrent();

    LineDelegate& lines_;
    QString placeHolder_;
    QPointer<QWidget> header_;
    int headerHeight_ = 0;
    bool layoutDue_ = false;
    bool revealQueued_ = false;
    bool follow_ = false;
    bool atEnd_ = true;
};

} // namespace vlWinUi
