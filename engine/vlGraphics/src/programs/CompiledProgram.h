#pragma once
#include "programs/ShaderLoops.h"

#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ProgramReflection.h>

#include <array>
#include <cstdint>
#include <vector>

namespace vlGraphics {

/// By stage: the loops that are watched, in the order of their numbers from 1.
using LoopPlaces = std::array<std::vector<LoopPlace>, shaderTypeCount>;

/** What a program's sources compile to: SPIR-V by stage (empty where there is no stage; the entry
 * points are all "main"), and what it uses. Plain value. */
struct CompiledProgram {
    std::array<std::vector<std::uint32_t>, shaderTypeCount> spirv;
    ProgramReflection reflection;
    LoopPlaces loops;
    /// Stages that tell of them in the program's loop buffer; bit n is stage n.
    std::uint32_t tellingStages = 0;
    std::uint32_t mostPasses = 0; ///< of one thread through watched loops
};

} // namespace vlGraphics
