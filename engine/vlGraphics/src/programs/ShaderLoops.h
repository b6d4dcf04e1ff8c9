#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vlGraphics {

/// Passes of a loop, with those of the loops within it, that are few enough to need no watching.
inline constexpr std::uint32_t mostUnwatchedPasses = std::uint32_t{1} << 14U;

/** A loop of a stage. Places are words of its module. */
struct ShaderLoop {
    std::size_t label = 0;  ///< of the header block
    std::size_t branch = 0; ///< by which the header enters the loop
    std::size_t end = 0;    ///< the label of the block after the loop
    std::uint32_t mergeBlock = 0;
    std::uint32_t resultType = 0; ///< of the function that it stands in
    /// Passes of the loops within that nobody else counts, for each of its own; 1 or more.
    std::uint32_t weight = 1;
    bool endsSoon = false;   ///< evidently, whatever the stage is given
    bool hasBarrier = false; ///< the threads of a group go through it together
};

/// Where a loop stands in the sources.
struct LoopPlace {
    std::string file;       ///< empty: the stage's own source
    std::uint32_t line = 1; ///< from 1
    friend bool operator==(const LoopPlace&, const LoopPlace&) = default;
};

/** The loops of an unoptimised module (variables are still in memory) in their order. A loop ends
 * soon when a variable that starts from a constant and moves by a constant once a pass is compared
 * with a constant, and its passes times those of the loops within and of the functions called are
 * at most mostUnwatchedPasses. */
std::vector<ShaderLoop> findLoops(std::span<const std::uint32_t> spirv);

/// Of the same loops, in a module of the same source that has line information.
std::vector<LoopPlace> findLoopPlaces(std::span<const std::uint32_t> spirv);

} // namespace vlGraphics
