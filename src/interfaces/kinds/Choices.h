#pragma once
#include <vlGraphics/StructToString.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vlEditor {

/** An entry of a combo box: what it is called and the engine's value. */
struct Choice {
    std::string label;
    std::uint32_t value = 0;
};

/// The engine's own list, in its order: asked by index until it answers that there is no more.
inline std::vector<Choice> choices(std::uint32_t (*fromIndex)(std::uint32_t),
                                   vlMemory::StringView (*toString)(std::uint32_t)) {
    std::vector<Choice> all;
    for (std::uint32_t i = 0;; ++i) {
        const std::uint32_t value = fromIndex(i);
        if (value == vlGraphics::StructToString::pastTheLast) return all;
        all.push_back({std::string(toString(value)), value});
    }
}

} // namespace vlEditor
