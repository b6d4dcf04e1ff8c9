#pragma once
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace vlGraphics::vulkan {

inline constexpr std::size_t spirvHeaderWords = 5;
/// Of the header: one more than the largest number that the module gives to anything.
inline constexpr std::size_t spirvBoundWord = 3;

/// Calls visit(opcode, first word, word count) for each instruction.
template <class Visit> void eachInstruction(std::span<const std::uint32_t> spirv, Visit visit) {
    for (std::size_t at = spirvHeaderWords; at < spirv.size();) {
        const std::size_t count = spirv[at] >> 16U;
        if (count == 0 || at + count > spirv.size()) return;
        visit(spirv[at] & 0xFFFFU, at, count);
        at += count;
    }
}

inline void addInstruction(std::vector<std::uint32_t>& words,
                           std::uint32_t opcode,
                           std::initializer_list<std::uint32_t> operands) {
    words.push_back(static_cast<std::uint32_t>(operands.size() + 1) << 16U | opcode);
    words.insert(words.end(), operands);
}

} // namespace vlGraphics::vulkan
