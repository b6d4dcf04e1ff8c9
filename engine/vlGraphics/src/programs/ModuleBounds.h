#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vlGraphics::ModuleBounds {

/// Loops within each other, through calls, too.
inline constexpr std::size_t maxLoops = 64;
/// Calls that functions are put in the place of.
inline constexpr std::size_t maxCalls = std::size_t{1} << 11U;
/// Instructions that come from that.
inline constexpr std::size_t maxCopied = std::size_t{1} << 17U;

/// Words of the whole module.
inline constexpr std::size_t maxWords = std::size_t{1} << 20U;

/** Why a module is not to be optimised: the optimiser, and the driver after it, put every function
 *  in the place of each of its calls, which few calls double without end, and take more than twice
 *  the time for each loop around loops. Empty where they will do. The module comes from the
 * compiler as it is; its functions do not call themselves. */
std::string findExcess(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics::ModuleBounds
