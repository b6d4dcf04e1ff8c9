#pragma once
#include <cstdint>
#include <span>
#include <string>

namespace vlGraphics {

/** Why no device is to be given a module, as one line; empty where it is valid. The compiler makes
 *  invalid ones of sources that it has nothing against, and drivers fall over them. Any thread. */
std::string findModuleFault(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics
