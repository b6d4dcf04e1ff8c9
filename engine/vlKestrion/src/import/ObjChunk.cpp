#include "ObjChunk.h"

#include "Polygon.h"
#include "TextScan.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vlKestrion {

namespace {

enum class Statement : std::uint8_t { position, texcoord, normal, face, other };

Statement statementOf(vlMemory::StringView line) {
    const auto blankAt = [&](std::size_t place) {
        return line.size() > place && isBlank(line[place]);
    };
    if (line.empty()) return Statement::other;
    if (line[0] == 'f' && blankAt(1)) return Statement::face;
    if (line[0] != 'v') return Statement::other;
    if (blankAt(1)) return Statement::position;
    if (!blankAt(2)) return Statement::other;
    if (line[1] == 't') return Statement::texcoord;
    return line[1] == 'n' ? Statement::normal : Statement::other;
}

/// Reads up to `wanted` numbers; those behind are not looked at. Not-a-number for what is no
/// number.
std::size_t readFloats(vlMemory::StringView text, float* values, std::size_t wanted) {
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t count = 0;
    while (count < wanted) {
        while (at < end && isBlank(*at))
            ++at;
        if (at >= end) return count;
        const auto [stop, error] = std::from_chars(at, end, values[count]);
        if (error == std::errc() && (stop == end || isBlank(*stop))) {
            at = stop;
        } else {
            vlMemory::StringView rest(at, static_cast<std::size_t>(end - at));
            const vlMemory::StringView word = takeWord(rest);
            values[count] = toFloat(word).value_or(std::numeric_limits<float>::quiet_NaN());
            at = word.data() + word.size();
        }
        ++count;
    }
    return count;
}

class ChunkParser {
public:
    ChunkParser(ObjChunk& chunk, const ObjCounts& total, ObjFile& file)
        : chunk_(chunk), total_(total), file_(file), lines_(chunk.text),
          positions_(chunk.before.positions), texcoords_(chunk.before.texcoords),
          normals_(chunk.before.normals) {}

    void run() {
        // A guess that is rarely too small: other vectors grow by copying what is there.
        const std::size_t own = chunk_.own.positions;
        chunk_.corners.reserve(own * 6);
        chunk_.faceEnds.reserve(own * 2);
        vlMemory::StringView line;
        while (lines_.next(line)) {
            switch (statementOf(line)) {
            case Statement::position:
                position(line.substr(2));
                break;
            case Statement::texcoord:
                texcoord(line.substr(3));
                break;
            case Statement::normal:
                normal(line.substr(3));
                break;
            case Statement::face:
                face(line.substr(2));
                break;
            case Statement::other:
                other(line);
                break;
            }
        }
    }

private:
    void fault(ObjFaultKind kind) {
        ObjFault& entry = chunk_.faults[static_cast<std::size_t>(kind)];
        if (entry.count++ == 0) entry.firstLine = chunk_.before.lines + lines_.lineNumber();
    }

    void position(vlMemory::StringView text) {
        Float3 value;
        float values[3] = {};
        const bool whole = readFloats(text, values, 3) == 3;
        value = {values[0], values[1], values[2]};
        if (!whole) value.x = std::numeric_limits<float>::quiet_NaN();
        if (!isFinite(value)) fault(ObjFaultKind::badNumber);
        file_.positions[positions_++] = value;
    }

    void texcoord(vlMemory::StringView text) {
        float values[2] = {};
        readFloats(text, values, 2);
        if (!std::isfinite(values[0]) || !std::isfinite(values[1])) {
            fault(ObjFaultKind::badNumber);
            values[0] = values[1] = 0;
        }
        file_.texcoords[texcoords_++] = {values[0], values[1]};
    }

    void normal(vlMemory::StringView text) {
        float values[3] = {};
        const bool whole = readFloats(text, values, 3) == 3;
        Float3 value{values[0], values[1], values[2]};
        if (!whole || !isFinite(value)) {
            fault(ObjFaultKind::badNumber);
            value = {};
        }
        // The zero vector stands for a normal that has to be computed.
        file_.normals[normals_++] = normalised(value, {});
    }

