#pragma once
#include "app/CommandLine.h"

namespace vlEditor {

/** Brings the editor up in its window, step by step in one order. UI thread only. */
class StartUp {
public:
    StartUp() = delete;
    /// False, with one line on standard error, when there is no display or no device to draw with;
    /// Shutdown::run() takes down what has come up by then.
    static bool run(const CommandLine& commandLine);
};

} // namespace vlEditor
