#pragma once
#include "programs/CompiledProgram.h"
#include "vulkan/GpuBuffer.h"
#include "vulkan/Primitives.h"
#include "vulkan/Vk.h"

#include <vlGraphics/Program.h>

#include <tl/expected.hpp>

#include <array>
#include <memory>
#include <vector>

namespace vlGraphics {

/** The device side of a compiled program: modules and layouts. Pipelines made from it are found by
 *  its serial number and go when it goes. Owned by its program; graphics thread only. */
struct Program::Gpu {
    /// A binding of a descriptor set, and the reflected resource behind it: a descriptor for each
    /// of its registers.
    struct Binding {
        std::uint32_t binding = 0;
        VkDescriptorType type = VK_DESCRIPTOR_TYPE_MAX_ENUM;
        std::uint32_t resource = 0; ///< index into the reflection's resources
    };
    struct Set {
        VkDescriptorSetLayout layout = VK_NULL_HANDLE;
        std::vector<Binding> bindings; ///< empty: a space that the program does not use
    };

    Gpu() = default;
    Gpu(const Gpu&) = delete;
    Gpu& operator=(const Gpu&) = delete;
    ~Gpu();

    std::uint64_t serial = 0; ///< no two of a process share one
    std::array<VkShaderModule, shaderTypeCount> modules{};
    std::vector<Set> sets; ///< by space
    VkPipelineLayout layout = VK_NULL_HANDLE;
    ProgramReflection reflection;
    /// The pixel stage with its second output as the second source of blending; empty where it has
    /// none or the device cannot.
    std::vector<std::uint32_t> secondSourcePixel;
    /// The pixel stage with depth and stencil tested before it, where nothing but its watched loops
    /// keeps the device from doing so by itself; else empty.
    std::vector<std::uint32_t> earlyPixel;
    /// The vertex stage for lists of points; empty where it will do as it is.
    std::vector<std::uint32_t> pointVertex;
    /// Of stages whose loops are watched: what a stopped one tells by its number.
    LoopPlaces loops;
    /// The stages that tell, bit n for stage n, and where: a word for each of all stages, at
    /// BindingModel::loopBinding of the first set. No buffer where no stage tells.
    std::uint32_t tellingStages = 0;
    std::uint32_t mostPasses = 0; ///< of one thread through watched loops
    vulkan::GpuBuffer loopWords;
    vulkan::Primitives primitives;
    bool has(SHADER_TYPE stage) const {
        return modules[static_cast<std::size_t>(stage)] != VK_NULL_HANDLE;
    }
};

/// The stages in which the device lets threads write; bit n is stage n. All without a device.
std::uint32_t writingStages();
/// Of one thread through its loops. Fewer than after which the device's driver leaves loops itself.
std::uint32_t mostLoopPasses();

/** Makes the device side. Of a program in whose way nothing stands. Fails, naming the stage, when
 * there is no device, when a register or a space lies beyond what the addresses have
 * room for (128 registers of a class, 8 spaces), or when a stage needs what the device lacks.
 * Graphics thread only. */
tl::expected<std::unique_ptr<Program::Gpu>, ProgramDiagnostic>
makeProgramGpu(const CompiledProgram& program);

} // namespace vlGraphics
