#pragma once
#include <vlGraphics/ProgramSourcesHolder.h>

#include <cstddef>
#include <vector>

namespace bench {

/// Different lit programs, a vertex and a pixel stage each; the number decides how many textures
/// and lights there are, and which terms. They read POSITION, NORMAL and TEXCOORD.
std::vector<vlGraphics::ProgramSourcesHolder> makeSources(int count, int first);

/// The HLSL compiler alone: both stages parsed, linked and made optimised SPIR-V, whose words are
/// counted. Ends the program with a line where that fails.
std::size_t compileBare(const vlGraphics::ProgramSourcesHolder& sources);

} // namespace bench
