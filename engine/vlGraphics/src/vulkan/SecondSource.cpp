#include "vulkan/SecondSource.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <cstddef>

namespace vlGraphics::vulkan {
namespace {

std::vector<std::uint32_t> outputsOf(std::span<const std::uint32_t> spirv) {
    std::vector<std::uint32_t> outputs;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == spv::OpVariable && count >= 4 && spirv[at + 3] == spv::StorageClassOutput)
            outputs.push_back(spirv[at + 2]);
    });
    return outputs;
}

} // namespace

std::vector<std::uint32_t> withSecondSource(std::span<const std::uint32_t> spirv) {
    const std::vector<std::uint32_t> outputs = outputsOf(spirv);
    std::size_t found = 0;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        const bool isSecond = opcode == spv::OpDecorate && count == 4 &&
                              spirv[at + 2] == spv::DecorationLocation && spirv[at + 3] == 1;
        if (isSecond && std::find(outputs.begin(), outputs.end(), spirv[at + 1]) != outputs.end())
            found = at;
    });
    if (found == 0) return {};
    std::vector<std::uint32_t> words(spirv.begin(), spirv.end());
    words[found + 3] = 0;
    const std::uint32_t index[] = {
            4U << 16U | spv::OpDecorate, words[found + 1], spv::DecorationIndex, 1};
    words.insert(words.begin() + static_cast<std::ptrdiff_t>(found) + 4,
                 std::begin(index),
                 std::end(index));
    return words;
}

} // namespace vlGraphics::vulkan
