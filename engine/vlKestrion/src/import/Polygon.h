#pragma once
#include "ObjFile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vlKestrion {

/** Cuts polygons into triangles and keeps its memory from one to the next. Convex or not, flat or
 * nearly so. The winding stays. */
class PolygonCutter {
public:
    /// What is not convex and has more corners is cut into a fan instead.
    static constexpr std::size_t maxConcaveCorners = 1024;
    /// Looks at a corner in search of good cuts, once and for each corner there is. Where they are
    /// used up, polygons of all kinds are cut into fans: no file takes forever.
    static constexpr std::uint64_t freeSteps = std::uint64_t{1} << 28U;
    static constexpr std::uint64_t stepsPerCorner = 64;

    explicit PolygonCutter(std::span<const Float3> positions) : positions_(positions) {}

    /// Appends three corners a triangle. Four corners and more.
    void cut(std::span<const ObjCorner> polygon, std::vector<ObjCorner>& triangles);

private:
    void cutQuad(std::span<const ObjCorner> quad, std::vector<ObjCorner>& triangles) const;
    void clipEars(std::span<const ObjCorner> polygon, std::vector<ObjCorner>& triangles);
    bool flatten(std::span<const ObjCorner> polygon);
    bool isEar(std::size_t before, std::size_t at, std::size_t after);
    const Float3& at(const ObjCorner& corner) const {
        return positions_[static_cast<std::size_t>(corner.position)];
    }

    std::span<const Float3> positions_;
    std::vector<Float2> flat_;
    std::vector<std::size_t> next_;
    std::vector<std::size_t> previous_;
    std::uint64_t steps_ = 0;
    std::uint64_t allowedSteps_ = freeSteps;
};

} // namespace vlKestrion
