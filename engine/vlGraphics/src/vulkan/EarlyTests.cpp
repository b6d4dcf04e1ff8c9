#include "vulkan/EarlyTests.h"

#include "vulkan/SpirvWords.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint32_t opEntryPoint = 15;
constexpr std::uint32_t opExecutionMode = 16;
constexpr std::uint32_t opDecorate = 71;
constexpr std::uint32_t decorationBuiltIn = 11;
constexpr std::uint32_t modeEarlyTests = 9;

/// OpKill, OpTerminateInvocation, OpDemoteToHelperInvocation.
constexpr std::uint32_t discards[] = {252, 4416, 5380};
/// SampleMask, FragDepth, FragStencilRefEXT.
constexpr std::uint32_t decidingBuiltIns[] = {20, 22, 5014};

template <class Range> bool contains(const Range& range, std::uint32_t value) {
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

} // namespace

std::vector<std::uint32_t> withEarlyTests(std::span<const std::uint32_t> spirv) {
    std::size_t entryPoint = 0;
    std::size_t behindEntryPoint = 0;
    bool hasSay = false;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == opEntryPoint) {
            entryPoint = at;
            behindEntryPoint = at + count;
        }
        hasSay |= contains(discards, opcode);
        hasSay |= opcode == opDecorate && count == 4 && spirv[at + 2] == decorationBuiltIn &&
                  contains(decidingBuiltIns, spirv[at + 3]);
        hasSay |= opcode == opExecutionMode && spirv[at + 2] == modeEarlyTests;
    });
    if (entryPoint == 0 || hasSay) return {};
    std::vector<std::uint32_t> words(spirv.begin(), spirv.end());
    const std::uint32_t mode[] = {
            3U << 16U | opExecutionMode, words[entryPoint + 2], modeEarlyTests};
    words.insert(words.begin() + static_cast<std::ptrdiff_t>(behindEntryPoint),
                 std::begin(mode),
                 std::end(mode));
    return words;
}

} // namespace vlGraphics::vulkan
