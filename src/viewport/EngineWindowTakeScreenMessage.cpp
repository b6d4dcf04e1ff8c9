#include "viewport/EngineWindowTakeScreenMessage.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowEngineDataTracker.h"
#include "viewport/ScreenFile.h"

#include <vlGraphics/RenderContext.h>
#include <vlImages/JpgEncoder.h>

namespace vlEditor {
namespace {

vlCommon::Result<vlMemory::Buffer> encodeLastPicture(const vlGraphics::RenderContext& context) {
    const auto image = context.readBackBuffer();
    if (!image) return tl::unexpected(image.error());
    return vlImages::JpgEncoder::encode(image->view(), {0, 0.92F});
}

} // namespace

void EngineWindowTakeScreenMessage::runOnGraphicsThread() {
    const EngineWindowEngineData* data = EngineWindowEngineDataTracker::getInstance().find(surface);
    if (data == nullptr) return;
    auto encoded = encodeLastPicture(data->getContext());
    if (!encoded) {
        postToUi(LogMessage("Could not take the screen of viewport '" + surface +
                            "': " + encoded.error().message));
        return;
    }
    picture = std::move(*encoded);
    postToUi(std::move(*this));
}

void EngineWindowTakeScreenMessage::runOnUiThread() {
    ScreenFile::save(std::move(picture));
}

} // namespace vlEditor
