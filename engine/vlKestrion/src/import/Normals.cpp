#include "Normals.h"

#include "Parallel.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <unordered_map>

namespace vlKestrion {

namespace {

constexpr float creaseCosine = 0.25881905F;   ///< of 75 degrees
constexpr std::size_t maxCreasedCorners = 64; ///< at a position where more meet, all are smoothed
constexpr std::int32_t computed = -2;         ///< and below: a piece's own number of a new normal

struct TriangleNormal {
    Float3 direction; ///< of length 1
    float area = 0;
};

class NormalMaker {
public:
    NormalMaker(ObjFile& file, std::size_t threads)
        : file_(file), threads_(threads), pieceSize_(file.positions.size() / (threads * 4) + 1),
          pieces_((file.positions.size() + pieceSize_ - 1) / pieceSize_), made_(pieces_) {}

    void run() {
        gatherSmoothing();
        gatherTriangles();
        gatherMeetings();
        inParallel(pieces_, threads_, [&](std::size_t piece, std::size_t) { makePiece(piece); });
        settle();
    }

private:
    void gatherSmoothing() {
        if (!file_.hasSmoothingGroups) return;
        smoothing_.resize(file_.triangleCount());
        for (const ObjRun& run : file_.runs)
            std::fill_n(smoothing_.begin() + run.firstTriangle, run.triangleCount, run.smoothing);
    }

    void gatherTriangles() {
        const std::size_t count = file_.triangleCount();
        triangles_.resize(count);
        const std::size_t step = count / threads_ + 1;
        inParallel((count + step - 1) / step, threads_, [&](std::size_t piece, std::size_t) {
            const std::size_t end = std::min(count, (piece + 1) * step);
            for (std::size_t triangle = piece * step; triangle < end; ++triangle) {
                const Float3& a = position(3 * triangle);
                const Float3 across =
                        cross(position(3 * triangle + 1) - a, position(3 * triangle + 2) - a);
                const Float3 direction = normalised(across, {0, 1, 0});
                triangles_[triangle] = {direction, dot(across, direction)};
            }
        });
    }

    /// Which corners lie at each position.
    void gatherMeetings() {
        first_.assign(file_.positions.size() + 1, 0);
        for (const ObjCorner& corner : file_.corners)
            ++first_[static_cast<std::size_t>(corner.position) + 1];
        for (std::size_t place = 1; place < first_.size(); ++place)
            first_[place] += first_[place - 1];
        meeting_.resize(file_.corners.size());
        std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
        for (std::size_t corner = 0; corner < file_.corners.size(); ++corner) {
            const auto place = static_cast<std::size_t>(file_.corners[corner].position);
            meeting_[next[place]++] = static_cast<std::uint32_t>(corner);
        }
    }

    void makePiece(std::size_t piece) {
        std::vector<Float3> shares;
        const std::size_t end = std::min(file_.positions.size(), (piece + 1) * pieceSize_);
        for (std::size_t place = piece * pieceSize_; place < end; ++place) {
            const auto corners = std::span<const std::uint32_t>(meeting_).subspan(
                    first_[place], first_[place + 1] - first_[place]);
            makeAt(corners, shares, made_[piece]);
        }
    }

    void makeAt(std::span<const std::uint32_t> corners,
                std::vector<Float3>& shares,
                std::vector<Float3>& made) {
        const auto missing = [&](std::uint32_t corner) { return file_.corners[corner].normal < 0; };
        if (std::none_of(corners.begin(), corners.end(), missing)) return;
        shares.clear();
        gatherShares(corners, shares);
        if (corners.size() > maxCreasedCorners) return makeCrowded(corners, shares, made);
        const auto firstMade = static_cast<std::ptrdiff_t>(made.size());
        for (const std::uint32_t corner : corners) {
            if (!missing(corner)) continue;
            const Float3 sum = sumFor(corner, corners, shares);
            const Float3 normal = normalised(sum, triangles_[corner / 3].direction);
            const auto known = std::find(made.begin() + firstMade, made.end(), normal);
            file_.corners[corner].normal =
                    computed - static_cast<std::int32_t>(known - made.begin());
            if (known == made.end()) made.push_back(normal);
        }
    }

