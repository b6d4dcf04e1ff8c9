#pragma once
#include <array>
#include <cstdint>
#include <string_view>

namespace vlEditor {

/** What a container can show, by number. */
enum class ContainerType : std::uint8_t {
    blendState = 1,
    buffer,
    camera,
    compositor,
    depthStencilState,
    engineWindow,
    log,
    material,
    mesh,
    rasterState,
    renderQueue,
    sampler,
    graph,
    script,
    shaderProgram,
    shader,
    texture
};

struct ViewMenuEntry {
    ContainerType type;
    std::string_view label;
};

/// In the order of the "View" menu.
inline constexpr std::array viewMenuEntries{
        ViewMenuEntry{ContainerType::engineWindow, "Engine View"},
        ViewMenuEntry{ContainerType::log, "Log View"},
        ViewMenuEntry{ContainerType::camera, "Camera View"},
        ViewMenuEntry{ContainerType::compositor, "Compositor View"},
        ViewMenuEntry{ContainerType::graph, "Graph Interaction View"},
        ViewMenuEntry{ContainerType::renderQueue, "Render Queues View"},
        ViewMenuEntry{ContainerType::buffer, "Buffers View"},
        ViewMenuEntry{ContainerType::mesh, "Meshes View"},
        ViewMenuEntry{ContainerType::sampler, "Samplers View"},
        ViewMenuEntry{ContainerType::texture, "Textures View"},
        ViewMenuEntry{ContainerType::material, "Materials View"},
        ViewMenuEntry{ContainerType::shaderProgram, "Shader Programs View"},
        ViewMenuEntry{ContainerType::shader, "Shaders View"},
        ViewMenuEntry{ContainerType::blendState, "Blend States View"},
        ViewMenuEntry{ContainerType::depthStencilState, "Depth Stencil States View"},
        ViewMenuEntry{ContainerType::rasterState, "Raster States View"},
        ViewMenuEntry{ContainerType::script, "Scripts View"}};

} // namespace vlEditor
