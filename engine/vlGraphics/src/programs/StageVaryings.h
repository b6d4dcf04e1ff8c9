#pragma once
#include "programs/InterfaceMapper.h"

#include <vlGraphics/Program.h>

#include <spirv_cross/spirv_cross_c.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vlGraphics {

/** A value that a stage takes from the stage before, or gives to the next. */
struct Varying {
    std::uint32_t location = 0;
    bool isPatch = false; ///< one for a patch, not for each of its points
    spvc_basetype base = SPVC_BASETYPE_FP32;
    unsigned size = 1; ///< of the vector
    unsigned columns = 1;
    std::uint32_t elements = 1; ///< of an array, leaving out that of a primitive's points
    std::string text;           ///< the type as HLSL writes it
};

struct StageVaryings {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    std::vector<Varying> inputs; ///< that the stage really reads
    std::vector<Varying> outputs;
};

/** What a stage reads and the one before does not write, or writes as another type. What is written
 *  and not read is fine. The stages stand in their order. */
std::optional<ProgramDiagnostic> findMismatch(const std::vector<StageVaryings>& stages,
                                              const MappedInterfaces& interfaces);

} // namespace vlGraphics
