#include "viewport/EngineWindowDetachMessage.h"

#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowEngineDataTracker.h"

#include <vlGraphics/RenderContext.h>

namespace vlEditor {
namespace {

constexpr std::uint32_t deviceTimeoutMs = 200;

} // namespace

void EngineWindowDetachMessage::runOnGraphicsThread() {
    const auto state = EngineSurfaceTable::getInstance().find(surface);
    const auto* data = EngineWindowEngineDataTracker::getInstance().find(surface);
    if (data != nullptr) data->getContext().detachSurface(deviceTimeoutMs);
    if (state) state->setDetached();
}

} // namespace vlEditor
