#include "vulkan/ProgramGpu.h"

#include "programs/BindingModel.h"
#include "programs/CompileRequest.h"
#include "render/Pipelines.h"
#include "vulkan/Device.h"
#include "vulkan/EarlyTests.h"
#include "vulkan/PointSize.h"
#include "vulkan/ProgramLimits.h"
#include "vulkan/SecondSource.h"
#include "vulkan/Translate.h"
#include "vulkan/VkText.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vlGraphics {

using vulkan::Device;

namespace {

std::uint64_t nextSerial() {
    static std::uint64_t serial = 0;
    return ++serial;
}

VkShaderStageFlags stagesOf(std::uint32_t mask) {
    VkShaderStageFlags stages = 0;
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
        if ((mask >> stage & 1U) != 0)
            stages |= VkShaderStageFlags{vulkan::shaderStage(static_cast<SHADER_TYPE>(stage))};
    return stages;
}

const std::vector<std::uint32_t>& wordsOf(const CompiledProgram& program, SHADER_TYPE stage) {
    return program.spirv[static_cast<std::size_t>(stage)];
}

SHADER_TYPE firstOf(const CompiledProgram& program) {
    for (std::uint32_t stage = 0; stage < shaderTypeCount; ++stage)
        if (!program.spirv[stage].empty()) return static_cast<SHADER_TYPE>(stage);
    return SHADER_TYPE::VERTEX;
}

vlCommon::Result<> makeModules(Program::Gpu& gpu, const CompiledProgram& program) {
    for (std::size_t stage = 0; stage < shaderTypeCount; ++stage) {
        const std::vector<std::uint32_t>& words = program.spirv[stage];
        if (words.empty()) continue;
        auto info = vulkan::vkInfo<VkShaderModuleCreateInfo>(
                VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO);
        info.codeSize = words.size() * sizeof(std::uint32_t);
        info.pCode = words.data();
        const VkResult result = vkCreateShaderModule(
                Device::getInstance()->get(), &info, nullptr, &gpu.modules[stage]);
        if (result != VK_SUCCESS) return vulkan::check(result, "Could not make a shader module");
    }
    return {};
}

vlCommon::Result<> makeSet(Program::Gpu& gpu, std::uint32_t space) {
    Program::Gpu::Set& set = gpu.sets[space];
    std::vector<VkDescriptorSetLayoutBinding> bindings;
    for (std::uint32_t i = 0; i < gpu.reflection.resources.size(); ++i) {
        const ReflectedResource& resource = gpu.reflection.resources[i];
        if (resource.space != space) continue;
        const std::uint32_t binding =
                BindingModel::bindingOf(resource.resourceClass, resource.slot);
        const VkDescriptorType type = descriptorType(resource);
        bindings.push_back(
                {binding, type, resource.arrayCount, stagesOf(resource.stageMask), nullptr});
        set.bindings.push_back({binding, type, i});
    }
    if (space == BindingModel::loopSet && gpu.tellingStages != 0)
        bindings.push_back({BindingModel::loopBinding,
                            VK_DESCRIPTOR_TYPE_STORAGE_BUFFER,
                            1,
                            stagesOf(gpu.tellingStages),
                            nullptr});
    auto info = vulkan::vkInfo<VkDescriptorSetLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO);
    info.bindingCount = static_cast<std::uint32_t>(bindings.size());
    info.pBindings = bindings.data();
    return vulkan::check(
            vkCreateDescriptorSetLayout(Device::getInstance()->get(), &info, nullptr, &set.layout),
            "Could not make a descriptor set layout");
}

vlCommon::Result<> makeLayout(Program::Gpu& gpu) {
    std::uint32_t spaces = gpu.tellingStages != 0 ? BindingModel::loopSet + 1 : 0;
    for (const ReflectedResource& resource : gpu.reflection.resources)
        spaces = std::max(spaces, resource.space + 1);
    gpu.sets.resize(spaces);
    std::vector<VkDescriptorSetLayout> layouts;
    for (std::uint32_t space = 0; space < spaces; ++space) {
        if (auto made = makeSet(gpu, space); !made) return made;
        layouts.push_back(gpu.sets[space].layout);
    }
    auto info = vulkan::vkInfo<VkPipelineLayoutCreateInfo>(
            VK_STRUCTURE_TYPE_PIPELINE_LAYOUT_CREATE_INFO);
    info.setLayoutCount = spaces;
    info.pSetLayouts = layouts.data();
    return vulkan::check(
            vkCreatePipelineLayout(Device::getInstance()->get(), &info, nullptr, &gpu.layout),
            "Could not make a pipeline layout");
}

