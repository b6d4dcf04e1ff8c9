#include "programs/ResourceVariables.h"

#include "vulkan/SpirvWords.h"

#include <glslang/SPIRV/spirv.hpp>
#include <spirv-tools/optimizer.hpp>

#include <unordered_set>

namespace vlGraphics {

namespace {

bool hasResourceVariables(const std::vector<std::uint32_t>& spirv) {
    std::unordered_set<std::uint32_t> resources; ///< types that are or hold some
    std::unordered_set<std::uint32_t> pointers;  ///< types of pointers to variables of those
    bool has = false;
    vulkan::eachInstruction(spirv, [&](std::uint32_t operation, std::size_t at, std::size_t count) {
        const auto holds = [&](std::size_t word) { return resources.contains(spirv[at + word]); };
        switch (operation) {
        case spv::OpTypeImage:
        case spv::OpTypeSampler:
        case spv::OpTypeSampledImage:
            resources.insert(spirv[at + 1]);
            break;
        case spv::OpTypeArray:
        case spv::OpTypeRuntimeArray:
            if (holds(2)) resources.insert(spirv[at + 1]);
            break;
        case spv::OpTypeStruct:
            for (std::size_t word = 2; word < count; ++word)
                if (holds(word)) resources.insert(spirv[at + 1]);
            break;
        case spv::OpTypePointer:
            if ((spirv[at + 2] == spv::StorageClassPrivate ||
                 spirv[at + 2] == spv::StorageClassFunction) &&
                holds(3))
                pointers.insert(spirv[at + 1]);
            break;
        case spv::OpVariable:
            has = has || pointers.contains(spirv[at + 1]);
            break;
        default:
            break;
        }
    });
    return has;
}

} // namespace

std::string replaceResourceVariables(std::vector<std::uint32_t>& spirv) {
    if (!hasResourceVariables(spirv)) return {};
    spvtools::Optimizer optimizer(SPV_ENV_VULKAN_1_1);
    optimizer.RegisterPass(spvtools::CreateCopyPropagateArraysPass())
            .RegisterPass(spvtools::CreateAggressiveDCEPass());
    spvtools::OptimizerOptions options;
    options.set_run_validator(false);
    std::vector<std::uint32_t> replaced;
    if (optimizer.Run(spirv.data(), spirv.size(), &replaced, options)) spirv.swap(replaced);
    if (!hasResourceVariables(spirv)) return {};
    return "a texture, a buffer or a sampler is in a variable of which the compiler cannot "
           "say what it stands for";
}

} // namespace vlGraphics
