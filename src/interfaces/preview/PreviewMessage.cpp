#include "interfaces/preview/PreviewMessage.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/preview/PreviewDrawer.h"
#include "interfaces/preview/PreviewRow.h"

namespace vlEditor {

void PreviewMessage::runOnGraphicsThread() {
    changes = PreviewDrawer::getChangeCount();
    isNew = seen != changes;
    if (isNew) {
        auto drawn =
                isSampler ? PreviewDrawer::drawSampler(name) : PreviewDrawer::drawTexture(name);
        // Its programs compile: another turn.
        if (!drawn) return postToGraphics(std::move(*this));
        picture = *std::move(drawn);
    }
    postToUi(std::move(*this));
}

void PreviewMessage::runOnUiThread() {
    PreviewRow::adopt(*this);
}

} // namespace vlEditor
