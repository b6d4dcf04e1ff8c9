#include "programs/ComparedTextures.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>

#include <unordered_map>

namespace vlGraphics {

std::unordered_set<std::uint32_t> findComparedTextures(std::span<const std::uint32_t> spirv) {
    std::unordered_map<std::uint32_t, std::uint32_t> origins; ///< what a result is made of
    std::unordered_set<std::uint32_t> compared;
    vulkan::eachInstruction(spirv, [&](std::uint32_t operation, std::size_t at, std::size_t count) {
        if (count < 4) return;
        const std::uint32_t from = spirv[at + 3];
        switch (operation) {
        case spv::OpLoad:
        case spv::OpAccessChain:
        case spv::OpInBoundsAccessChain:
        case spv::OpCopyObject:
        case spv::OpSampledImage: {
            const auto known = origins.find(from);
            origins[spirv[at + 2]] = known == origins.end() ? from : known->second;
            break;
        }
        case spv::OpImageSampleDrefImplicitLod:
        case spv::OpImageSampleDrefExplicitLod:
        case spv::OpImageDrefGather:
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
