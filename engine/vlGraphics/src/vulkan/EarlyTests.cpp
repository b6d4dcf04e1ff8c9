#include "vulkan/EarlyTests.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace vlGraphics::vulkan {
namespace {

constexpr std::uint32_t discards[] = {
        spv::OpKill, spv::OpTerminateInvocation, spv::OpDemoteToHelperInvocationEXT};
constexpr std::uint32_t decidingBuiltIns[] = {
        spv::BuiltInSampleMask, spv::BuiltInFragDepth, spv::BuiltInFragStencilRefEXT};

template <class Range> bool contains(const Range& range, std::uint32_t value) {
    return std::find(std::begin(range), std::end(range), value) != std::end(range);
}

} // namespace

std::vector<std::uint32_t> withEarlyTests(std::span<const std::uint32_t> spirv) {
    std::size_t entryPoint = 0;
    std::size_t behindEntryPoint = 0;
    bool hasSay = false;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        if (opcode == spv::OpEntryPoint) {
            entryPoint = at;
            behindEntryPoint = at + count;
        }
        hasSay |= contains(discards, opcode);
        hasSay |= opcode == spv::OpDecorate && count == 4 &&
                  spirv[at + 2] == spv::DecorationBuiltIn &&
                  contains(decidingBuiltIns, spirv[at + 3]);
        hasSay |= opcode == spv::OpExecutionMode &&
                  spirv[at + 2] == spv::ExecutionModeEarlyFragmentTests;
    });
    if (entryPoint == 0 || hasSay) return {};
    std::vector<std::uint32_t> words(spirv.begin(), spirv.end());
    std::vector<std::uint32_t> mode;
    addInstruction(mode,
                   spv::OpExecutionMode,
                   {words[entryPoint + 2], spv::ExecutionModeEarlyFragmentTests});
    words.insert(words.begin() + static_cast<std::ptrdiff_t>(behindEntryPoint),
                 mode.begin(),
                 mode.end());
    return words;
}

} // namespace vlGraphics::vulkan
