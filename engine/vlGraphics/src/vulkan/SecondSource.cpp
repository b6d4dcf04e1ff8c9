#include "vulkan/SecondSource.h"

#include "vulkan/SpirvWords.h"

#include <algorithm>
#include <cstddef>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint32_t opDecorate = 71;
constexpr std::uint32_t opVariable = 59;
constexpr std::uint32_t decorationLocation = 30;
constexpr std::uint32_t decorationIndex = 32;
constexpr std::uint32_t storageOutput = 3;

std::vector<std::uint32_t> outputsOf(std::span<const std::uint32_t> spirv) {
    std::vector<std::uint32_t> outputs;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == opVariable && count >= 4 && spirv[at + 3] == storageOutput)
            outputs.push_back(spirv[at + 2]);
    });
    return outputs;
}

} // namespace

std::vector<std::uint32_t> withSecondSource(std::span<const std::uint32_t> spirv) {
    const std::vector<std::uint32_t> outputs = outputsOf(spirv);
    std::size_t found = 0;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        const bool isSecond = opcode == opDecorate && count == 4 &&
                              spirv[at + 2] == decorationLocation && spirv[at + 3] == 1;
        if (isSecond && std::find(outputs.begin(), outputs.end(), spirv[at + 1]) != outputs.end())
            found = at;
    });
    if (found == 0) return {};
    std::vector<std::uint32_t> words(spirv.begin(), spirv.end());
    words[found + 3] = 0;
    const std::uint32_t index[] = {4U << 16U | opDecorate, words[found + 1], decorationIndex, 1};
    words.insert(words.begin() + static_cast<std::ptrdiff_t>(found) + 4,
                 std::begin(index),
                 std::end(index));
    return words;
}

} // namespace vlGraphics::vulkan
