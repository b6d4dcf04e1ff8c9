#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <array>
#include <cstdint>
#include <vector>

namespace vlGraphics {

/// A program's resources by what HLSL's registers distinguish: b, t, s and u.
enum class RESOURCE_CLASS : std::uint32_t { CONSTANT_BUFFER, TEXTURE, SAMPLER, UAV };

/** A resource that a compiled program really uses; what the optimiser dropped does not appear. */
struct ReflectedResource {
    vlMemory::String name;
    RESOURCE_CLASS resourceClass = RESOURCE_CLASS::CONSTANT_BUFFER;
    bool isBuffer = false;  ///< a structured buffer behind a t or u register
    std::uint32_t slot = 0; ///< the register's number
    std::uint32_t space = 0;
    std::uint32_t byteSize = 0;  ///< of a constant buffer
    std::uint32_t stageMask = 0; ///< bit i: used by the stage of SHADER_TYPE i
};

/** An input of the vertex stage. A matrix takes four locations. */
struct ReflectedInput {
    vlMemory::String semantic;
    std::uint32_t location = 0;
    std::uint32_t locationCount = 1;
    FORMAT format = FORMAT::UNKNOWN; ///< of one location
};

struct ProgramReflection {
    std::vector<ReflectedResource> resources; ///< by space, class and slot
    std::vector<ReflectedInput> inputs;       ///< by location
    std::uint32_t colorTargetCount = 0;       ///< outputs of the pixel stage, up to the last
    std::uint32_t colorTargetMask = 0;        ///< bit i: the pixel stage writes output i
    bool writesAlpha = false;                 ///< output 0 has a fourth channel
    std::array<std::uint32_t, 3> threadGroupSize{1, 1, 1};
};

} // namespace vlGraphics
