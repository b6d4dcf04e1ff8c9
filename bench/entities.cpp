// How long a frame of many entities takes through the engine, against a bare Vulkan loop that draws
// the same triangles with the same shaders on the same device. Both draw in turns within one run.
#include "Report.h"
#include "bare_vulkan.h"
#include "entity_scene.h"
#include "programs/HlslCompiler.h"

#include <vlGraphics/Compositor.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/System.h>

#include <fmt/format.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace bench {
namespace {

using namespace vlGraphics;

[[noreturn]] void fail(const std::string& line) {
    fmt::print(stderr, "entities: {}\n", line);
    std::exit(1);
}

struct Options {
    std::uint32_t entities = 10'000;
    std::uint32_t frames = 12; ///< a round
    std::uint32_t rounds = 9;
};

/// What one frame cost the thread that draws it, besides waiting for the device.
struct FrameCost {
    double recordingMs = 0; ///< from the frame's begin to its submission, processor time
};

class Surface final : public PresentSurface {
public:
    Kind getKind() const override { return Kind::none; }
    Size getSize() const override { return {EntityScene::width, EntityScene::height}; }
    bool isExposed() const override { return true; }
};

/** The scene in the engine, as a program that uses it would build it. */
class EngineSide {
public:
    explicit EngineSide(const EntityScene& scene) : scene_(scene) {
        Configuration configuration;
        configuration.presenting = false;
        configuration.validation = false;
        if (const auto started = System::initialize(configuration); !started)
            fail(started.error().message);
        const auto made = RenderContextManager::getInstance()->createRenderContext(
                RenderContextDescriptor(surface_));
        if (!made) fail(made.error().message);
        context_ = *made;
        setUpView();
        makeShader();
        for (std::uint32_t mesh = 0; mesh < scene.meshCount(); ++mesh)
            makeMesh(mesh);
        for (std::uint32_t entity = 0; entity < scene.entityCount(); ++entity)
            makeEntity(entity);
    }
    ~EngineSide() {
        RenderContextManager::getInstance()->eraseFor(surface_);
        System::shutdown();
    }
    EngineSide(const EngineSide&) = delete;
    EngineSide& operator=(const EngineSide&) = delete;

    void moveTo(std::uint32_t step) {
        for (std::uint32_t entity = 0; entity < scene_.entityCount(); ++entity)
            nodes_[entity]->setPosition(scene_.positionAt(entity, step));
    }

    FrameCost drawFrame() {
        System& system = *System::getInstance();
        system.tickForNewFrame(*context_);
        system.getRenderer().beginFrame();
        const double start = threadCpuMs();
        CompositorManager::getInstance()->getActiveCompositor()->draw();
        system.getRenderer().endFrame();
        return {threadCpuMs() - start};
    }
    void waitIdle() { System::getInstance()->getRenderer().endWork(); }
    vlImages::Image readBack() {
        auto image = context_->readBackBuffer();
        if (!image) fail(image.error().message);
        return *std::move(image);
    }
    const Camera& camera() const { return *CameraManager::getInstance()->get("bench"); }

private:
    void setUpView() {
        Camera& camera = *CameraManager::getInstance()->createOrRetrieve("bench");
        camera.setPosition(scene_.cameraPosition());
        camera.prepareForContext(*context_);
        const auto handle = CameraManager::getInstance()->handleOf("bench");
        context_->setRenderCamera(handle);
        context_->setCullingCamera(handle);
        Compositor& compositor = *CompositorManager::getInstance()->createOrRetrieve("bench");
        TargetOperations& operations = *compositor.addNode()->addOperations();
        operations.setToBackBuffer(0);
        operations.setToChainDepthBuffer();
        constexpr auto clear = EntityScene::clearColor;
        operations.addClearTargetsPass(TargetOperations::atEnd)
                ->setClearColor({clear[0], clear[1], clear[2], clear[3]});
        operations.addRenderScenePass(TargetOperations::atEnd);
        context_->setCompositor(CompositorManager::getInstance()->handleOf("bench"));
    }

    void makeShader() {
        Program& program = *ProgramManager::getInstance()->createOrRetrieve("bench");
        ProgramSourcesHolder sources;
        sources.setVertexMemory(EntityScene::vertexSource);
        sources.setPixelMemory(EntityScene::pixelSource);
        program.setFromMemory(sources);
        if (const auto loaded = program.load(); !loaded) fail(loaded.error().message);
        ProgramManager::getInstance()->waitForAll();
        if (!program.isUsable()) fail(program.getLastCompilationResult().getErrorMessage());
        Shader& shader = *ShaderManager::getInstance()->createOrRetrieve("bench");
        shader.setProgram(&program);
        shader.addInstanceMemorySlot()->setAsWorldMatrix();
        ConstantBuffer& constants = *shader.addConstantBuffer(0, 0);
        constants.addPassMemorySlot()->setAsViewMatrix();
        constants.addPassMemorySlot()->setAsProjectionMatrix();
    }

