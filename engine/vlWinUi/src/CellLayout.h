#pragma once
#include "PlacedLayout.h"
#include "TrackSizes.h"

#include <vlWinUi/GridLayout.h>

namespace vlWinUi {

/** Lays widgets out as a GridLayout says. */
class CellLayout final : public PlacedLayout<GridLayout::Placement> {
public:
    using PlacedLayout::PlacedLayout;

    /// In place of all that it held; what is not placed any more leaves the view.
    void show(const GridLayout& grid);

    void setGeometry(const QRect& area) override;
    QSize minimumSize() const override;

private:
    TrackSizes columns() const;
    TrackSizes rows() const;
    QSize border(const Cell& cell) const;

    GridLayout grid_{1, 1};
};

} // namespace vlWinUi
