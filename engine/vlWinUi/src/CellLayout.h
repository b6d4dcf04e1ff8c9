#pragma once
#include "PlacedLayout.h"
#include "SplitHandle.h"
#include "TrackDrag.h"
#include "TrackSizes.h"

#include <vlWinUi/GridLayout.h>

#include <QPointer>

#include <vector>

namespace vlWinUi {

/** Lays widgets out as a GridLayout says. */
class CellLayout final : public PlacedLayout<GridLayout::Placement> {
public:
    using PlacedLayout::PlacedLayout;
    ~CellLayout() override;

    /// In place of all that it held; what is not placed any more leaves the view.
    void show(const GridLayout& grid);

    void setGeometry(const QRect& area) override;
    QSize minimumSize() const override;

private:
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
    std::vector<Border> borders_;
    TrackDrag drag_;
};

} // namespace vlWinUi
