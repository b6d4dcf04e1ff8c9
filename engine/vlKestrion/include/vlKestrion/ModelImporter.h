#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <vector>

namespace vlKestrion {

/** What an import added to the project. */
struct ImportReport {
    std::uint32_t meshes = 0;
    std::uint32_t materials = 0;
    std::uint32_t textures = 0;
    std::uint64_t triangles = 0;
    std::vector<vlMemory::String> warnings; ///< what was missing and how it was made up for
};

/** Brings a model (Wavefront OBJ with MTL; PNG and JPEG textures) into a project: writes
 * declarations and mesh data, copies textures under the project's folder, and adds a node with an
 * entity for each object and material. Missing normals are computed. Writes everything or nothing;
 * needs no device. A project that does not exist yet is made. */
vlCommon::Result<ImportReport> importModel(vlMemory::StringView model,
                                           vlMemory::StringView project);

} // namespace vlKestrion
