#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace vlGraphics {

/** No device takes textures, buffers and samplers in variables, and drivers break down on them;
 *  the compiler leaves such variables where a function is given an array of them. Puts what they
 *  are copies of in their place. Says why there are others; empty: there are none. */
std::string replaceResourceVariables(std::vector<std::uint32_t>& spirv);

} // namespace vlGraphics