    /// Where very many triangles meet: one sum a group, whatever the edges.
    void makeCrowded(std::span<const std::uint32_t> corners,
                     std::span<const Float3> shares,
                     std::vector<Float3>& made) {
        struct Group {
            Float3 sum;
            std::int32_t number = computed + 1;
        };
        std::unordered_map<std::uint32_t, Group> groups;
        for (std::size_t corner = 0; corner < corners.size(); ++corner) {
            Group& group = groups[groupOf(corners[corner] / 3)];
            group.sum = group.sum + shares[corner];
        }
        for (const std::uint32_t corner : corners) {
            std::int32_t& number = file_.corners[corner].normal;
            if (number >= 0) continue;
            const Float3& own = triangles_[corner / 3].direction;
            const std::uint32_t groupNumber = groupOf(corner / 3);
            Group& group = groups[groupNumber];
            const bool flat = file_.hasSmoothingGroups && groupNumber == 0;
            if (flat || group.number > computed) {
                group.number = computed - static_cast<std::int32_t>(made.size());
                made.push_back(flat ? own : normalised(group.sum, own));
            }
            number = group.number;
        }
    }

    std::uint32_t groupOf(std::size_t triangle) const {
        return smoothing_.empty() ? 0 : smoothing_[triangle];
    }

    void gatherShares(std::span<const std::uint32_t> corners, std::vector<Float3>& shares) const {
        for (const std::uint32_t corner : corners) {
            const TriangleNormal& triangle = triangles_[corner / 3];
            shares.push_back(triangle.direction * (triangle.area * angle(corner)));
        }
    }

    /// Between the sides that meet at the corner.
    float angle(std::size_t corner) const {
        const std::size_t start = corner - corner % 3;
        const Float3& at = position(corner);
        const Float3 a = normalised(position(start + (corner + 1) % 3) - at, {});
        const Float3 b = normalised(position(start + (corner + 2) % 3) - at, {});
        return std::acos(std::clamp(dot(a, b), -1.0F, 1.0F));
    }

    Float3 sumFor(std::size_t corner,
                  std::span<const std::uint32_t> corners,
                  std::span<const Float3> shares) const {
        const std::size_t triangle = corner / 3;
        const Float3& direction = triangles_[triangle].direction;
        const bool grouped = file_.hasSmoothingGroups;
        if (grouped && smoothing_[triangle] == 0) return direction;
        Float3 sum;
        for (std::size_t other = 0; other < corners.size(); ++other) {
            const std::size_t neighbour = corners[other] / 3;
            const bool together =
                    grouped ? smoothing_[neighbour] == smoothing_[triangle]
                            : dot(triangles_[neighbour].direction, direction) >= creaseCosine;
            if (together) sum = sum + shares[other];
        }
        return sum;
    }

    /// Puts the pieces' normals behind those of the file.
    void settle() {
        std::vector<std::int32_t> bases;
        for (const std::vector<Float3>& piece : made_) {
            bases.push_back(static_cast<std::int32_t>(file_.normals.size()));
            file_.normals.insert(file_.normals.end(), piece.begin(), piece.end());
        }
        for (ObjCorner& corner : file_.corners) {
            if (corner.normal > computed) continue;
            const std::size_t piece = static_cast<std::size_t>(corner.position) / pieceSize_;
            corner.normal = bases[piece] + (computed - corner.normal);
        }
    }

    const Float3& position(std::size_t corner) const {
        return file_.positions[static_cast<std::size_t>(file_.corners[corner].position)];
    }

    ObjFile& file_;
    std::size_t threads_;
    std::size_t pieceSize_; ///< positions
    std::size_t pieces_;
    std::vector<std::vector<Float3>> made_;
    std::vector<std::uint32_t> smoothing_; ///< of each triangle; empty where there are no groups
    std::vector<TriangleNormal> triangles_;
    std::vector<std::uint32_t> first_; ///< in meeting_, of each position
    std::vector<std::uint32_t> meeting_;
};

} // namespace

void computeMissingNormals(ObjFile& file, std::size_t threads) {
    bool missing = false;
    for (ObjCorner& corner : file.corners) {
        // The zero vector of a file is as good as none.
        if (corner.normal >= 0 && file.normals[static_cast<std::size_t>(corner.normal)] == Float3{})
            corner.normal = -1;
        missing = missing || corner.normal < 0;
    }
    if (missing) NormalMaker(file, std::max<std::size_t>(threads, 1)).run();
}

} // namespace vlKestrion
