// From the edit of a program's source to the first picture drawn with it, against the bare HLSL
// compiler over the same stages, and against that and what the driver takes to draw with the
// modules for the first time. Without the frame that anything would have cost, and without the wait
// for the graphics thread's turn, which the bench "messages" shows.
#include "Report.h"
#include "bare_vulkan.h"
#include "hlsl_programs.h"
#include "programs/BindingModel.h"
#include "programs/HlslCompiler.h"
#include "vulkan/ProgramGpu.h"

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

constexpr std::uint32_t width = 640;
constexpr std::uint32_t height = 360;
constexpr std::uint32_t vertexStride = 32;
/// Position, normal, texture coordinates. It lies where no program bends it, and is set up by its
/// node.
constexpr std::array<float, 24> vertices{-4, 0, -4, 0, 1, 0, 0,  0, 0, 0, 6, 0,
                                         1,  0, 0,  4, 4, 0, -4, 0, 1, 0, 4, 4};
/// Of all the members of the lights.
constexpr std::array<float, 4> lightValues{0.5F, 1, 2, 9};
constexpr std::size_t lightVectors = 11;

vlImages::Image makeTexture() {
    constexpr std::uint32_t side = 8;
    vlImages::Image image(side, side, vlImages::PixelFormat::rgba8);
    for (std::size_t i = 0; i < image.pixels.size(); ++i)
        image.pixels.data()[i] = static_cast<std::byte>(i % 4 == 3 ? 255 : 64 + i * 37 % 192);
    return image;
}

class Surface final : public PresentSurface {
public:
    Kind getKind() const override { return Kind::none; }
    Size getSize() const override { return {width, height}; }
    bool isExposed() const override { return true; }
};

/** A large triangle, drawn with the program that is edited. */
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
        const std::uint64_t made = counts().pipelinesMade;
        drawFrame();
        const double passed = nowMs() - start;
        if (counts().pipelinesMade != made + 1) stop("an edit made other than one pipeline");
        return passed;
    }
    /// Of the last edit, until its result was in use.
    double compiledMs() const { return compiledMs_; }
    double frameMs() {
        const double start = nowMs();
        drawFrame();
        return nowMs() - start;
    }
    vlImages::Image readBack() {
        auto image = context_->readBackBuffer();
        if (!image) stop(image.error().message);
        return *std::move(image);
    }
    const Camera& camera() const { return *context_->getRenderCamera(); }
    vlMaths::Matrix world() const { return node_->getAbsoluteTransform(); }

private:
    static const Renderer::Counts& counts() {
        return System::getInstance()->getRenderer().getCounts();
    }
    void drawFrame() {
        System& system = *System::getInstance();
        const std::uint64_t drawn = counts().draws;
        system.tickForNewFrame(*context_);
        system.getRenderer().beginFrame();
        CompositorManager::getInstance()->getActiveCompositor()->draw();
        system.getRenderer().endFrame();
        system.getRenderer().endWork();
        if (counts().draws == drawn) stop("nothing was drawn");
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
        ConstantBuffer& lights = *shader.addConstantBuffer(1, 0);
        for (std::size_t i = 0; i < lightVectors; ++i)
            lights.addPassMemorySlot()->setFromVector(
                    lightValues[0], lightValues[1], lightValues[2], lightValues[3]);
        Texture& texture = *TextureManager::getInstance()->createOrRetrieve("bench");
        texture.setImage(makeTexture());
        texture.setMipCount(1);
        if (const auto loaded = texture.load(); !loaded) stop(loaded.error().message);
        for (std::uint32_t slot = 0; slot < 4; ++slot)
            shader.addTexture(TextureManager::getInstance()->handleOf("bench"), slot, 0);
    }

    void makeEntity() {
        MeshData data;
        data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0},
                           {"NORMAL", FORMAT::R32G32B32_FLOAT, 12},
                           {"TEXCOORD", FORMAT::R32G32_FLOAT, 24}};
        data.vertexStride = vertexStride;
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
        node_ = NodeManager::getInstance()->createOrRetrieve("bench");
        node_->setPosition({0, 0, 3});
        node_->setScale({4, 4, 4});
        node_->setOrientation(vlMaths::Quaternion::fromTo({0, 1, 0}, {0, 0, -1}));
        entity.setParentNode(node_);
    }

    Surface surface_;
    RenderContext* context_ = nullptr;
    Program* program_ = nullptr;
    Node* node_ = nullptr;
    double compiledMs_ = 0;
};

/** The same picture by hand, with the modules that the engine's compiler makes of the same text. */
class BareSide {
public:
    explicit BareSide(const Scene& engine) {
        const Camera& camera = engine.camera();
        const std::array matrices{camera.getViewMatrix(), camera.getProjectionMatrix()};
        std::array<std::array<float, 4>, lightVectors> lights{};
        lights.fill(lightValues);
        const vlMaths::Matrix world = engine.world();
        const vlImages::Image texture = makeTexture();
        const CompiledProgram program = compile(makeSources(1, 0).front());
        const vlMemory::String device = System::getInstance()->getDeviceDescription();
        BareScene scene;
        scene.deviceName = device;
        scene.width = width;
        scene.height = height;
        scene.vertexStride = vertexStride;
        scene.attributes = {{0, 3, 0}, {1, 3, 12}, {2, 2, 24}};
        scene.program = bareOf(program);
        scene.constants = {std::as_bytes(std::span(matrices)), std::as_bytes(std::span(lights))};
        scene.texels = {texture.pixels.data(), texture.pixels.size()};
        scene.clearColor = {0, 0, 0, 1};
        scene.meshes = {{std::as_bytes(std::span(vertices)), {}, 0, 1}};
        scene.instances = {&world, 1};
        loop_ = BareVulkan::create(scene);
        drawMs();
    }

