#pragma once
#include <vlGraphics/Buffer.h>
#include <vlGraphics/ContentLoader.h>
#include <vlGraphics/Node.h>
#include <vlScripts/ScriptManager.h>

namespace vlGraphics {

/** Every manager that works without a device, for the length of a test. */
struct TestManagers {
    BlendStateManager blendStates;
    DepthStencilStateManager depthStencilStates;
    RasterStateManager rasterStates;
    SamplerManager samplers;
    BufferManager buffers;
    TextureManager textures;
    MeshManager meshes;
    CameraManager cameras;
    ViewportManager viewports;
    ProgramManager programs;
    ShaderManager shaders;
    NodeManager nodes;
    RenderQueueManager renderQueues;
    CompositorManager compositors;
    vlScripts::ScriptManager scripts;
};

/// A mesh of one triangle with corners at distance `size` of the origin, and a TEXCOORD.
inline MeshData triangle(float size = 1) {
    MeshData mesh;
    mesh.attributes = {{"POSITION", FORMAT::R32G32B32_FLOAT, 0},
                       {"TEXCOORD", FORMAT::R32G32_FLOAT, 12}};
    mesh.vertexStride = 20;
    mesh.vertexCount = 3;
    const float values[] = {-size, 0, 0, 0, 0, size, 0, 0, 1, 0, 0, size, 0, 0, 1};
    mesh.vertices = vlMemory::Buffer(sizeof values);
    std::copy_n(reinterpret_cast<const std::byte*>(values), sizeof values, mesh.vertices.data());
    mesh.indices = {0, 1, 2};
    computeBounds(mesh);
    return mesh;
}

} // namespace vlGraphics
