#pragma once
#include "SplitHandle.h"
#include "TrackDrag.h"
#include "TrackSizes.h"

#include <vlWinUi/GridLayout.h>

#include <QLayout>
#include <QPointer>

#include <memory>
#include <vector>

namespace vlWinUi {

/** Lays widgets out as a GridLayout says. */
class CellLayout final : public QLayout {
public:
    explicit CellLayout(QWidget* parent);
    ~CellLayout() override;

    /// In place of all that it held; what is not placed any more leaves the view.
    void show(const GridLayout& grid);
    /// True when it was placed here.
    bool take(QWidget* widget);

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(cells_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    void setGeometry(const QRect& area) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }

private:
    struct Cell {
        std::unique_ptr<QLayoutItem> item;
        GridLayout::Placement placement;
    };

    /// A border that can be dragged, as far as nothing spans over it.
    struct Border {
        QPointer<SplitHandle> handle;
        bool ofColumn = false;
        unsigned before = 0; ///< the column or row in front of it
        unsigned first = 0;  ///< of the tracks along it
        unsigned end = 0;
    };

    TrackSizes columns() const;
    TrackSizes rows() const;
    QSize border(const Cell& cell) const;

    void dropBorders();
    void makeBorders();
    void makeBorder(bool ofColumn, unsigned before, unsigned first, unsigned end);
    bool isSpanned(bool ofColumn, unsigned before, unsigned across) const;
    void placeBorders(const QRect& area, const std::vector<int>& x, const std::vector<int>& y);
    void startDrag(const Border& border);
    /// Of what is in this column or row alone, pixels.
    double minimumOf(bool ofColumn, unsigned track) const;
    /// Also in the layout that the component holds.
    void apply(bool ofColumn, const std::vector<GridLayout::Track>& tracks);
    GridLayout* heldLayout() const;
    void tellDragged();

    GridLayout grid_{1, 1};
    std::vector<Cell> cells_;
    std::vector<Border> borders_;
    TrackDrag drag_;
};

} // namespace vlWinUi