    /// What a picture takes the first time, from the words of the modules on, and not the second
    /// time.
    double firstUseMs(const ProgramSourcesHolder& sources) {
        const CompiledProgram program = compile(sources);
        const BareProgram bare = bareOf(program);
        const double start = nowMs();
        loop_->setProgram(bare);
        pipelineMs_ = nowMs() - start;
        const double first = drawMs();
        return pipelineMs_ + first - drawMs();
    }
    /// Of it, until there was a pipeline.
    double pipelineMs() const { return pipelineMs_; }
    std::vector<std::byte> readBack() { return loop_->readBack(); }

private:
    double drawMs() {
        const double start = nowMs();
        loop_->beginFrame();
        loop_->endFrame();
        loop_->waitIdle();
        return nowMs() - start;
    }
    static CompiledProgram compile(const ProgramSourcesHolder& sources) {
        CompileRequest request = makeRequest(PROGRAM_TYPE::PIPELINE, sources, true, {});
        request.writingStages = writingStages();
        request.mostPasses = mostLoopPasses();
        CompileOutcome outcome = compileHlsl(request).outcome;
        if (!outcome) stop(outcome.error().getErrorMessage());
        return *std::move(outcome);
    }
    static BareProgram bareOf(const CompiledProgram& program) {
        BareProgram bare;
        bare.vertexSpirv = program.spirv[static_cast<std::size_t>(SHADER_TYPE::VERTEX)];
        bare.pixelSpirv = program.spirv[static_cast<std::size_t>(SHADER_TYPE::PIXEL)];
        for (const ReflectedResource& resource : program.reflection.resources)
            bare.bindings.push_back({BindingModel::bindingOf(resource.resourceClass, resource.slot),
                                     resource.resourceClass == RESOURCE_CLASS::CONSTANT_BUFFER
                                             ? BareBinding::Kind::constants
                                     : resource.resourceClass == RESOURCE_CLASS::SAMPLER
                                             ? BareBinding::Kind::sampler
                                             : BareBinding::Kind::texture});
        return bare;
    }

    std::unique_ptr<BareVulkan> loop_;
    double pipelineMs_ = 0;
};

/// Both must have drawn the same, or the ratio says nothing.
void comparePictures(Scene& scene, BareSide& bare) {
    const vlImages::Image ours = scene.readBack();
    const std::vector<std::byte> peers = bare.readBack();
    if (ours.pixels.size() != peers.size() ||
        std::memcmp(ours.pixels.data(), peers.data(), peers.size()) != 0)
        stop("the pictures are not the same");
    const std::size_t middle = (std::size_t{height} / 2 * width + width / 2) * 4;
    constexpr std::array<std::byte, 4> cleared{
            std::byte{0}, std::byte{0}, std::byte{0}, std::byte{255}};
    if (std::memcmp(peers.data() + middle, cleared.data(), cleared.size()) == 0)
        stop("there is nothing in the picture");
}

void compare(int edits) {
    Scene scene;
    scene.editMs(makeSources(1, 0).front());
    compileBare(makeSources(1, 0).front());
    BareSide bare(scene);
    Samples total;
    Samples withoutFrame;
    Samples compiled;
    Samples compiler;
    Samples firstUse;
    Samples pipeline;
    Samples floor;
    Samples frame;
    for (int edit = 1; edit <= edits; ++edit) {
        const auto sources = makeSources(1, edit).front();
        total.add(scene.editMs(sources));
        compiled.add(scene.compiledMs());
        frame.add(scene.frameMs());
        withoutFrame.add(total.values().back() - frame.values().back());
        const double start = nowMs();
        compileBare(sources);
        compiler.add(nowMs() - start);
        firstUse.add(bare.firstUseMs(sources));
        pipeline.add(bare.pipelineMs());
        floor.add(compiler.values().back() + firstUse.values().back());
        comparePictures(scene, bare);
    }
    fmt::print("a frame without an edit: {} ms\n", withSpread(frame));
    fmt::print("the driver's first use of the modules, less a frame: {} ms; of it the pipeline: {} "
               "ms\n",
               withSpread(firstUse),
               withSpread(pipeline));
    summarise("edit to the result in use, ms",
              withSpread(compiled),
              withSpread(compiler),
              pairedRatios(compiled, compiler),
              "1.5");
    summarise("edit to the picture, less a frame, against the compiler alone, ms",
              withSpread(withoutFrame),
              withSpread(compiler),
              pairedRatios(withoutFrame, compiler),
              "1.5");
    summarise("edit to the picture, less a frame, against the compiler and the driver, ms",
              withSpread(withoutFrame),
              withSpread(floor),
              pairedRatios(withoutFrame, floor));
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    // Both sides draw with the same modules: what a driver keeps on the disk of the one it would
    // find for the other, and in the next run for both.
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
    setenv("__GL_SHADER_DISK_CACHE", "0", 1);
    glslang::InitializeProcess();
    bench::compare(argc > 1 ? std::max(std::atoi(argv[1]), 1) : 40);
    glslang::FinalizeProcess();
    return 0;
}
