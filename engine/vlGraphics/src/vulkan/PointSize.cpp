#include "vulkan/PointSize.h"

#include "vulkan/SpirvWords.h"

#include <initializer_list>

namespace vlGraphics::vulkan {
namespace {

using Words = std::vector<std::uint32_t>;

constexpr std::size_t boundWord = 3;
constexpr std::uint32_t opEntryPoint = 15;
constexpr std::uint32_t opFirstType = 19;
constexpr std::uint32_t opLastType = 39;
constexpr std::uint32_t opTypeFloat = 22;
constexpr std::uint32_t opTypePointer = 32;
constexpr std::uint32_t opConstant = 43;
constexpr std::uint32_t opFunction = 54;
constexpr std::uint32_t opVariable = 59;
constexpr std::uint32_t opStore = 62;
constexpr std::uint32_t opDecorate = 71;
constexpr std::uint32_t opMemberDecorate = 72;
constexpr std::uint32_t opLabel = 248;
constexpr std::uint32_t decorationBuiltIn = 11;
constexpr std::uint32_t builtInPointSize = 1;
constexpr std::uint32_t storageOutput = 3;
constexpr std::uint32_t one = 0x3F800000; ///< 1.0F

void add(Words& words, std::uint32_t opcode, std::initializer_list<std::uint32_t> operands) {
    words.push_back(static_cast<std::uint32_t>(operands.size() + 1) << 16U | opcode);
    words.insert(words.end(), operands);
}

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
        if (opcode == opEntryPoint && count > 2) {
            places.entryPoint = at;
            places.entry = spirv[at + 2];
        }
        const std::size_t decoration = opcode == opMemberDecorate ? 3 : 2;
        if ((opcode == opDecorate || opcode == opMemberDecorate) &&
            isWord(decoration, decorationBuiltIn) && isWord(decoration + 1, builtInPointSize))
            places.saysSize = true;
        if (places.firstType == 0 && opcode >= opFirstType && opcode <= opLastType)
            places.firstType = at;
        if (opcode == opTypeFloat && isWord(2, 32)) places.floatType = spirv[at + 1];
        if (opcode == opTypePointer && isWord(2, storageOutput) && isWord(3, places.floatType))
            places.pointerType = spirv[at + 1];
        if (opcode == opFunction) {
            if (places.firstFunction == 0) places.firstFunction = at;
            isInEntry = isWord(2, places.entry);
        }
        // The variables of a function stand before its statements.
        if (isInBlock && opcode != opVariable && places.firstStatement == 0)
            places.firstStatement = at;
        isInBlock = isInBlock || (isInEntry && opcode == opLabel);
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
    std::uint32_t next = spirv[boundWord];
    const std::uint32_t size = next++;
    const std::uint32_t value = next++;
    Words globals;
    std::uint32_t floatType = places.floatType;
    if (floatType == 0) add(globals, opTypeFloat, {floatType = next++, 32});
    std::uint32_t pointerType = places.pointerType;
    if (pointerType == 0)
        add(globals, opTypePointer, {pointerType = next++, storageOutput, floatType});
    add(globals, opConstant, {floatType, value, one});
    add(globals, opVariable, {pointerType, size, storageOutput});
    Words decoration;
    add(decoration, opDecorate, {size, decorationBuiltIn, builtInPointSize});
    Words statement;
    add(statement, opStore, {size, value});

    Words words;
    words.reserve(spirv.size() + globals.size() + decoration.size() + statement.size() + 1);
    auto copyUpTo = [&, from = std::size_t{0}](std::size_t end) mutable {
        words.insert(words.end(),
                     spirv.begin() + static_cast<std::ptrdiff_t>(from),
                     spirv.begin() + static_cast<std::ptrdiff_t>(end));
        from = end;
    };
    copyUpTo(places.entryPoint + (spirv[places.entryPoint] >> 16U));
    words[boundWord] = next;
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
