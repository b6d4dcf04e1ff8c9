#pragma once
#include <vlGraphics/Enumerations.h>
#include <vlMemory/String.h>

#include <array>
#include <cstdint>
#include <vector>

namespace vlGraphics {

/// A program's resources by what HLSL's registers distinguish: b, t, s and u.
enum class RESOURCE_CLASS : std::uint32_t { CONSTANT_BUFFER, TEXTURE, SAMPLER, UAV };

/// What a shader sees at an address.
enum class RESOURCE_SHAPE : std::uint32_t {
    OTHER, ///< nothing of the engine's can be bound; ProgramReflection::obstacle says why
    CONSTANT_BUFFER,
    SAMPLER,
    STRUCTURED_BUFFER, ///< also append and consume buffers, and their counters
    BYTE_ADDRESS_BUFFER,
    TEXEL_BUFFER, ///< Buffer and RWBuffer
    TEXTURE_1D,
    TEXTURE_1D_ARRAY,
    TEXTURE_2D,
    TEXTURE_2D_ARRAY,
    TEXTURE_2D_MS,
    TEXTURE_2D_MS_ARRAY,
    TEXTURE_3D,
    TEXTURE_CUBE,
    TEXTURE_CUBE_ARRAY
};

/** A member of a constant buffer, or of a structured buffer's element. */
struct ReflectedMember {
    vlMemory::String name;
    vlMemory::String type;      ///< as HLSL writes it: "float4x4", "uint3[2]", the name of a struct
    std::uint32_t offset = 0;   ///< bytes from the begin of the buffer or element
    std::uint32_t byteSize = 0; ///< an array's: its stride times its count
    friend bool operator==(const ReflectedMember&, const ReflectedMember&) = default;
};

/** A resource that a compiled program really uses; what the optimiser dropped does not appear. */
struct ReflectedResource {
    vlMemory::String name;
    RESOURCE_CLASS resourceClass = RESOURCE_CLASS::CONSTANT_BUFFER;
    RESOURCE_SHAPE shape = RESOURCE_SHAPE::OTHER;
    bool isBuffer = false;      ///< a structured or byte address buffer behind a t or u register
    bool isTexelBuffer = false; ///< a typed buffer behind one: Buffer, RWBuffer
    /// A sampler that compares, or a texture that is sampled with comparison and so is of depth.
    bool isComparison = false;
    /// Of an append or consume buffer: the 32-bit number of its elements, which has a u register
    /// of its own.
    bool isCounter = false;
    std::uint32_t slot = 0; ///< the register's number
    std::uint32_t space = 0;
    /// Registers from the slot on, one an element, those of arrays in arrays row by row. 0: an
    /// array without a count.
    std::uint32_t arrayCount = 1;
    std::uint32_t byteSize = 0;  ///< of a constant buffer
    std::uint32_t stride = 0;    ///< bytes of a structured buffer's element
    std::uint32_t stageMask = 0; ///< bit i: used by the stage of SHADER_TYPE i
    /// Of typed buffers and textures. Without isFormatFixed only the kind of number counts (float,
    /// signed or unsigned) and there are four channels of 32 bits. UNKNOWN otherwise.
    FORMAT texelFormat = FORMAT::UNKNOWN;
    bool isFormatFixed = false; ///< what is bound must have that format
    std::vector<ReflectedMember>
            members; ///< of a constant buffer, and of an element that is a struct
    /// Where the first stage that uses it does so first, as in ProgramDiagnostic.
    vlMemory::String file;
    std::uint32_t line = 1;
    friend bool operator==(const ReflectedResource&, const ReflectedResource&) = default;
};

/** An input of the vertex stage. A matrix takes four locations. */
struct ReflectedInput {
    vlMemory::String semantic;
    std::uint32_t location = 0;
    std::uint32_t locationCount = 1;
    FORMAT format = FORMAT::UNKNOWN; ///< of one location
    friend bool operator==(const ReflectedInput&, const ReflectedInput&) = default;
};

struct ProgramReflection {
    std::vector<ReflectedResource> resources; ///< by space, class and slot
    std::vector<ReflectedInput> inputs;       ///< by location
    std::uint32_t colorTargetCount = 0;       ///< outputs of the pixel stage, up to the last
    std::uint32_t colorTargetMask = 0;        ///< bit i: the pixel stage writes output i
    bool writesAlpha = false;                 ///< output 0 has a fourth channel
    std::array<std::uint32_t, 3> threadGroupSize{1, 1, 1};
    /// Why nothing can be drawn or computed with the program although it compiles, as one line;
    /// empty where nothing stands in the way.
    vlMemory::String obstacle;
    SHADER_TYPE obstacleStage = SHADER_TYPE::VERTEX; ///< whose it is
    vlMemory::String obstacleFile;                   ///< as in ProgramDiagnostic
    std::uint32_t obstacleLine = 1;
    friend bool operator==(const ProgramReflection&, const ProgramReflection&) = default;
};

} // namespace vlGraphics
