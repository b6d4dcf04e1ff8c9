#pragma once
#include "Float.h"

#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <vector>

namespace vlKestrion {

/** One corner of a triangle: indices from 0, -1 for what it does not have. */
struct ObjCorner {
    std::int32_t position = -1;
    std::int32_t texcoord = -1;
    std::int32_t normal = -1;
};

/** Triangles, one after the other, that have everything in common. */
struct ObjRun {
    std::uint32_t firstTriangle = 0;
    std::uint32_t triangleCount = 0;
    std::uint32_t object = 0;    ///< index of its name
    std::uint32_t material = 0;  ///< index of its name
    std::uint32_t smoothing = 0; ///< group; 0 is none
};

/** What a Wavefront OBJ file says, as it says it: right-handed, polygons cut into triangles. Every
 * index is in range and every position that a triangle uses is finite. */
struct ObjFile {
    std::vector<Float3> positions;
    std::vector<Float2> texcoords;
    std::vector<Float3> normals;
    std::vector<ObjCorner> corners; ///< three a triangle
    std::vector<ObjRun> runs;
    std::vector<vlMemory::String> objects;   ///< the first is the nameless one
    std::vector<vlMemory::String> materials; ///< the first is the nameless one
    std::vector<vlMemory::String> libraries; ///< of materials, as the file names them
    bool hasSmoothingGroups = false;
    std::vector<vlMemory::String> warnings; ///< "file:line: what was left out"

    std::uint32_t triangleCount() const { return static_cast<std::uint32_t>(corners.size() / 3); }
};

/** Reads the text on several threads. Faces that make no sense are left out with a warning; fails
 * when no triangle is left, or the text is no OBJ at all. The name stands before each message. */
vlCommon::Result<ObjFile>
parseObj(vlMemory::StringView text, vlMemory::StringView name, std::size_t threads);

} // namespace vlKestrion
