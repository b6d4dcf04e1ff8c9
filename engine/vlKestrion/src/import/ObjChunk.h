#pragma once
#include "ObjFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace vlKestrion {

/** How many statements of the kinds that others refer to by number. */
struct ObjCounts {
    std::size_t positions = 0;
    std::size_t texcoords = 0;
    std::size_t normals = 0;
    std::uint64_t lines = 0;

    ObjCounts& operator+=(const ObjCounts& other) {
        positions += other.positions;
        texcoords += other.texcoords;
        normals += other.normals;
        lines += other.lines;
        return *this;
    }
};

/** From this triangle on something else holds. */
struct ObjEvent {
    enum class Kind : std::uint8_t { object, material, smoothing };

    std::uint32_t triangle = 0; ///< a face's number until the polygons are cut
    Kind kind = Kind::object;
    std::uint32_t number = 0;  ///< of a smoothing group
    vlMemory::StringView text; ///< in the file's text
};

enum class ObjFaultKind : std::size_t { badNumber, badFace, outOfRange, degenerate, notFinite };
inline constexpr std::size_t objFaultCount = 5;
vlMemory::StringView objFaultText(ObjFaultKind kind);

struct ObjFault {
    std::uint64_t count = 0;
    std::uint64_t firstLine = 0; ///< of the file; 0 where it is not known
};

/** A part of the text that one thread reads. */
struct ObjChunk {
    vlMemory::StringView text;
    ObjCounts own;
    ObjCounts before; ///< in the text before this part
    std::vector<ObjCorner> corners;
    std::vector<std::uint32_t> faceEnds; ///< behind each face's last corner; empty once cut
    bool onlyTriangles = true;
    std::vector<ObjEvent> events;
    std::vector<vlMemory::StringView> libraries;
    std::array<ObjFault, objFaultCount> faults;
};

ObjCounts countStatements(vlMemory::StringView text);
/// Fills the chunk and its part of the file's vertices, which have their final sizes (total).
void parseChunk(ObjChunk& chunk, const ObjCounts& total, ObjFile& file);
/// Leaves triangles with an area and finite positions only. After every chunk was parsed.
void cutIntoTriangles(ObjChunk& chunk, std::span<const Float3> positions);

} // namespace vlKestrion
