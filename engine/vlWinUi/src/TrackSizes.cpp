#include "TrackSizes.h"

#include <algorithm>
#include <cmath>

namespace vlWinUi {

TrackSizes::TrackSizes(std::span<const GridLayout::Track> tracks, std::vector<Need> needs) {
    for (const auto& track : tracks) {
        tracks_.push_back({
                .fixed = track.fixedSize.has_value(),
                .size = track.fixedSize.value_or(0.0F),
                .weight = track.weight,
        });
    }
    // Narrow needs first: a wide one then asks only for what they leave open.
    std::ranges::stable_sort(needs, {}, &Need::count);
    for (const Need& need : needs) {
        const std::span spanned = std::span(tracks_).subspan(need.first, need.count);
        const std::vector<double> shares = share(spanned, need.pixels);
        for (std::size_t i = 0; i < spanned.size(); ++i)
            if (!spanned[i].fixed) spanned[i].minimum = std::max(spanned[i].minimum, shares[i]);
    }
}

double TrackSizes::minimum() const {
    double sum = 0;
    for (const Track& track : tracks_)
        sum += track.fixed ? track.size : track.minimum;
    return sum;
}

std::vector<double> TrackSizes::share(std::span<const Track> tracks, double total) {
    std::vector<double> sizes(tracks.size());
    std::vector<bool> settled(tracks.size());
    double rest = total;
    double weights = 0;
    // All of no weight are as good as equal ones: their room would be nobody's otherwise.
    const bool equal = std::ranges::none_of(
            tracks, [](const Track& track) { return !track.fixed && track.weight > 0; });
    const auto weight = [&](std::size_t i) { return equal ? 1.0 : tracks[i].weight; };
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        settled[i] = tracks[i].fixed;
        sizes[i] = tracks[i].fixed ? tracks[i].size : tracks[i].minimum;
        if (settled[i])
            rest -= sizes[i];
        else
            weights += weight(i);
    }
    // A track whose share is too small takes its minimum, which leaves less to the others: repeat.
    for (bool changed = true; changed;) {
        changed = false;
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            if (settled[i] || rest * weight(i) >= tracks[i].minimum * weights) continue;
            settled[i] = changed = true;
            rest -= tracks[i].minimum;
            weights -= weight(i);
        }
    }
    for (std::size_t i = 0; i < tracks.size(); ++i)
        if (!settled[i] && weights > 0) sizes[i] = std::max(0.0, rest * weight(i) / weights);
    return sizes;
}

std::vector<int> TrackSizes::edges(int total) const {
    std::vector<int> edges{0};
    double end = 0;
    for (const double size : share(tracks_, total)) {
        end += size;
        edges.push_back(static_cast<int>(std::lround(end)));
    }
    return edges;
}

} // namespace vlWinUi