vlCommon::Result<> makeLoopWords(Program::Gpu& gpu, const CompiledProgram& program) {
    gpu.loops = program.loops;
    gpu.tellingStages = program.tellingStages;
    gpu.mostPasses = program.mostPasses;
    if (gpu.tellingStages == 0) return {};
    constexpr VkDeviceSize size = sizeof(std::uint32_t) * shaderTypeCount;
    auto words = vulkan::GpuBuffer::create(size,
                                           VK_BUFFER_USAGE_STORAGE_BUFFER_BIT,
                                           vulkan::BufferMemory::readback,
                                           "the loop buffer");
    if (!words) return tl::unexpected(words.error());
    std::memset(words->mapped(), 0, size);
    gpu.loopWords = *std::move(words);
    return {};
}

/// The words of watched loops are all that the pixel stage writes.
bool writesOnlyLoopWords(const CompiledProgram& program) {
    constexpr std::uint32_t pixel = 1U << static_cast<std::uint32_t>(SHADER_TYPE::PIXEL);
    const auto& resources = program.reflection.resources;
    return (program.tellingStages & pixel) != 0 &&
           std::none_of(resources.begin(), resources.end(), [](const ReflectedResource& resource) {
               return resource.resourceClass == RESOURCE_CLASS::UAV &&
                      (resource.stageMask & pixel) != 0;
           });
}

} // namespace

Program::Program() = default;
Program::~Program() = default;

Program::Gpu::~Gpu() {
    Device& device = *Device::getInstance();
    if (render::Pipelines* pipelines = render::Pipelines::getInstance()) pipelines->forget(serial);
    device.retire(layout);
    for (const Set& set : sets)
        device.retire(set.layout);
    for (VkShaderModule module : modules)
        device.retire(module);
}

std::uint32_t writingStages() {
    if (Device::getInstance() == nullptr) return ~0U;
    const VkPhysicalDeviceFeatures& features = Device::getInstance()->features();
    constexpr std::uint32_t pixel = 1U << static_cast<std::uint32_t>(SHADER_TYPE::PIXEL);
    constexpr std::uint32_t compute = 1U << static_cast<std::uint32_t>(SHADER_TYPE::COMPUTE);
    std::uint32_t stages = compute;
    if (features.fragmentStoresAndAtomics == VK_TRUE) stages |= pixel;
    if (features.vertexPipelineStoresAndAtomics == VK_TRUE) stages |= ~(pixel | compute);
    return stages;
}

std::uint32_t mostLoopPasses() {
    // The software driver leaves every loop once a thread has had 65535 passes, and says nothing.
    constexpr std::uint32_t ofSoftware = 49152;
    const Device* device = Device::getInstance();
    const bool isSoftware = device != nullptr &&
                            device->choice().properties.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU;
    return isSoftware ? ofSoftware : CompileRequest().mostPasses;
}

tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic>
makeProgramGpu(const CompiledProgram& program) {
    const SHADER_TYPE first = firstOf(program);
    if (Device::getInstance() == nullptr)
        return tl::unexpected(ProgramDiagnostic{first, {}, 1, "There is no device"});
    if (auto found = findDeviceObstacle(program)) return tl::unexpected(*std::move(found));
    auto gpu = std::make_unique<Program::Gpu>();
    gpu->serial = nextSerial();
    gpu->reflection = program.reflection;
    auto made = makeLoopWords(*gpu, program);
    if (made) made = makeLayout(*gpu);
    if (made) made = makeModules(*gpu, program);
    if (!made) return tl::unexpected(ProgramDiagnostic{first, {}, 1, made.error().message});
    constexpr std::uint32_t firstTwo = 3;
    if ((gpu->reflection.colorTargetMask & firstTwo) == firstTwo &&
        Device::getInstance()->features().dualSrcBlend == VK_TRUE)
        gpu->secondSourcePixel = vulkan::withSecondSource(wordsOf(program, SHADER_TYPE::PIXEL));
    if (writesOnlyLoopWords(program))
        gpu->earlyPixel = vulkan::withEarlyTests(wordsOf(program, SHADER_TYPE::PIXEL));
    // Of points that other stages make, the device knows the size.
    if (gpu->has(SHADER_TYPE::VERTEX) && !gpu->has(SHADER_TYPE::HULL) &&
        !gpu->has(SHADER_TYPE::GEOMETRY))
        gpu->pointVertex = vulkan::withPointSize(wordsOf(program, SHADER_TYPE::VERTEX));
    gpu->primitives = vulkan::primitivesOf(wordsOf(program, SHADER_TYPE::HULL),
                                           wordsOf(program, SHADER_TYPE::DOMAIN_STAGE),
                                           wordsOf(program, SHADER_TYPE::GEOMETRY));
    return gpu;
}

} // namespace vlGraphics
