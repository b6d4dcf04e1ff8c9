#include "interfaces/history/UndoMessage.h"

#include "core/MessageOrchestrator.h"
#include "interfaces/history/History.h"

namespace vlEditor {

void UndoMessage::runOnGraphicsThread() {
    postToUi(*this);
}

void UndoMessage::runOnUiThread() {
    History& history = History::getInstance();
    redo ? history.stepForward() : history.stepBack();
}

} // namespace vlEditor
