#include "app/automation/AutomationPixelMessage.h"

#include "app/automation/Answers.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineWindowEngineDataTracker.h"

#include <vlGraphics/RenderContext.h>

namespace vlEditor {
namespace {

vlCommon::Result<std::array<std::uint8_t, 4>> readPixel(const AutomationPixelMessage& wish) {
    const auto& windows = EngineWindowEngineDataTracker::getInstance();
    const EngineWindowEngineData* data = windows.find(wish.window + "_ENGINE");
    if (data == nullptr) data = windows.find(wish.window);
    if (data == nullptr) return vlCommon::fail("'" + wish.window + "' is no viewport");
    const auto image = data->getContext().readBackBuffer();
    if (!image) return vlCommon::fail("'" + wish.window + "': " + image.error().message);
    if (wish.x >= image->width || wish.y >= image->height)
        return vlCommon::fail("'" + wish.window + "' has no pixel at (" + std::to_string(wish.x) +
                              ", " + std::to_string(wish.y) + "): it is " +
                              std::to_string(image->width) + " by " +
                              std::to_string(image->height));
    const std::size_t at = (std::size_t{wish.y} * image->width + wish.x) * 4;
    const auto* bgra = reinterpret_cast<const std::uint8_t*>(image->pixels.data()) + at;
    return std::array{bgra[2], bgra[1], bgra[0], bgra[3]};
}

} // namespace

void AutomationPixelMessage::runOnGraphicsThread() {
    const auto read = readPixel(*this);
    if (read)
        color = *read;
    else
        problem = read.error().message;
    postToUi(*this);
}

void AutomationPixelMessage::runOnUiThread() {
    if (problem.empty())
        Answers::getInstance().give(
                ticket,
                vlScripts::Values{int{color[0]}, int{color[1]}, int{color[2]}, int{color[3]}});
    else
        Answers::getInstance().give(ticket, vlCommon::fail(problem));
}

} // namespace vlEditor
