#pragma once
#include "PlacedLayout.h"

#include <vlWinUi/RelativeLayout.h>

#include <functional>

namespace vlWinUi {

/// The placements with every component behind the one that it stands beside. Where that cannot be,
/// because the other one is not among them (`isThere` false) or follows this one in turn, it is
/// reported and placed from the parent's corner.
std::vector<RelativeLayout::Placement>
inOrder(const std::vector<RelativeLayout::Placement>& placements,
        const std::function<void(const RelativeLayout::Placement&, bool isThere)>& report);

/** Lays widgets out as a RelativeLayout says. */
class PixelLayout final : public PlacedLayout<RelativeLayout::Placement> {
public:
    using PlacedLayout::PlacedLayout;

    /// In place of all that it held; what is not placed any more leaves the view.
    void show(const RelativeLayout& layout);

    void setGeometry(const QRect& area) override;
    QSize minimumSize() const override;

private:
    /// From the parent's corner, in the order of the cells.
    std::vector<QRect> places() const;
};

} // namespace vlWinUi
