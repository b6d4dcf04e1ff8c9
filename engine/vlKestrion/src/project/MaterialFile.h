#pragma once
#include <vlExport/Node.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <vector>

namespace vlKestrion {

inline constexpr std::uint32_t materialFormatVersion = 1;

struct MaterialDecl {
    vlMemory::String name;
    vlMemory::String shader; ///< may be empty
    bool transparent = false;
    std::uint32_t line = 0;
};

/// The materials of a declaration file ("materials": [...]); a line for each that was left out.
std::vector<MaterialDecl> readMaterials(const vlExport::Node& tree,
                                        vlMemory::StringView name,
                                        std::vector<vlMemory::String>& errors);
/// Whether anything is left for the other kinds once the materials are taken out.
bool declaresMore(const vlExport::Node& tree);

} // namespace vlKestrion
