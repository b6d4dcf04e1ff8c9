#pragma once
#include "render/PassRecorder.h"
#include "render/PassStates.h"
#include "render/ShaderBinder.h"

#include <vlGraphics/RenderQueue.h>

#include <utility>
#include <vector>

namespace vlGraphics::render {

/** Records the draws of one scene pass from a draw list. Lives while the pass is recorded. */
class SceneDrawer {
public:
    SceneDrawer(PassRecorder& recorder, const RenderQueue& queue, const DrawList& list);

    void draw(const PassInputs& inputs, const ScenePassState& state);

private:
    struct Group {
        std::size_t firstRun = 0;
        std::size_t endRun = 0;
        std::uint32_t instances = 0;
    };
    void setDragged(const ScenePassState& state) const;
    void bindShaders();
    Group nextGroup(std::size_t first) const;
    bool fillInstances(const Group& group);
    void fillEntities(const BoundShader& shader, const DrawRun& run, std::byte* at) const;
    void drawGroup(const Group& group);
    void orderAccess(const BoundShader& shader);
    bool bindFor(const BoundShader& shader, const Mesh::Gpu& mesh);
    void drawRun(const Mesh::Gpu& mesh, std::uint32_t count, std::uint32_t first);

    PassRecorder& recorder_;
    const RenderQueue& queue_;
    const DrawList& list_;
    VkCommandBuffer commands_;
    std::vector<const BoundShader*> shaders_; ///< by run; null where it is not drawn
    std::uint32_t passState_ = 0;

    // What is bound at the moment.
    PipelineKey key_;
    VkPipeline pipeline_ = VK_NULL_HANDLE;
    VkPipeline boundPipeline_ = VK_NULL_HANDLE;
    const BoundShader* boundShader_ = nullptr;
    const Mesh::Gpu* boundMesh_ = nullptr;
};

} // namespace vlGraphics::render
