#pragma once
#include "app/automation/Answers.h"

#include <vlWinUi/Automation.h>

#include <functional>

namespace vlEditor {

/** Runs something on the UI thread for the script, whose thread waits for the outcome. It ends with
 *  an error, and never later than the editor, when the UI goes meanwhile. Script's thread only. */
class UiCall {
public:
    UiCall() = delete;
    /// For what answers at once.
    static Answers::Answer read(std::function<Answers::Answer()> function);
    /// For what takes the event loop's turns and tells when it is done.
    static Answers::Answer use(std::function<void(vlWinUi::Automation::Done)> function);
};

} // namespace vlEditor
