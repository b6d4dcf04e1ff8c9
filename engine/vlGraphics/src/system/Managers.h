#pragma once
#include "programs/ProgramCompiler.h"

#include <vlGraphics/BlendState.h>
#include <vlGraphics/Buffer.h>
#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Sampler.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/Texture.h>
#include <vlGraphics/Viewport.h>

namespace vlGraphics {

/** Every manager of the library. Resources refer to each other through the managers while they go,
 *  so all are emptied, users before what they use, before the first manager ends. */
class Managers {
public:
    /// Compiled programs are kept in the folder; an empty one keeps none.
    Managers(std::uint32_t compileThreads, vlMemory::StringView programFolder)
        : compiler_(compileThreads, programFolder) {}
    ~Managers();
    Managers(const Managers&) = delete;
    Managers& operator=(const Managers&) = delete;

private:
    BlendStateManager blendStates_;
    DepthStencilStateManager depthStencilStates_;
    RasterStateManager rasterStates_;
    ViewportManager viewports_;
    SamplerManager samplers_;
    BufferManager buffers_;
    TextureManager textures_;
    MeshManager meshes_;
    ProgramManager programs_;
    ShaderManager shaders_;
    CameraManager cameras_;
    NodeManager nodes_;
    RenderQueueManager queues_;
    CompositorManager compositors_;
    ProgramCompiler compiler_; ///< below the programs: ends before them
    RenderContextManager contexts_;
};

} // namespace vlGraphics
