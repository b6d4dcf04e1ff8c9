#include "app/automation/AutomationFramesMessage.h"

#include "app/automation/Answers.h"
#include "core/MessageOrchestrator.h"

#include <vlGraphics/System.h>

namespace vlEditor {

void AutomationFramesMessage::runOnGraphicsThread() {
    frames = vlGraphics::System::getInstance()->getRenderer().getCounts().frames;
    postToUi(*this);
}

void AutomationFramesMessage::runOnUiThread() {
    Answers::getInstance().give(ticket, vlScripts::Values{static_cast<std::int64_t>(frames)});
}

} // namespace vlEditor
