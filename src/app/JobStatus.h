#pragma once
#include <vlWinUi/Window.h>

namespace vlEditor {

/** Shows in a window's status bar what the worker is at: its label, how far it is, and a button
 *  that cancels it. Hidden while there is no labelled job. UI thread only. */
class JobStatus {
public:
    JobStatus() = delete;

    static constexpr const char* labelName = "VL_EDITOR_JOB_LABEL";
    static constexpr const char* barName = "VL_EDITOR_JOB_BAR";
    static constexpr const char* cancelName = "VL_EDITOR_JOB_CANCEL";

    /// Places it there, and follows the WorkerPool from now on.
    static void create(vlWinUi::Window& window);
};

} // namespace vlEditor