    /// Reads "12", "12/3", "12//4" or "12/3/4"; false where it is none of them.
    bool corner(const char*& at, const char* end, std::int64_t (&indices)[3]) const {
        for (int part = 0; part < 3; ++part) {
            if (at < end && *at == '+') ++at;
            const auto [stop, error] = std::from_chars(at, end, indices[part]);
            if (error == std::errc()) {
                if (indices[part] == 0) return false;
                at = stop;
            } else if (part != 1 || at >= end || *at != '/') {
                return false;
            }
            if (at >= end || isBlank(*at)) return true;
            if (*at != '/' || part == 2) return false;
            ++at;
            // "12/" and "12/3/" are written too.
            if (at >= end || isBlank(*at)) return true;
        }
        return true;
    }

    /// From 0; -1 where there is none, nothing where it points outside the file.
    static std::optional<std::int32_t>
    resolve(std::int64_t index, std::size_t sofar, std::size_t total) {
        if (index == 0) return -1;
        const std::int64_t place = index > 0 ? index - 1 : static_cast<std::int64_t>(sofar) + index;
        if (place < 0 || place >= static_cast<std::int64_t>(total)) return std::nullopt;
        return static_cast<std::int32_t>(place);
    }

    void face(vlMemory::StringView text) {
        const std::size_t first = chunk_.corners.size();
        if (readCorners(text)) {
            const std::size_t count = chunk_.corners.size() - first;
            if (count >= 3) {
                chunk_.onlyTriangles = chunk_.onlyTriangles && count == 3;
                chunk_.faceEnds.push_back(static_cast<std::uint32_t>(chunk_.corners.size()));
                return;
            }
            fault(ObjFaultKind::badFace);
        }
        chunk_.corners.resize(first);
    }

    bool readCorners(vlMemory::StringView text) {
        const char* at = text.data();
        const char* const end = at + text.size();
        while (true) {
            while (at < end && isBlank(*at))
                ++at;
            if (at >= end || *at == '#') return true;
            std::int64_t indices[3] = {};
            if (!corner(at, end, indices)) {
                fault(ObjFaultKind::badFace);
                return false;
            }
            const auto position = resolve(indices[0], positions_, total_.positions);
            const auto texcoord = resolve(indices[1], texcoords_, total_.texcoords);
            const auto normal = resolve(indices[2], normals_, total_.normals);
            if (!position || !texcoord || !normal) fault(ObjFaultKind::outOfRange);
            if (!position) return false;
            chunk_.corners.push_back({*position, texcoord.value_or(-1), normal.value_or(-1)});
        }
    }

    void other(vlMemory::StringView line) {
        vlMemory::StringView rest = line;
        const vlMemory::StringView word = takeWord(rest);
        if (word == "o" || word == "g") return event(ObjEvent::Kind::object, trimmed(rest));
        if (word == "usemtl") return event(ObjEvent::Kind::material, trimmed(rest));
        if (word == "mtllib") chunk_.libraries.push_back(trimmed(rest));
        if (word != "s") return;
        const std::int64_t group = toInteger(takeWord(rest)).value_or(0);
        const bool valid = group > 0 && group <= std::numeric_limits<std::uint32_t>::max();
        event(ObjEvent::Kind::smoothing, {}, valid ? static_cast<std::uint32_t>(group) : 0);
    }

    void event(ObjEvent::Kind kind, vlMemory::StringView text, std::uint32_t number = 0) {
        const auto place = static_cast<std::uint32_t>(chunk_.faceEnds.size());
        chunk_.events.push_back({place, kind, number, text});
    }

    ObjChunk& chunk_;
    const ObjCounts& total_;
    ObjFile& file_;
    LineScan lines_;
    // Of the whole file up to here: what negative indices count back from.
    std::size_t positions_;
    std::size_t texcoords_;
    std::size_t normals_;
};

/// Whether three corners make a triangle; counts the fault otherwise.
bool isSound(ObjChunk& chunk, std::span<const Float3> positions, const ObjCorner* corners) {
    const Float3& a = positions[static_cast<std::size_t>(corners[0].position)];
    const Float3& b = positions[static_cast<std::size_t>(corners[1].position)];
    const Float3& c = positions[static_cast<std::size_t>(corners[2].position)];
    // Not squared: that would lose very large and very small models.
    const Float3 across = cross(b - a, c - a);
    const float area = std::fabs(across.x) + std::fabs(across.y) + std::fabs(across.z);
    if (area > 0 && std::isfinite(area)) return true;
    const bool flat = isFinite(a) && isFinite(b) && isFinite(c) && std::isfinite(area);
    const auto kind = flat ? ObjFaultKind::degenerate : ObjFaultKind::notFinite;
    ++chunk.faults[static_cast<std::size_t>(kind)].count;
    return false;
}

/// Turns the events' faces into triangles while faces are gone through in order.
class EventPlaces {
public:
    explicit EventPlaces(std::vector<ObjEvent>& events) : at_(events.begin()), end_(events.end()) {}

