#pragma once
#include "programs/ShaderLoops.h"

#include <vlGraphics/Enumerations.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vlGraphics {

/** What a stage and the processor tell each other through the stage's word of the program's loop
 *  buffer: 0 while all goes well, askedToStop by the processor when a frame takes too long, and
 *  from a stage that left a loop, the loop's number from 1, with tookTooLong when it was asked to
 *  and not at its bound. */
namespace LoopWords {
inline constexpr std::uint32_t askedToStop = 0xFFFFFFFF;
inline constexpr std::uint32_t tookTooLong = 0x80000000;
} // namespace LoopWords

/// What a stage's loops are held to.
struct LoopBounds {
    /// Of one thread through all its watched loops together.
    std::uint32_t mostPasses = std::uint32_t{1} << 20U;
    /// The device lets the stage write.
    bool tells = true;
};

/** Makes every loop of an unoptimised module that does not evidently end soon count its passes, and
 *  leave at mostPasses; from then on the thread leaves each such loop at once. Where the
 *  stage can tell, the first thread to leave does so in the loop buffer, and all others leave, too,
 *  as soon as they see it. Of a loop with barriers the threads of a group leave in the same pass,
 *  so that none waits for another for ever.
 *
 *  The answer is the watched loops, as places among all the module's; without any the module stays
 *  as it is. */
std::vector<std::size_t>
guardLoops(std::vector<std::uint32_t>& spirv, SHADER_TYPE stage, const LoopBounds& bounds);

} // namespace vlGraphics
