#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/MeshData.h>

#include <cstddef>
#include <span>

namespace vlGraphics {

/** Mesh data as a file (".vlmb"): the vertices and indices as they lie in memory behind a short
 *  table, little-endian, so that reading is one read and one check. docs/formats.md has the layout.
 *  Any thread. */

/// The path is the process's own. Whatever a broken file claims is checked against its size before
/// memory is taken; the error is one line that starts with the path.
vlCommon::Result<MeshData> readMeshFile(vlMemory::StringView path);
/// The same from bytes in memory.
vlCommon::Result<MeshData> readMeshFile(std::span<const std::byte> bytes,
                                        vlMemory::StringView nameForErrors);
/// The bytes of the file. The data must be what checkMeshData() is content with; bounds are written
/// as they stand in it.
vlMemory::Buffer writeMeshFile(const MeshData& mesh);

/// Offsets, sizes, semantics, indices in range, finite floats. The error names the fault without
/// naming the mesh.
vlCommon::Result<> checkMeshData(const MeshData& mesh);

} // namespace vlGraphics
