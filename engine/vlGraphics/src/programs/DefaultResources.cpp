#include "programs/DefaultResources.h"

#include "Assets.h"

#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Shader.h>

#include <fmt/format.h>

#include <cstddef>
#include <cstdlib>

namespace vlGraphics {

namespace {

vlImages::Image makeChecks() {
    constexpr std::uint32_t size = 8;
    constexpr std::byte white{255};
    constexpr std::byte grey{150};
    vlImages::Image image(size, size, vlImages::PixelFormat::rgba8);
    std::byte* pixel = image.pixels.data();
    for (std::uint32_t y = 0; y < size; ++y) {
        for (std::uint32_t x = 0; x < size; ++x, pixel += 4) {
            const std::byte level = (x + y) % 2 == 0 ? white : grey;
            pixel[0] = pixel[1] = pixel[2] = level;
            pixel[3] = std::byte{255};
        }
    }
    return image;
}

/// The names are valid: only memory could be missing.
template <class Manager> auto& createHidden(vlMemory::StringView name) {
    auto* resource = Manager::getInstance()->createOrRetrieve(name);
    if (resource == nullptr) std::abort();
    resource->setHidden(true);
    return *resource;
}

vlCommon::Result<> loadNamed(Resource& resource) {
    if (const auto loaded = resource.load(); !loaded)
        return vlCommon::fail(fmt::format("'{}': {}", resource.getName(), loaded.error().message));
    return {};
}

vlCommon::Result<> createTexture() {
    auto& texture = createHidden<TextureManager>(DefaultNames::texture);
    texture.setImage(makeChecks());
    // Levels are made by the device, which compiles something for it: not worth it before the first
    // picture.
    texture.setMipCount(1);
    return loadNamed(texture);
}

vlCommon::Result<> createSampler() {
    return loadNamed(createHidden<SamplerManager>(DefaultNames::sampler));
}

vlCommon::Result<> createShader(const DefaultShader& description) {
    auto& program = createHidden<ProgramManager>(fmt::format("{}_PROGRAM", description.name));
    program.setFromMemory(sourcesOf(description));
    auto& shader = createHidden<ShaderManager>(description.name);
    shader.setProgram(&program);
    if (ConstantBuffer* buffer = shader.addConstantBuffer(0, 0)) {
        buffer->addPassMemorySlot()->setAsViewMatrix();
        buffer->addPassMemorySlot()->setAsProjectionMatrix();
        buffer->addPassMemorySlot()->setAsCameraPosition();
    }
    shader.addInstanceMemorySlot()->setAsWorldMatrix();
    if (description.uv) {
        shader.addTexture(TextureManager::getInstance()->handleOf(DefaultNames::texture), 0, 0);
        shader.addSampler(SamplerManager::getInstance()->handleOf(DefaultNames::sampler), 0, 0);
    }
    return loadNamed(program);
}

} // namespace

const std::array<DefaultShader, 4> defaultShaders{
        DefaultShader{DefaultNames::positionShader, false, false},
        DefaultShader{DefaultNames::normalShader, true, false},
        DefaultShader{DefaultNames::uvShader, false, true},
        DefaultShader{DefaultNames::uvNormalShader, true, true}};

ProgramSourcesHolder sourcesOf(const DefaultShader& shader) {
    ProgramSourcesHolder sources;
    sources.setVertexMemory(assets::asset("default_vertex.hlsl"));
    sources.setPixelMemory(assets::asset("default_pixel.hlsl"));
    for (const SHADER_TYPE stage : {SHADER_TYPE::VERTEX, SHADER_TYPE::PIXEL}) {
        if (shader.normal) sources.addDefineMacro(stage, "HAS_NORMAL", "1");
        if (shader.uv) sources.addDefineMacro(stage, "HAS_UV", "1");
    }
    return sources;
}

vlCommon::Result<> createDefaultResources() {
    if (auto made = createTexture(); !made) return made;
    if (auto made = createSampler(); !made) return made;
    for (const DefaultShader& shader : defaultShaders)
        if (auto made = createShader(shader); !made) return made;
    CameraManager::getInstance()->getDefaultCamera()->setHidden(true);
    createHidden<RenderQueueManager>(RenderQueueManager::DEFAULT_RENDER_QUEUE);
    CompositorManager::getInstance()->getDefaultCompositor()->setHidden(true);
    return {};
}

} // namespace vlGraphics
