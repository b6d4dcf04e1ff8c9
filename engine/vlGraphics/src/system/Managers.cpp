#include "system/Managers.h"

namespace vlGraphics {

Managers::~Managers() {
    compositors_.clear();
    queues_.clear();
    nodes_.clear();
    cameras_.clear();
    shaders_.clear();
    programs_.clear();
    meshes_.clear();
    textures_.clear();
    buffers_.clear();
    samplers_.clear();
    viewports_.clear();
    rasterStates_.clear();
    depthStencilStates_.clear();
    blendStates_.clear();
}

} // namespace vlGraphics
