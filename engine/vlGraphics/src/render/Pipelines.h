#pragma once
#include "vulkan/MeshGpu.h"
#include "vulkan/PipelineCache.h"
#include "vulkan/ProgramGpu.h"

#include <vlCommon/SingletonClass.h>
#include <vlGraphics/BlendState.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/Shader.h>

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace vlGraphics::render {

/// What a pass renders to, as pipelines see it.
struct TargetFormats {
    std::array<VkFormat, 8>
            colors{}; ///< by the shader's output; undefined where nothing is written
    std::uint32_t colorCount = 0;
    VkFormat depth = VK_FORMAT_UNDEFINED;
    VkFormat stencil = VK_FORMAT_UNDEFINED; ///< that of depth, where it has stencil
    friend bool operator==(const TargetFormats&, const TargetFormats&) = default;
};

/// What errors call a state; states that differ in nothing else share their pipelines.
struct StateLabel {
    vlMemory::String name;
    friend bool operator==(const StateLabel&, const StateLabel&) { return true; }
};

/// All of a pipeline's state that is the same for every draw of a pass.
struct PassState {
    StateLabel blendState;
    std::array<BlendState::Target, BlendState::targetCount> blend;
    bool alphaToCoverage = false;
    RasterState::Settings raster;
    DepthStencilState::Settings depthStencil;
    TargetFormats formats;
    friend bool operator==(const PassState&, const PassState&) = default;
};

/// Where a shader's slots lie in one entity's data.
struct InstanceLayout {
    struct Slot {
        vlMemory::String semantic;
        std::uint32_t offset = 0; ///< bytes
        std::uint32_t size = 0;   ///< bytes
        friend bool operator==(const Slot&, const Slot&) = default;
    };
    std::vector<Slot> slots;
    std::uint32_t stride = 0;
    friend bool operator==(const InstanceLayout&, const InstanceLayout&) = default;
};

struct PipelineKey {
    std::uint64_t program = 0; ///< serial
    std::uint32_t meshLayout = 0;
    std::uint32_t instanceLayout = 0;
    std::uint32_t passState = 0;
    friend bool operator==(const PipelineKey&, const PipelineKey&) = default;
};

/// Vertex buffer bindings.
inline constexpr std::uint32_t meshBinding = 0;
inline constexpr std::uint32_t instanceBinding = 1;
/// One vertex for all: 16 bytes of zeros, then four ones.
inline constexpr std::uint32_t constantBinding = 2;
inline constexpr std::array<float, 8> constantAttributes{0, 0, 0, 0, 1, 1, 1, 1};

/** Makes each pipeline once and keeps it while it is used. One that cannot be made is logged once
 *  and stays missing. Graphics thread only. */
class Pipelines final : public vlCommon::MaybeSingletonClass<Pipelines> {
public:
    explicit Pipelines(const vulkan::PipelineCache& cache) : cache_(cache) {}
    ~Pipelines();

    /// Equal ones have the same number.
    std::uint32_t passStateId(const PassState& state);
    std::uint32_t instanceLayoutId(const Shader& shader);
    const InstanceLayout& instanceLayout(std::uint32_t id) const { return instanceLayouts_[id]; }

    /// Null when it cannot be made.
    VkPipeline get(const PipelineKey& key, const Program::Gpu& program, const Mesh::Gpu& mesh);
    /// Of a program with a compute stage. Null when it cannot be made.
    VkPipeline getCompute(const Program::Gpu& program);
    /// The program is going.
    void forget(std::uint64_t program);
    /// A frame begins: drops what has not been used for long.
    void beginFrame();
    std::uint64_t madeCount() const { return made_; }
    std::size_t heldCount() const { return pipelines_.size() + computes_.size(); }

private:
    struct KeyHash {
        std::size_t operator()(const PipelineKey& key) const;
    };
    struct Entry {
        VkPipeline pipeline = VK_NULL_HANDLE;
        std::uint64_t lastFrame = 0;
    };

    struct StateEntry {
        PassState state;
        std::uint64_t lastFrame = 0;
        bool used = false;
    };

    VkPipeline make(const PipelineKey& key, const Program::Gpu& program, const Mesh::Gpu& mesh);
    VkPipeline makeCompute(const Program::Gpu& program);
    VkPipeline finish(VkResult result, VkPipeline pipeline, const char* what);
    template <class Condition> void eraseIf(Condition condition);
    template <class Condition> void eraseComputesIf(Condition condition);
    void dropStates(std::uint64_t unusedFrames);

    const vulkan::PipelineCache& cache_;
    std::vector<StateEntry> passStates_; ///< by number; those of no use wait for the next
    std::size_t statesInUse_ = 0;
    std::vector<InstanceLayout> instanceLayouts_;
    std::unordered_map<PipelineKey, Entry, KeyHash> pipelines_;
    std::unordered_map<std::uint64_t, Entry> computes_; ///< by program
    std::uint64_t frame_ = 0;
    std::uint64_t made_ = 0;
};

} // namespace vlGraphics::render
