#include "Polygon.h"

#include <cmath>

namespace vlKestrion {

namespace {

/// Positive where c lies to the left of the line from a to b.
float side(const Float2& a, const Float2& b, const Float2& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

void append(std::vector<ObjCorner>& triangles,
            const ObjCorner& a,
            const ObjCorner& b,
            const ObjCorner& c) {
    triangles.push_back(a);
    triangles.push_back(b);
    triangles.push_back(c);
}

void appendFan(std::span<const ObjCorner> polygon, std::vector<ObjCorner>& triangles) {
    for (std::size_t corner = 2; corner < polygon.size(); ++corner)
        append(triangles, polygon[0], polygon[corner - 1], polygon[corner]);
}

} // namespace

void PolygonCutter::cut(std::span<const ObjCorner> polygon, std::vector<ObjCorner>& triangles) {
    if (polygon.size() == 4) return cutQuad(polygon, triangles);
    allowedSteps_ += stepsPerCorner * polygon.size();
    const bool convex = flatten(polygon);
    if (convex || polygon.size() > maxConcaveCorners || steps_ > allowedSteps_)
        return appendFan(polygon, triangles);
    clipEars(polygon, triangles);
}

void PolygonCutter::cutQuad(std::span<const ObjCorner> quad,
                            std::vector<ObjCorner>& triangles) const {
    const Float3& a = at(quad[0]);
    const Float3& b = at(quad[1]);
    const Float3& c = at(quad[2]);
    const Float3& d = at(quad[3]);
    // A diagonal is inside where the two triangles beside it face the same way.
    const float alongAc = dot(cross(b - a, c - a), cross(c - a, d - a));
    const float alongBd = dot(cross(b - a, d - a), cross(c - b, d - b));
    const bool acIsShorter = dot(c - a, c - a) <= dot(d - b, d - b);
    const bool useAc = alongBd <= 0 || (alongAc > 0 && acIsShorter);
    if (useAc) {
        append(triangles, quad[0], quad[1], quad[2]);
        append(triangles, quad[0], quad[2], quad[3]);
    } else {
        append(triangles, quad[0], quad[1], quad[3]);
        append(triangles, quad[1], quad[2], quad[3]);
    }
}

/// Lays the polygon counter-clockwise into a plane along the axes. True where it is convex.
bool PolygonCutter::flatten(std::span<const ObjCorner> polygon) {
    Float3 normal;
    for (std::size_t corner = 0; corner < polygon.size(); ++corner) {
        const Float3& a = at(polygon[corner]);
        const Float3& b = at(polygon[(corner + 1) % polygon.size()]);
        normal = normal + Float3{(a.y - b.y) * (a.z + b.z),
                                 (a.z - b.z) * (a.x + b.x),
                                 (a.x - b.x) * (a.y + b.y)};
    }
    const float x = std::fabs(normal.x);
    const float y = std::fabs(normal.y);
    const float z = std::fabs(normal.z);
    flat_.clear();
    for (const ObjCorner& corner : polygon) {
        const Float3& point = at(corner);
        if (x >= y && x >= z) {
            flat_.push_back({normal.x > 0 ? point.y : -point.y, point.z});
        } else if (y >= z) {
            flat_.push_back({normal.y > 0 ? point.z : -point.z, point.x});
        } else {
            flat_.push_back({normal.z > 0 ? point.x : -point.x, point.y});
        }
    }
    const std::size_t count = flat_.size();
    // A star turns left at every corner too, but goes round more than once.
    std::size_t turnsInX = 0;
    float lastStep = 0;
    for (std::size_t corner = 0; corner < count; ++corner) {
        const Float2& a = flat_[corner];
        const Float2& b = flat_[(corner + 1) % count];
        if (side(a, b, flat_[(corner + 2) % count]) < 0) return false;
        const float step = b.x - a.x;
        if (step * lastStep < 0) ++turnsInX;
        if (step != 0) lastStep = step;
    }
    return turnsInX <= 2;
}

bool PolygonCutter::isEar(std::size_t before, std::size_t ear, std::size_t after) {
    ++steps_;
    const Float2& a = flat_[before];
    const Float2& b = flat_[ear];
    const Float2& c = flat_[after];
    if (side(a, b, c) <= 0) return false;
    for (std::size_t other = next_[after]; other != before; other = next_[other]) {
        ++steps_;
        const Float2& point = flat_[other];
        if (side(a, b, point) >= 0 && side(b, c, point) >= 0 && side(c, a, point) >= 0) {
            const bool atCorner = (point.x == a.x && point.y == a.y) ||
                                  (point.x == b.x && point.y == b.y) ||
                                  (point.x == c.x && point.y == c.y);
            if (!atCorner) return false;
        }
    }
    return true;
}

void PolygonCutter::clipEars(std::span<const ObjCorner> polygon,
                             std::vector<ObjCorner>& triangles) {
    const std::size_t count = polygon.size();
    next_.resize(count);
    previous_.resize(count);
    for (std::size_t corner = 0; corner < count; ++corner) {
        next_[corner] = (corner + 1) % count;
        previous_[corner] = (corner + count - 1) % count;
    }
    std::size_t left = count;
    std::size_t tried = 0;
    std::size_t ear = 0;
    while (left > 3) {
        // A polygon that crosses itself may have no ear: then any corner will do.
        if (tried < left && !isEar(previous_[ear], ear, next_[ear])) {
            ear = next_[ear];
            ++tried;
            continue;
        }
        append(triangles, polygon[previous_[ear]], polygon[ear], polygon[next_[ear]]);
        next_[previous_[ear]] = next_[ear];
        previous_[next_[ear]] = previous_[ear];
        ear = next_[next_[ear]];
        --left;
        tried = 0;
    }
    append(triangles, polygon[previous_[ear]], polygon[ear], polygon[next_[ear]]);
}

} // namespace vlKestrion
