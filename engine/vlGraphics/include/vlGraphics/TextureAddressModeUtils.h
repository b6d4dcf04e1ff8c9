#pragma once
#include <vlMemory/String.h>

#include <cstdint>

namespace vlGraphics {

/** Names of a sampler's address modes; see StructToString. Any thread. */
class TextureAddressModeUtils {
public:
    TextureAddressModeUtils() = delete;

    /// 4294967295 past the last.
    static std::uint32_t fromIndex(std::uint32_t index);
    /// "UNKNOWN" for a value that is none.
    static vlMemory::StringView toString(std::uint32_t value);
    /// 4294967295 for a text that names none.
    static std::uint32_t fromString(vlMemory::StringView text);
};

} // namespace vlGraphics
