#include "interfaces/preview/PreviewScene.h"

#include "Assets.h"
#include "interfaces/HeadlessSurface.h"

#include <vlGraphics/Compositor.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/System.h>

#include <cstring>

namespace vlEditor {
namespace {

using namespace vlGraphics;

constexpr std::uint32_t patternSide = 16; ///< texels

std::string hiddenName(std::string_view part) {
    return "EDITOR_PREVIEW_" + std::string(part);
}

/// Null when there is one already, else the new one.
template <class Manager> auto* makeHidden(const std::string& name) {
    auto& manager = *Manager::getInstance();
    auto* made = manager.get(name) == nullptr ? manager.createOrRetrieve(name) : nullptr;
    if (made != nullptr) made->setHidden(true);
    return made;
}

template <class Manager> auto handleOf(const std::string& name) {
    return Manager::getInstance()->handleOf(name);
}

/// One that covers the whole target.
vlCommon::Result<> makeTriangle() {
    Mesh* mesh = makeHidden<MeshManager>(hiddenName("TRIANGLE"));
    if (mesh == nullptr) return {};
    constexpr std::array<float, 9> places{-1, 3, 0.5F, 3, -1, 0.5F, -1, -1, 0.5F};
    MeshData data;
    data.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0}};
    data.vertexStride = 12;
    data.vertexCount = 3;
    data.vertices = vlMemory::Buffer(sizeof places);
    std::memcpy(data.vertices.data(), places.data(), sizeof places);
    computeBounds(data);
    if (auto taken = mesh->setData(std::move(data)); !taken) return taken;
    return mesh->load();
}

vlCommon::Result<Texture*>
makeTarget(std::string_view part, std::uint32_t side, FORMAT format, RENDER_FLAG flag) {
    const std::string name = hiddenName(part);
    if (Texture* made = makeHidden<TextureManager>(name)) {
        made->setWidth(side);
        made->setHeight(side);
        made->setFormat(format);
        made->setRenderFlag(flag);
        made->setGammaCorrected(false);
    }
    Texture* texture = TextureManager::getInstance()->get(name);
    if (auto loaded = texture->load(); !loaded) return tl::unexpected(loaded.error());
    return texture;
}

/// A gradient along each axis, darker squares, and a light mark in one corner.
vlImages::Image patternImage() {
    constexpr std::array<std::uint8_t, 4> mark{255, 245, 170, 255};
    vlImages::Image image(patternSide, patternSide, vlImages::PixelFormat::rgba8);
    for (std::uint32_t y = 0; y < patternSide; ++y)
        for (std::uint32_t x = 0; x < patternSide; ++x) {
            const bool isMark = x < 6 && y < 6 && (x < 2 || y < 2);
            const bool isDark = (x / 4 + y / 4) % 2 == 1;
            const std::uint32_t share = isDark ? 5 : 10;
            const std::array<std::uint32_t, 4> color{
                    (55 + 200 * x / (patternSide - 1)) * share / 10,
                    (55 + 200 * y / (patternSide - 1)) * share / 10,
                    (200 - 150 * x / (patternSide - 1)) * share / 10,
                    255};
            std::byte* to = image.pixels.data() + (y * patternSide + x) * std::size_t{4};
            for (std::size_t channel = 0; channel < 4; ++channel)
                to[channel] = static_cast<std::byte>(isMark ? mark[channel] : color[channel]);
        }
    return image;
}

void addScenePass(TargetOperations& operations, const std::string& queue) {
    operations.addRenderScenePass(TargetOperations::atEnd)
            ->setRenderQueue(handleOf<RenderQueueManager>(queue));
}

void addOperations(CompositorNode& node, const PreviewScene::Drawing& drawing) {
    if (drawing.first != nullptr) addOperations(node, *drawing.first);
    TargetOperations& operations = *node.addOperations();
    if (drawing.isDepth)
        operations.setDepthTarget(handleOf<TextureManager>(hiddenName("DEPTHS")));
    else
        operations.addColorTarget({handleOf<TextureManager>(hiddenName("TARGET")), 0});
    ClearTargetsPass& clear = *operations.addClearTargetsPass(TargetOperations::atEnd);
    clear.setClearColor({0, 0, 0, 0});
    clear.setShouldClearColor(!drawing.isDepth);
    clear.setShouldClearDepth(drawing.isDepth);
    addScenePass(operations, hiddenName(drawing.name));
}