    void makeMesh(std::uint32_t index) {
        const EntityScene::Ball& ball = scene_.ball(index);
        MeshData data;
        data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0},
                           {"NORMAL", FORMAT::R32G32B32_FLOAT, 12}};
        data.vertexStride = EntityScene::vertexStride;
        data.vertexCount =
                static_cast<std::uint32_t>(ball.vertices.size() / EntityScene::vertexStride);
        data.vertices = vlMemory::Buffer(ball.vertices.size());
        std::memcpy(data.vertices.data(), ball.vertices.data(), ball.vertices.size());
        data.indices = ball.indices;
        computeBounds(data);
        Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve("ball " + std::to_string(index));
        if (const auto taken = mesh.setData(std::move(data)); !taken) fail(taken.error().message);
        if (const auto loaded = mesh.load(); !loaded) fail(loaded.error().message);
    }

    void makeEntity(std::uint32_t index) {
        RenderQueue& queue =
                *RenderQueueManager::getInstance()->get(RenderQueueManager::DEFAULT_RENDER_QUEUE);
        Entity& entity = *queue.addEntity();
        EntityRenderInfo info;
        info.mesh = MeshManager::getInstance()->handleOf("ball " +
                                                         std::to_string(scene_.meshOf(index)));
        info.shader = ShaderManager::getInstance()->handleOf("bench");
        entity.setRenderInfo(info);
        Node& node = *NodeManager::getInstance()->createOrRetrieve("node " + std::to_string(index));
        node.setPosition(scene_.positionAt(index, 0));
        entity.setParentNode(&node);
        nodes_.push_back(&node);
    }

    const EntityScene& scene_;
    Surface surface_;
    RenderContext* context_ = nullptr;
    std::vector<Node*> nodes_;
};

/** The same in the bare loop: instances sorted by mesh, ready in their buffer. */
class BareSide {
public:
    BareSide(const EntityScene& scene, const Camera& camera) : scene_(scene) {
        const CompiledProgram program = compile();
        BareScene bare;
        for (std::uint32_t mesh = 0; mesh < scene.meshCount(); ++mesh) {
            const auto first = static_cast<std::uint32_t>(order_.size());
            for (std::uint32_t entity = 0; entity < scene.entityCount(); ++entity)
                if (scene.meshOf(entity) == mesh) order_.push_back(entity);
            const auto count = static_cast<std::uint32_t>(order_.size()) - first;
            const EntityScene::Ball& ball = scene.ball(mesh);
            bare.meshes.push_back({ball.vertices, ball.indices, first, count});
        }
        std::vector<vlMaths::Matrix> instances(order_.size());
        place(instances, 0);
        const std::array<vlMaths::Matrix, 2> constants{camera.getViewMatrix(),
                                                       camera.getProjectionMatrix()};
        const vlMemory::String device = System::getInstance()->getDeviceDescription();
        bare.deviceName = device;
        bare.width = EntityScene::width;
        bare.height = EntityScene::height;
        bare.vertexStride = EntityScene::vertexStride;
        bare.attributes = {{0, 3, 0}, {1, 3, 3 * sizeof(float)}};
        bare.program.vertexSpirv = program.spirv[static_cast<std::size_t>(SHADER_TYPE::VERTEX)];
        bare.program.pixelSpirv = program.spirv[static_cast<std::size_t>(SHADER_TYPE::PIXEL)];
        bare.program.bindings = {{0, BareBinding::Kind::constants}};
        bare.constants = {std::as_bytes(std::span(constants))};
        bare.clearColor = EntityScene::clearColor;
        bare.instances = instances;
        loop_ = BareVulkan::create(bare);
    }

    FrameCost drawFrame() {
        loop_->beginFrame();
        const double start = threadCpuMs();
        if (moves_) place(loop_->instances(), step_);
        loop_->endFrame();
        return {threadCpuMs() - start};
    }
    void moveTo(std::uint32_t step) {
        moves_ = true;
        step_ = step;
    }
    void waitIdle() { loop_->waitIdle(); }
    std::vector<std::byte> readBack() { return loop_->readBack(); }

private:
    static CompiledProgram compile() {
        ProgramSourcesHolder sources;
        sources.setVertexMemory(EntityScene::vertexSource);
        sources.setPixelMemory(EntityScene::pixelSource);
        auto compiled = compileHlsl(PROGRAM_TYPE::PIPELINE, sources, true);
        if (!compiled) fail(compiled.error().getErrorMessage());
        return *std::move(compiled);
    }
    void place(std::span<vlMaths::Matrix> instances, std::uint32_t step) const {
        for (std::size_t i = 0; i < order_.size(); ++i)
            instances[i] = vlMaths::Matrix::translation(scene_.positionAt(order_[i], step));
    }

    const EntityScene& scene_;
    std::vector<std::uint32_t> order_; ///< entities, those of a mesh side by side
    std::unique_ptr<BareVulkan> loop_;
    bool moves_ = false;
    std::uint32_t step_ = 0;
};

