#include "render/EngineTest.h"

#include <vlGraphics/Node.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace vlGraphics {

Rgba pixelAt(const vlImages::Image& image, std::uint32_t x, std::uint32_t y) {
    const std::byte* at = image.view().row(y) + std::size_t{x} * 4;
    const auto byte = [at](std::size_t i) { return std::to_integer<std::uint8_t>(at[i]); };
    if (image.format == vlImages::PixelFormat::bgra8) return {byte(2), byte(1), byte(0), byte(3)};
    return {byte(0), byte(1), byte(2), byte(3)};
}

std::uint8_t encoded(float linear) {
    const float value =
            linear <= 0.0031308F ? linear * 12.92F : 1.055F * std::pow(linear, 1 / 2.4F) - 0.055F;
    return static_cast<std::uint8_t>(std::lround(value * 255));
}

void EngineTest::SetUp() {
    setenv("VLGRAPHICS_VALIDATION", "1", 1);
    LogManager::getInstance().setReceiver(&receiver_);
    messagesBefore_ = System::getValidationMessageCount();
    Configuration configuration;
    configuration.cacheFolder =
            (std::filesystem::temp_directory_path() / "vlGraphics_test").string();
    const auto started = System::initialize(configuration);
    ASSERT_TRUE(started.has_value()) << started.error().message;
}

void EngineTest::TearDown() {
    System::shutdown();
    LogManager::getInstance().setReceiver(nullptr);
    EXPECT_EQ(System::getValidationMessageCount(), messagesBefore_);
    for (const std::string& line : log_)
        if (line.find("validation") != std::string::npos || HasFailure()) ADD_FAILURE() << line;
}

void EngineTest::drawFrame(RenderContext& context) {
    System& system = *System::getInstance();
    system.tickForNewFrame(context);
    system.getRenderer().beginFrame();
    CompositorManager::getInstance()->getActiveCompositor()->draw();
    system.getRenderer().endFrame();
}

vlImages::Image EngineTest::drawAndRead(RenderContext& context) {
    drawFrame(context);
    auto image = context.readBackBuffer();
    if (!image) {
        ADD_FAILURE() << image.error().message;
        return vlImages::Image(
                context.getWidth(), context.getHeight(), vlImages::PixelFormat::bgra8);
    }
    return *std::move(image);
}

RenderContext& EngineTest::makeContext(TestSurface& surface) {
    auto made = RenderContextManager::getInstance()->createRenderContext(
            RenderContextDescriptor(surface));
    if (!made) {
        ADD_FAILURE() << made.error().message;
        std::abort();
    }
    return **made;
}

Compositor& EngineTest::makeCompositor(RenderContext& context, std::string_view name) {
    Compositor& compositor = *CompositorManager::getInstance()->createOrRetrieve(name);
    context.setCompositor(CompositorManager::getInstance()->handleOf(name));
    return compositor;
}

TargetOperations& EngineTest::addBackBuffer(Compositor& compositor, const vlMaths::Vector& color) {
    TargetOperations& operations = *compositor.addNode()->addOperations();
    operations.setToBackBuffer(0);
    operations.setToChainDepthBuffer();
    operations.addClearTargetsPass(TargetOperations::atEnd)->setClearColor(color);
    return operations;
}

Shader&
EngineTest::makeShader(std::string_view name, std::string_view vertex, std::string_view pixel) {
    Program& program = *ProgramManager::getInstance()->createOrRetrieve(name);
    ProgramSourcesHolder sources;
    sources.setVertexMemory(vertex);
    sources.setPixelMemory(pixel);
    program.setFromMemory(sources);
    EXPECT_TRUE(program.load().has_value());
    ProgramManager::getInstance()->waitForAll();
    EXPECT_TRUE(program.isUsable()) << program.getLastCompilationResult().getErrorMessage();
    Shader& shader = *ShaderManager::getInstance()->createOrRetrieve(name);
    shader.setProgram(ProgramManager::getInstance()->handleOf(name));
    shader.addInstanceMemorySlot()->setAsWorldMatrix();
    return shader;
}

Mesh& EngineTest::makeMesh(std::string_view name, const std::vector<vlMaths::Vector>& positions) {
    MeshData data;
    data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0}};
    data.vertexStride = 12;
    data.vertexCount = static_cast<std::uint32_t>(positions.size());
    data.vertices = vlMemory::Buffer(positions.size() * 12);
    for (std::size_t i = 0; i < positions.size(); ++i)
        std::memcpy(data.vertices.data() + i * 12, &positions[i].x, 12);
    computeBounds(data);
    Mesh& mesh = *MeshManager::getInstance()->createOrRetrieve(name);
    EXPECT_TRUE(mesh.setData(std::move(data)).has_value());
    const auto loaded = mesh.load();
    EXPECT_TRUE(loaded.has_value()) << loaded.error().message;
    return mesh;
}

Entity& EngineTest::makeEntity(const Mesh& mesh, const Shader& shader, const vlMaths::Vector& at) {
    RenderQueue& queue =
            *RenderQueueManager::getInstance()->get(RenderQueueManager::DEFAULT_RENDER_QUEUE);
    Entity& entity = *queue.addEntity();
    EntityRenderInfo info;
    info.mesh = MeshManager::getInstance()->handleOf(mesh.getName());
    info.shader = ShaderManager::getInstance()->handleOf(shader.getName());
    entity.setRenderInfo(info);
    NodeManager& nodes = *NodeManager::getInstance();
    Node& node = *nodes.createOrRetrieve("node" + std::to_string(nodes.getCount()));
    node.setPosition(at);
    entity.setParentNode(&node);
    return entity;
}

void EngineTest::addEntity(RenderQueue& queue, const Mesh& mesh, const Shader& shader) {
    EntityRenderInfo info;
    info.mesh = MeshManager::getInstance()->handleOf(mesh.getName());
    info.shader = handleOf(shader);
    queue.addEntity()->setRenderInfo(info);
}

RenderScenePass&
EngineTest::addDraw(TargetOperations& operations, const Mesh& mesh, const Shader& shader) {
    RenderQueueManager& queues = *RenderQueueManager::getInstance();
    RenderQueue& queue = *queues.createOrRetrieve(newName());
    queue.getRenderStrategy().setFrustumCull(false);
    addEntity(queue, mesh, shader);
    RenderScenePass& pass = *operations.addRenderScenePass(TargetOperations::atEnd);
    pass.setRenderQueue(queues.handleOf(queue.getName()));
    return pass;
}

Texture& EngineTest::makeTarget(std::string_view name,
                                FORMAT format,
                                RENDER_FLAG flag,
                                std::uint32_t width,
                                std::uint32_t height) {
    Texture& texture = *TextureManager::getInstance()->createOrRetrieve(name);
    texture.setWidth(width);
    texture.setHeight(height);
    texture.setFormat(format);
    texture.setRenderFlag(flag);
    texture.setGammaCorrected(false);
    const auto loaded = texture.load();
    EXPECT_TRUE(loaded.has_value()) << loaded.error().message;
    return texture;
}

std::string EngineTest::newName() {
    static int names = 0;
    return "test" + std::to_string(++names);
}

std::size_t EngineTest::logged(std::string_view text) const {
    return static_cast<std::size_t>(
            std::count_if(log_.begin(), log_.end(), [text](const std::string& line) {
                return line.find(text) != std::string::npos;
            }));
}

} // namespace vlGraphics