void makeQueue(const std::string& name) {
    RenderQueue* queue = makeHidden<RenderQueueManager>(name);
    if (queue == nullptr) return;
    queue->getRenderStrategy().setFrustumCull(false);
    EntityRenderInfo info;
    info.mesh = handleOf<MeshManager>(hiddenName("TRIANGLE"));
    info.shader = handleOf<ShaderManager>(name);
    queue->addEntity()->setRenderInfo(info);
}

void makeShader(const std::string& name) {
    Shader* shader = makeHidden<ShaderManager>(name);
    if (shader == nullptr) return;
    shader->setProgram(handleOf<ProgramManager>(name));
    shader->addTexture(Handle<Texture>(), 0, 0);
    shader->addSampler(Handle<Sampler>(), 0, 0);
    shader->addConstantBuffer(0, 0)->addPassMemorySlot();
}

vlCommon::Result<> makeProgram(const std::string& name, const PreviewScene::Drawing& drawing) {
    Program* program = makeHidden<ProgramManager>(name);
    if (program == nullptr) return {};
    ProgramSourcesHolder sources;
    sources.setVertexMemory(assets::asset("preview_place.hlsl"));
    sources.setPixelMemory(assets::asset(drawing.pixelShader));
    if (!drawing.macro.empty()) sources.addDefineMacroPixel(drawing.macro, "1");
    program->setFromMemory(std::move(sources));
    return program->load();
}

/// Its pictures go nowhere: what is drawn is read back from the target.
vlCommon::Result<RenderContext*> makeContext() {
    static HeadlessSurface surface({1, 1}); // outlives the engine, which ends the context
    auto& contexts = *RenderContextManager::getInstance();
    if (RenderContext* made = contexts.getRenderContextOf(surface)) return made;
    return contexts.createRenderContext(RenderContextDescriptor(surface));
}

} // namespace

vlCommon::Result<std::optional<Shader*>> PreviewScene::prepare(const Drawing& drawing) {
    const std::string name = hiddenName(drawing.name);
    if (auto made = makeTriangle(); !made) return tl::unexpected(made.error());
    if (auto made = makeProgram(name, drawing); !made) return tl::unexpected(made.error());
    makeShader(name);
    makeQueue(name);
    ProgramManager& programs = *ProgramManager::getInstance();
    const Program& program = *programs.get(name);
    if (program.isCompiling()) programs.adoptFinished();
    if (program.isUsable()) return ShaderManager::getInstance()->get(name);
    if (program.isCompiling()) return std::optional<Shader*>();
    return vlCommon::fail(program.getLastCompilationResult().getErrorMessage());
}

vlCommon::Result<vlImages::Image> PreviewScene::draw(const Drawing& drawing, std::uint32_t side) {
    const auto target =
            makeTarget("TARGET", side, FORMAT::R32G32B32A32_FLOAT, RENDER_FLAG::COLOR_TARGET);
    if (!target) return tl::unexpected(target.error());
    const auto context = makeContext();
    if (!context) return tl::unexpected(context.error());
    const std::string name = hiddenName(drawing.name);
    if (Compositor* made = makeHidden<CompositorManager>(name))
        addOperations(*made->addNode(), drawing);
    (*context)->setCompositor(handleOf<CompositorManager>(name));
    auto& system = *vlGraphics::System::getInstance();
    system.tickForNewFrame(**context);
    system.getRenderer().beginFrame();
    CompositorManager::getInstance()->getActiveCompositor()->draw();
    system.getRenderer().endFrame();
    return (*target)->convertToImage();
}

vlCommon::Result<Handle<Texture>> PreviewScene::pattern() {
    const std::string name = hiddenName("PATTERN");
    if (Texture* made = makeHidden<TextureManager>(name)) {
        made->setGammaCorrected(false);
        made->setImage(patternImage());
    }
    auto& textures = *TextureManager::getInstance();
    if (auto loaded = textures.get(name)->load(); !loaded) return tl::unexpected(loaded.error());
    return textures.handleOf(name);
}

vlCommon::Result<Handle<Texture>> PreviewScene::depths() {
    const auto made =
            makeTarget("DEPTHS", patternSide, FORMAT::D32_FLOAT, RENDER_FLAG::DEPTH_TARGET);
    if (!made) return tl::unexpected(made.error());
    return TextureManager::getInstance()->handleOf(*made);
}

} // namespace vlEditor
