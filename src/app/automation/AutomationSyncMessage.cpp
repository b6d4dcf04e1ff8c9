#include "app/automation/AutomationSyncMessage.h"

#include "app/automation/Answers.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "core/WorkerPool.h"
#include "interfaces/history/PendingEdit.h"

#include <vlGraphics/Program.h>
#include <vlWinUi/Automation.h>

namespace vlEditor {
void AutomationSyncMessage::runOnGraphicsThread() {
    auto& programs = *vlGraphics::ProgramManager::getInstance();
    // Otherwise a frame does it, and there may be nothing to draw.
    programs.adoptFinished();
    engineAtRest =
            !programs.isAnyCompiling() && EngineHandler::getInstance().isEveryPictureCurrent();
    postToUi(*this);
}

void AutomationSyncMessage::runOnUiThread() {
    // What the widgets themselves have still to do (layout, sizes) may post messages, too.
    vlWinUi::Automation::invoke([id = ticket, engine = engineAtRest] {
        PendingEdit::flushAll();
        const bool atRest = engine && WorkerPool::getInstance().pendingCount() == 0;
        const auto posted =
                static_cast<std::int64_t>(MessageOrchestrator::getInstance().getPostedCount());
        Answers::getInstance().give(
                id, vlScripts::Values{atRest, posted, vlWinUi::Automation::isSettled()});
    });
}

} // namespace vlEditor
