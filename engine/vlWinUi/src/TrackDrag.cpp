#include "TrackDrag.h"

#include <algorithm>

namespace vlWinUi {

std::vector<GridLayout::Track> TrackDrag::moved(double pixels) const {
    const double most = sizes[before] + sizes[before + 1] - minimumBehind;
    if (minimumBefore > most || pixels == 0) return tracks;
    return resized(tracks, std::clamp(sizes[before] + pixels, minimumBefore, most));
}

std::vector<GridLayout::Track> TrackDrag::halved() const {
    std::vector<GridLayout::Track> result = tracks;
    for (const std::size_t index : {before, before + 1})
        result[index].fixedSize.reset();
    return resized(std::move(result), (sizes[before] + sizes[before + 1]) / 2);
}

/// All weights follow from the sizes anew: one whose track was held at its minimum would otherwise
/// make others jump.
std::vector<GridLayout::Track> TrackDrag::resized(std::vector<GridLayout::Track> result,
                                                  double sizeBefore) const {
    std::vector<double> now = sizes;
    now[before] = sizeBefore;
    now[before + 1] = sizes[before] + sizes[before + 1] - sizeBefore;
    double weights = 0;
    double room = 0;
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (result[i].fixedSize) continue;
        weights += result[i].weight;
        room += now[i];
    }
    if (weights <= 0) weights = 1;
    for (std::size_t i = 0; i < result.size(); ++i) {
        if (result[i].fixedSize)
            result[i].fixedSize = static_cast<float>(now[i]);
        else if (room > 0)
            result[i].weight = static_cast<float>(now[i] / room * weights);
    }
    return result;
}

} // namespace vlWinUi
