#pragma once
#include "Float.h"

#include <vlMemory/String.h>

#include <vector>

namespace vlKestrion {

/** A material as a Wavefront MTL file gives it; starts as what a material without one looks like.
 */
struct MtlMaterial {
    vlMemory::String name;
    Float3 diffuse{0.8F, 0.8F, 0.8F};
    Float3 specular{0.5F, 0.5F, 0.5F};
    Float3 emission;
    float exponent = 40;         ///< of the highlight, 0 to 1000
    float roughness = -1;        ///< 0 to 1; below 0 where the exponent says it
    float metalness = 0;         ///< 0 to 1
    float opacity = 1;           ///< 0 to 1
    vlMemory::String diffuseMap; ///< as the file writes them; empty for none
    vlMemory::String normalMap;
    vlMemory::String bumpMap; ///< heights, or normals after all: exporters mix the two
    vlMemory::String opacityMap;
};

/** Appends the file's materials. Statements that make no sense leave a value as it was, with a
 * warning line each; those that are not known are passed over. */
void parseMtl(vlMemory::StringView text,
              vlMemory::StringView name,
              std::vector<MtlMaterial>& materials,
              std::vector<vlMemory::String>& warnings);

} // namespace vlKestrion
