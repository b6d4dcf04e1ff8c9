// From the edit of a program's source to the first picture drawn with it, against the bare HLSL
// compiler over the same stages. Without the frame that anything would have cost, and without the
// wait for the graphics thread's turn, which the bench "messages" shows.
#include "Report.h"
#include "hlsl_programs.h"

#include <vlGraphics/Compositor.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/System.h>

#include <fmt/format.h>
#include <glslang/Public/ShaderLang.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace bench {
namespace {

using namespace vlGraphics;

[[noreturn]] void stop(const std::string& line) {
    fmt::print(stderr, "shader_edit: {}\n", line);
    std::exit(1);
}

class Surface final : public PresentSurface {
public:
    Kind getKind() const override { return Kind::none; }
    Size getSize() const override { return {640, 360}; }
    bool isExposed() const override { return true; }
};

/** A triangle over the whole picture, drawn with the program that is edited. */
class Scene {
public:
    Scene() {
        Configuration configuration;
        configuration.presenting = false;
        configuration.validation = false;
        configuration.keepPrograms = false;
        if (const auto started = System::initialize(configuration); !started)
            stop(started.error().message);
        const auto made = RenderContextManager::getInstance()->createRenderContext(
                RenderContextDescriptor(surface_));
        if (!made) stop(made.error().message);
        context_ = *made;
        setUpView();
        makeShader();
        makeEntity();
    }
    ~Scene() {
        RenderContextManager::getInstance()->eraseFor(surface_);
        System::shutdown();
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// From the text to the end of the device's work on a picture drawn with it.
    double editMs(const ProgramSourcesHolder& sources) {
        const std::uint64_t before = program_->getBuild();
        const double start = nowMs();
        program_->setFromMemory(sources);
        if (const auto started = program_->load(); !started) stop(started.error().message);
        while (program_->getBuild() == before) {
            ProgramManager::getInstance()->adoptFinished();
            if (!program_->getLastCompilationResult().isSuccess())
                stop(program_->getLastCompilationResult().getErrorMessage());
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        compiledMs_ = nowMs() - start;
        drawFrame();
        return nowMs() - start;
    }
    /// Of the last edit, until its result was in use.
    double compiledMs() const { return compiledMs_; }
    double frameMs() {
        const double start = nowMs();
        drawFrame();
        return nowMs() - start;
    }

private:
    void drawFrame() {
        System& system = *System::getInstance();
        const std::uint64_t drawn = system.getRenderer().getCounts().draws;
        system.tickForNewFrame(*context_);
        system.getRenderer().beginFrame();
        CompositorManager::getInstance()->getActiveCompositor()->draw();
        system.getRenderer().endFrame();
        system.getRenderer().endWork();
        if (system.getRenderer().getCounts().draws == drawn) stop("nothing was drawn");
    }

    void setUpView() {
        Compositor& compositor = *CompositorManager::getInstance()->createOrRetrieve("bench");
        TargetOperations& operations = *compositor.addNode()->addOperations();
        operations.setToBackBuffer(0);
        operations.setToChainDepthBuffer();
        operations.addClearTargetsPass(TargetOperations::atEnd);
        operations.addRenderScenePass(TargetOperations::atEnd);
        context_->setCompositor(CompositorManager::getInstance()->handleOf("bench"));
    }

    void makeShader() {
        program_ = ProgramManager::getInstance()->createOrRetrieve("bench");
        Shader& shader = *ShaderManager::getInstance()->createOrRetrieve("bench");
        shader.setProgram(program_);
        shader.addInstanceMemorySlot()->setAsWorldMatrix();
        ConstantBuffer& pass = *shader.addConstantBuffer(0, 0);
        pass.addPassMemorySlot()->setAsViewMatrix();
        pass.addPassMemorySlot()->setAsProjectionMatrix();
    }

    void makeEntity() {
        constexpr std::array<float, 24> vertices{-4, -4, 3, 0, 0, -1, 0, 0, 0, 6,  3, 0,
                                                 0,  -1, 0, 1, 4, -4, 3, 0, 0, -1, 1, 1};
        MeshData data;
        data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0},
                           {"NORMAL", FORMAT::R32G32B32_FLOAT, 12},
                           {"TEXCOORD", FORMAT::R32G32_FLOAT, 24}};
        data.vertexStride = 32;
        data.vertexCount = 3;
        data.vertices = vlMemory::Buffer(sizeof vertices);
        std::memcpy(data.vertices.data(), vertices.data(), sizeof vertices);
        computeBounds(data);
        Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve("bench");
        if (const auto taken = mesh.setData(std::move(data)); !taken) stop(taken.error().message);
        if (const auto loaded = mesh.load(); !loaded) stop(loaded.error().message);
        RenderQueue& queue =
                *RenderQueueManager::getInstance()->get(RenderQueueManager::DEFAULT_RENDER_QUEUE);
        queue.getRenderStrategy().setFrustumCull(false);
        Entity& entity = *queue.addEntity();
        EntityRenderInfo info;
        info.mesh = MeshManager::getInstance()->handleOf("bench");
        info.shader = ShaderManager::getInstance()->handleOf("bench");
        entity.setRenderInfo(info);
        entity.setParentNode(NodeManager::getInstance()->createOrRetrieve("bench"));
    }

    Surface surface_;
    RenderContext* context_ = nullptr;
    Program* program_ = nullptr;
    double compiledMs_ = 0;
};

void compare(int edits) {
    Scene scene;
    scene.editMs(makeSources(1, 0).front());
    compileBare(makeSources(1, 0).front());
    Samples total;
    Samples withoutFrame;
    Samples compiled;
    Samples bare;
    Samples frame;
    for (int edit = 1; edit <= edits; ++edit) {
        const auto sources = makeSources(1, edit).front();
        frame.add(scene.frameMs());
        total.add(scene.editMs(sources));
        withoutFrame.add(total.values().back() - frame.values().back());
        compiled.add(scene.compiledMs());
        const double start = nowMs();
        compileBare(sources);
        bare.add(nowMs() - start);
    }
    fmt::print("a frame without an edit: {} ms\n", withSpread(frame));
    summarise("edit to the result in use, ms",
              withSpread(compiled),
              withSpread(bare),
              pairedRatios(compiled, bare),
              "1.5");
    summarise("edit to the picture, less a frame, ms",
              withSpread(withoutFrame),
              withSpread(bare),
              pairedRatios(withoutFrame, bare),
              "1.5");
    summarise("edit to the picture, ms",
              withSpread(total),
              withSpread(bare),
              pairedRatios(total, bare));
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    glslang::InitializeProcess();
    bench::compare(argc > 1 ? std::max(std::atoi(argv[1]), 1) : 40);
    glslang::FinalizeProcess();
    return 0;
}
