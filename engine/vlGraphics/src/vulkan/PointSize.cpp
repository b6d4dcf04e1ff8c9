#include "vulkan/PointSize.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

namespace vlGraphics::vulkan {
namespace {

using Words = std::vector<std::uint32_t>;

constexpr std::uint32_t one = 0x3F800000; ///< 1.0F

/** Where a stage has what is to be added to it; 0 where it has not. */
struct Places {
    std::size_t entryPoint = 0;
    std::size_t firstType = 0;
    std::size_t firstFunction = 0;
    std::size_t firstStatement = 0; ///< of the entry point's function
    std::uint32_t entry = 0;
    std::uint32_t floatType = 0;
    std::uint32_t pointerType = 0;
    bool saysSize = false;
};

Places placesIn(std::span<const std::uint32_t> spirv) {
    Places places;
    bool isInEntry = false;
    bool isInBlock = false;
    eachInstruction(spirv, [&](std::uint32_t opcode, std::size_t at, std::size_t count) {
        const auto isWord = [&](std::size_t i, std::uint32_t value) {
            return count > i && spirv[at + i] == value;
        };
        if (opcode == spv::OpEntryPoint && count > 2) {
            places.entryPoint = at;
            places.entry = spirv[at + 2];
        }
        const std::size_t decoration = opcode == spv::OpMemberDecorate ? 3 : 2;
        if ((opcode == spv::OpDecorate || opcode == spv::OpMemberDecorate) &&
            isWord(decoration, spv::DecorationBuiltIn) &&
            isWord(decoration + 1, spv::BuiltInPointSize))
            places.saysSize = true;
        if (places.firstType == 0 && opcode >= spv::OpTypeVoid &&
            opcode <= spv::OpTypeForwardPointer)
            places.firstType = at;
        if (opcode == spv::OpTypeFloat && isWord(2, 32)) places.floatType = spirv[at + 1];
        if (opcode == spv::OpTypePointer && isWord(2, spv::StorageClassOutput) &&
            isWord(3, places.floatType))
            places.pointerType = spirv[at + 1];
        if (opcode == spv::OpFunction) {
            if (places.firstFunction == 0) places.firstFunction = at;
            isInEntry = isWord(2, places.entry);
        }
        // The variables of a function stand before its statements.
        if (isInBlock && opcode != spv::OpVariable && places.firstStatement == 0)
            places.firstStatement = at;
        isInBlock = isInBlock || (isInEntry && opcode == spv::OpLabel);
    });
    return places;
}

} // namespace

std::vector<std::uint32_t> withPointSize(std::span<const std::uint32_t> spirv) {
    const Places places = placesIn(spirv);
    const bool isUnderstood = places.entryPoint != 0 && places.firstType > places.entryPoint &&
                              places.firstFunction > places.firstType &&
                              places.firstStatement > places.firstFunction;
    if (places.saysSize || !isUnderstood) return {};
    std::uint32_t next = spirv[spirvBoundWord];
    const std::uint32_t size = next++;
    const std::uint32_t value = next++;
    Words globals;
    std::uint32_t floatType = places.floatType;
    if (floatType == 0) addInstruction(globals, spv::OpTypeFloat, {floatType = next++, 32});
    std::uint32_t pointerType = places.pointerType;
    if (pointerType == 0)
        addInstruction(globals,
                       spv::OpTypePointer,
                       {pointerType = next++, spv::StorageClassOutput, floatType});
    addInstruction(globals, spv::OpConstant, {floatType, value, one});
    addInstruction(globals, spv::OpVariable, {pointerType, size, spv::StorageClassOutput});
    Words decoration;
    addInstruction(
            decoration, spv::OpDecorate, {size, spv::DecorationBuiltIn, spv::BuiltInPointSize});
    Words statement;
    addInstruction(statement, spv::OpStore, {size, value});

    Words words;
    words.reserve(spirv.size() + globals.size() + decoration.size() + statement.size() + 1);
    auto copyUpTo = [&, from = std::size_t{0}](std::size_t end) mutable {
        words.insert(words.end(),
                     spirv.begin() + static_cast<std::ptrdiff_t>(from),
                     spirv.begin() + static_cast<std::ptrdiff_t>(end));
        from = end;
    };
    copyUpTo(places.entryPoint + (spirv[places.entryPoint] >> 16U));
    words[spirvBoundWord] = next;
    words[places.entryPoint] += 1U << 16U;
    words.push_back(size);
    copyUpTo(places.firstType);
    words.insert(words.end(), decoration.begin(), decoration.end());
    copyUpTo(places.firstFunction);
    words.insert(words.end(), globals.begin(), globals.end());
    copyUpTo(places.firstStatement);
    words.insert(words.end(), statement.begin(), statement.end());
    copyUpTo(spirv.size());
    return words;
}

} // namespace vlGraphics::vulkan
