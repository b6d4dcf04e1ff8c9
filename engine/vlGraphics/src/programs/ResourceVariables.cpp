#include "programs/ResourceVariables.h"

#include "vulkan/SpirvWords.h"

#include <spirv-tools/optimizer.hpp>

#include <unordered_set>

namespace vlGraphics {

namespace {

// Numbers of SPIR-V.
enum Operation : std::uint32_t {
    typeImage = 25,
    typeSampler = 26,
    typeSampledImage = 27,
    typeArray = 28,
    typeRuntimeArray = 29,
    typeStruct = 30,
    typePointer = 32,
    variable = 59
};
constexpr std::uint32_t ownOfStage = 6, ownOfFunction = 7; ///< storage classes

bool hasResourceVariables(const std::vector<std::uint32_t>& spirv) {
    std::unordered_set<std::uint32_t> resources; ///< types that are or hold some
    std::unordered_set<std::uint32_t> pointers;  ///< types of pointers to variables of those
    bool has = false;
    vulkan::eachInstruction(spirv, [&](std::uint32_t operation, std::size_t at, std::size_t count) {
        const auto holds = [&](std::size_t word) { return resources.contains(spirv[at + word]); };
        switch (operation) {
        case typeImage:
        case typeSampler:
        case typeSampledImage:
            resources.insert(spirv[at + 1]);
            break;
        case typeArray:
        case typeRuntimeArray:
            if (holds(2)) resources.insert(spirv[at + 1]);
            break;
        case typeStruct:
            for (std::size_t word = 2; word < count; ++word)
                if (holds(word)) resources.insert(spirv[at + 1]);
            break;
        case typePointer:
            if ((spirv[at + 2] == ownOfStage || spirv[at + 2] == ownOfFunction) && holds(3))
                pointers.insert(spirv[at + 1]);
            break;
        case variable:
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
    return "a texture, a buffer or a sampler is in a variable of which the compiler cannot say "
           "what "
           "it stands for";
}

} // namespace vlGraphics
