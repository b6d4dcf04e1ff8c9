#pragma once
#include <vlMemory/String.h>

#include <cstdint>

namespace vlGraphics {

/** Names of enumeration values, for lists that a person picks from. `FromIndex` walks an
 *  enumeration from 0 and gives `pastTheLast` after its last value; `String` names a value
 *  ("UNKNOWN" for one that the enumeration has not). Any thread. */
class StructToString {
public:
    static constexpr std::uint32_t pastTheLast = 4294967295U;

    StructToString() = delete;

    static std::uint32_t getBlendFromIndex(std::uint32_t index);
    static vlMemory::StringView getBlendString(std::uint32_t value);
    static std::uint32_t getBlendOpFromIndex(std::uint32_t index);
    static vlMemory::StringView getBlendOpString(std::uint32_t value);
    /// All sixteen sums of the channels' bits.
    static std::uint32_t getWriteMaskFromIndex(std::uint32_t index);
    static vlMemory::StringView getWriteMaskString(std::uint32_t value);
    static std::uint32_t getFillModeFromIndex(std::uint32_t index);
    static vlMemory::StringView getFillModeString(std::uint32_t value);
    static std::uint32_t getCullModeFromIndex(std::uint32_t index);
    static vlMemory::StringView getCullModeString(std::uint32_t value);
    static std::uint32_t getStencilOpFromIndex(std::uint32_t index);
    static vlMemory::StringView getStencilOpString(std::uint32_t value);
    static std::uint32_t getDepthWriteMaskFromIndex(std::uint32_t index);
    static vlMemory::StringView getDepthWriteMaskString(std::uint32_t value);
    static std::uint32_t getShaderTypeFromIndex(std::uint32_t index);
    static vlMemory::StringView getShaderTypeString(std::uint32_t value);
    static std::uint32_t getFormatFromIndex(std::uint32_t index);
    static vlMemory::StringView getFormatString(std::uint32_t value);
    static std::uint32_t getTopologyFromIndex(std::uint32_t index);
    static vlMemory::StringView getTopologyString(std::uint32_t value);
    static std::uint32_t getPassSlotTypeFromIndex(std::uint32_t index);
    static vlMemory::StringView getPassSlotTypeString(std::uint32_t value);
};

} // namespace vlGraphics
