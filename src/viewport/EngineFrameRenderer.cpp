#include "viewport/EngineFrameRenderer.h"

#include "viewport/EngineSurfaceState.h"
#include "viewport/EngineWindowEngineDataTracker.h"

#include <vlGraphics/ChangeCount.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/Program.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/System.h>

namespace vlEditor {
namespace {

vlGraphics::Renderer& renderer() {
    return vlGraphics::System::getInstance()->getRenderer();
}

} // namespace

std::uint64_t EngineFrameRenderer::getChangeCount() const {
    return vlGraphics::ChangeCount::get();
}

void EngineFrameRenderer::beginTurn() {
    vlGraphics::ProgramManager::getInstance()->adoptFinished();
    renderer().noteEndedFrames();
}

bool EngineFrameRenderer::tick(const RenderWindow& window) {
    const auto& surface = static_cast<const EngineSurfaceState&>(window);
    auto* context = vlGraphics::RenderContextManager::getInstance()->getRenderContextOf(surface);
    if (context == nullptr) return false;
    auto* data = EngineWindowEngineDataTracker::getInstance().find(surface.getName());
    if (data != nullptr) data->updateCamera();
    vlGraphics::System::getInstance()->tickForNewFrame(*context);
    return true;
}

void EngineFrameRenderer::beginFrame() {
    renderer().beginFrame();
}

void EngineFrameRenderer::drawCompositor() {
    vlGraphics::CompositorManager::getInstance()->getActiveCompositor()->draw();
}

void EngineFrameRenderer::endFrame() {
    renderer().endFrame();
}

void EngineFrameRenderer::endWork() {
    renderer().endWork();
}

} // namespace vlEditor
