#pragma once
#include <vlWinUi/GridLayout.h>

#include <vector>

namespace vlWinUi {

/** What the person does to the border behind one track of a grid. The tracks' present sizes are in
 * pixels. */
struct TrackDrag {
    std::vector<GridLayout::Track> tracks;
    std::vector<double> sizes;
    std::size_t before = 0;   ///< the track in front of the border; there is one behind it
    double minimumBefore = 0; ///< pixels
    double minimumBehind = 0; ///< pixels

    /// The tracks with the border so many pixels further on; unchanged where there is no room.
    std::vector<GridLayout::Track> moved(double pixels) const;
    /// Both neighbours without a fixed size, with half of their room each.
    std::vector<GridLayout::Track> halved() const;

private:
    std::vector<GridLayout::Track> resized(std::vector<GridLayout::Track> result,
                                           double sizeBefore) const;
};

} // namespace vlWinUi
