#pragma once
#include <vlGraphics/Enumerations.h>

#include <cstdint>
#include <vector>

namespace vlGraphics {

/** Mends what the compiler writes otherwise than devices take it: atomic operations with a value of
 *  the other signedness, as byte address buffers make with a plain number, the numbers of lanes
 * that a pixel stage is given without it being said that they are flat, and texels of three
 * numbers. */
void mendModule(std::vector<std::uint32_t>& spirv, SHADER_TYPE stage);

} // namespace vlGraphics
