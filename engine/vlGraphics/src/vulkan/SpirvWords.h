#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

namespace vlGraphics::vulkan {

inline constexpr std::size_t spirvHeaderWords = 5;

/// Calls visit(opcode, first word, word count) for each instruction.
template <class Visit> void eachInstruction(std::span<const std::uint32_t> spirv, Visit visit) {
    for (std::size_t at = spirvHeaderWords; at < spirv.size();) {
        const std::size_t count = spirv[at] >> 16U;
        if (count == 0 || at + count > spirv.size()) return;
        visit(spirv[at] & 0xFFFFU, at, count);
        at += count;
    }
}

} // namespace vlGraphics::vulkan