    void reached(std::size_t face, std::size_t corners) {
        for (; at_ != end_ && at_->triangle == face; ++at_)
            at_->triangle = static_cast<std::uint32_t>(corners / 3);
    }

private:
    std::vector<ObjEvent>::iterator at_;
    std::vector<ObjEvent>::iterator end_;
};

/// In place.
void keepSoundTriangles(ObjChunk& chunk, std::span<const Float3> positions) {
    EventPlaces events(chunk.events);
    std::vector<ObjCorner>& corners = chunk.corners;
    std::size_t kept = 0;
    for (std::size_t from = 0; from < corners.size(); from += 3) {
        events.reached(from / 3, kept);
        if (!isSound(chunk, positions, &corners[from])) continue;
        for (std::size_t corner = 0; corner < 3; ++corner)
            corners[kept + corner] = corners[from + corner];
        kept += 3;
    }
    events.reached(corners.size() / 3, kept);
    corners.resize(kept);
}

void cutPolygons(ObjChunk& chunk, std::span<const Float3> positions) {
    EventPlaces events(chunk.events);
    PolygonCutter cutter(positions);
    std::vector<ObjCorner> triangles;
    triangles.reserve(chunk.corners.size() * 3 / 2);
    std::vector<ObjCorner> cut;
    std::size_t from = 0;
    for (std::size_t face = 0; face < chunk.faceEnds.size(); ++face) {
        events.reached(face, triangles.size());
        const std::size_t to = chunk.faceEnds[face];
        const auto polygon = std::span<const ObjCorner>(chunk.corners).subspan(from, to - from);
        from = to;
        cut.assign(polygon.begin(), polygon.end());
        if (polygon.size() > 3) {
            cut.clear();
            cutter.cut(polygon, cut);
        }
        for (std::size_t corner = 0; corner + 2 < cut.size(); corner += 3) {
            if (!isSound(chunk, positions, &cut[corner])) continue;
            for (std::size_t place = 0; place < 3; ++place)
                triangles.push_back(cut[corner + place]);
        }
    }
    events.reached(chunk.faceEnds.size(), triangles.size());
    chunk.corners = std::move(triangles);
}

} // namespace

vlMemory::StringView objFaultText(ObjFaultKind kind) {
    switch (kind) {
    case ObjFaultKind::badNumber:
        return "vertices without proper numbers";
    case ObjFaultKind::badFace:
        return "faces that make no sense, left out";
    case ObjFaultKind::outOfRange:
        return "indices that point outside the file";
    case ObjFaultKind::degenerate:
        return "triangles without an area, left out";
    case ObjFaultKind::notFinite:
        return "triangles at places that are no finite numbers, left out";
    }
    return {};
}

ObjCounts countStatements(vlMemory::StringView text) {
    ObjCounts counts;
    LineScan lines(text);
    vlMemory::StringView line;
    while (lines.next(line)) {
        const Statement statement = statementOf(line);
        if (statement == Statement::position) ++counts.positions;
        if (statement == Statement::texcoord) ++counts.texcoords;
        if (statement == Statement::normal) ++counts.normals;
    }
    counts.lines = lines.endLineNumber();
    return counts;
}

void parseChunk(ObjChunk& chunk, const ObjCounts& total, ObjFile& file) {
    ChunkParser(chunk, total, file).run();
}

void cutIntoTriangles(ObjChunk& chunk, std::span<const Float3> positions) {
    if (chunk.onlyTriangles) {
        keepSoundTriangles(chunk, positions);
    } else {
        cutPolygons(chunk, positions);
    }
    chunk.faceEnds = {};
}

} // namespace vlKestrion
