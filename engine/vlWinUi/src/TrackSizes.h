#pragma once
#include <vlWinUi/GridLayout.h>

#include <span>
#include <vector>

namespace vlWinUi {

/** The arithmetic of a grid along one axis. Fixed tracks have their size; the others share the rest
 * by weight, except that none gets less than its minimum. */
class TrackSizes {
public:
    /// What something that spans tracks `first` .. `first + count - 1` needs, in pixels.
    struct Need {
        unsigned first = 0;
        unsigned count = 1;
        double pixels = 0;
    };

    TrackSizes(std::span<const GridLayout::Track> tracks, std::vector<Need> needs);

    /// Below this something does not fit.
    double minimum() const;
    /// The edges of all tracks, one more than there are tracks, in whole pixels from 0. Their end
    /// is `total` wherever a track without a fixed size exists and the minimum allows it.
    std::vector<int> edges(int total) const;

private:
    struct Track {
        bool fixed = false;
        double size = 0;    ///< of a fixed track
        double weight = 1;  ///< of the others
        double minimum = 0; ///< of the others
    };

    static std::vector<double> share(std::span<const Track> tracks, double total);

    std::vector<Track> tracks_;
};

} // namespace vlWinUi
