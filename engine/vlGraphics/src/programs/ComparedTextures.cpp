#include "programs/ComparedTextures.h"

#include "vulkan/SpirvWords.h"

#include <unordered_map>

namespace vlGraphics {

namespace {

// Numbers of SPIR-V.
enum Operation : std::uint32_t {
    load = 61,
    accessChain = 65,
    inBoundsAccessChain = 66,
    copyObject = 83,
    sampledImage = 86,
    sampleComparing = 89,
    sampleComparingAtLevel = 90,
    gatherComparing = 97
};

} // namespace

std::unordered_set<std::uint32_t> findComparedTextures(std::span<const std::uint32_t> spirv) {
    std::unordered_map<std::uint32_t, std::uint32_t> origins; ///< what a result is made of
    std::unordered_set<std::uint32_t> compared;
    vulkan::eachInstruction(spirv, [&](std::uint32_t operation, std::size_t at, std::size_t count) {
        if (count < 4) return;
        const std::uint32_t from = spirv[at + 3];
        switch (operation) {
        case load:
        case accessChain:
        case inBoundsAccessChain:
        case copyObject:
        case sampledImage: {
            const auto known = origins.find(from);
            origins[spirv[at + 2]] = known == origins.end() ? from : known->second;
            break;
        }
        case sampleComparing:
        case sampleComparingAtLevel:
        case gatherComparing:
            if (const auto known = origins.find(from); known != origins.end())
                compared.insert(known->second);
            break;
        default:
            break;
        }
    });
    return compared;
}

} // namespace vlGraphics
