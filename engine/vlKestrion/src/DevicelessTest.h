#pragma once
#include <vlGraphics/BlendState.h>
#include <vlGraphics/Buffer.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/DepthStencilState.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RasterState.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/Viewport.h>
#include <vlKestrion/Material.h>
#include <vlScripts/ScriptManager.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace vlKestrion {

/// Ends the test where it is null.
template <class T> T& existing(T* resource) {
    if (resource == nullptr) throw std::runtime_error("there is no such resource");
    return *resource;
}

/** An engine without a device: every manager, empty. */
class DevicelessTest : public testing::Test {
protected:
    ~DevicelessTest() override {
        // Entities know their nodes and nodes their entities.
        queues_.clear();
        nodes_.clear();
    }

    vlGraphics::BlendStateManager blendStates_;
    vlGraphics::DepthStencilStateManager depthStencilStates_;
    vlGraphics::RasterStateManager rasterStates_;
    vlGraphics::ViewportManager viewports_;
    vlGraphics::SamplerManager samplers_;
    vlGraphics::BufferManager buffers_;
    vlGraphics::TextureManager textures_;
    vlGraphics::MeshManager meshes_;
    vlGraphics::ProgramManager programs_;
    vlGraphics::ShaderManager shaders_;
    vlGraphics::CameraManager cameras_;
    vlGraphics::NodeManager nodes_;
    vlGraphics::RenderQueueManager queues_;
    vlGraphics::CompositorManager compositors_;
    vlScripts::ScriptManager scripts_;
    MaterialManager materials_;
};

} // namespace vlKestrion
