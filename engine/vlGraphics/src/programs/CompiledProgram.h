#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlGraphics/ProgramReflection.h>

#include <array>
#include <cstdint>
#include <vector>

namespace vlGraphics {

/** What a program's sources compile to: SPIR-V by stage (empty where there is no stage; the entry
 * points are all "main"), and what it uses. Plain value. */
struct CompiledProgram {
    std::array<std::vector<std::uint32_t>, shaderTypeCount> spirv;
    ProgramReflection reflection;
};

} // namespace vlGraphics