struct Side {
    Samples frameCpuMs; ///< processor time of all threads, a software device's among them
    Samples frameMs;    ///< wall time, one a round
    Samples recordMs;   ///< processor time, one a round
    std::uint32_t step = 0;
};

/// Frames back to back, as fast as they go; the device's work included.
template <class Drawer>
void throughputRound(Drawer& drawer, Side& side, const Options& options, bool moving) {
    drawer.waitIdle();
    const double start = nowMs();
    const double cpuStart = processCpuMs();
    for (std::uint32_t i = 0; i < options.frames; ++i) {
        if (moving) drawer.moveTo(++side.step);
        drawer.drawFrame();
    }
    drawer.waitIdle();
    side.frameMs.add((nowMs() - start) / options.frames);
    side.frameCpuMs.add((processCpuMs() - cpuStart) / options.frames);
}

/// Frames one by one with an idle device, so that the device's own threads disturb nothing.
template <class Drawer>
void recordingRound(Drawer& drawer, Side& side, const Options& options, bool moving) {
    Samples costs;
    for (std::uint32_t i = 0; i < options.frames / 4 + 1; ++i) {
        const double start = threadCpuMs();
        if (moving) drawer.moveTo(++side.step);
        const double moved = threadCpuMs() - start;
        costs.add(moved + drawer.drawFrame().recordingMs);
        drawer.waitIdle();
    }
    side.recordMs.add(costs.median());
}

/// Both must have drawn the same, or the ratio says nothing.
void comparePictures(EngineSide& engine, BareSide& bare) {
    engine.drawFrame();
    bare.drawFrame();
    const vlImages::Image ours = engine.readBack();
    const std::vector<std::byte> peers = bare.readBack();
    if (ours.pixels.size() != peers.size()) fail("the pictures differ in size");
    constexpr std::size_t pixelBytes = 4;
    std::size_t differing = 0;
    std::size_t drawn = 0;
    for (std::size_t at = 0; at < peers.size(); at += pixelBytes) {
        differing += std::memcmp(ours.pixels.data() + at, peers.data() + at, pixelBytes) != 0;
        drawn += std::memcmp(peers.data() + at, peers.data(), pixelBytes) != 0;
    }
    const std::size_t count = peers.size() / pixelBytes;
    fmt::print("  pictures: {} of {} pixels differ, {} % covered\n",
               differing,
               count,
               drawn * 100 / count);
    if (differing * 1000 > count || drawn * 10 < count) fail("the pictures are not the same");
}

void run(const Options& options, std::uint32_t meshCount, bool moving) {
    const EntityScene scene(options.entities, meshCount);
    EngineSide engine(scene);
    BareSide bare(scene, engine.camera());
    const std::string what = fmt::format("{} entities, {} mesh{}, {}",
                                         options.entities,
                                         meshCount,
                                         meshCount == 1 ? "" : "es",
                                         moving ? "moving" : "static");
    fmt::print("{}: {} triangles, {}\n",
               what,
               scene.triangleCount(),
               System::getInstance()->getDeviceDescription());
    comparePictures(engine, bare);

    Side ours;
    Side peers;
    const std::uint64_t before = System::getInstance()->getRenderer().getCounts().draws;
    engine.drawFrame();
    fmt::print("  draws a frame: engine {}, bare {}\n",
               System::getInstance()->getRenderer().getCounts().draws - before,
               meshCount);
    for (std::uint32_t round = 0; round < options.rounds; ++round) {
        throughputRound(engine, ours, options, moving);
        throughputRound(bare, peers, options, moving);
        recordingRound(engine, ours, options, moving);
        recordingRound(bare, peers, options, moving);
    }
    summarise(what + ", frame",
              withSpread(ours.frameMs) + " ms",
              withSpread(peers.frameMs) + " ms",
              pairedRatios(ours.frameMs, peers.frameMs),
              "1.3");
    summarise(what + ", processor time of a frame",
              withSpread(ours.frameCpuMs) + " ms",
              withSpread(peers.frameCpuMs) + " ms",
              pairedRatios(ours.frameCpuMs, peers.frameCpuMs));
    summarise(what + ", recording alone",
              withSpread(ours.recordMs) + " ms",
              withSpread(peers.recordMs) + " ms",
              pairedRatios(ours.recordMs, peers.recordMs));
}

Options readOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        const auto value = static_cast<std::uint32_t>(std::atoi(argv[i + 1]));
        if (name == "--entities" && value > 0)
            options.entities = value;
        else if (name == "--frames" && value > 0)
            options.frames = value;
        else if (name == "--rounds" && value > 0)
            options.rounds = value;
        else
            fail("usage: entities [--entities N] [--frames N] [--rounds N]");
    }
    return options;
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    const bench::Options options = bench::readOptions(argc, argv);
    for (const std::uint32_t meshCount : {1U, 100U})
        for (const bool moving : {false, true})
            bench::run(options, meshCount, moving);
}
