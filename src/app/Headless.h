#pragma once
#include "app/CommandLine.h"

namespace vlEditor {

/** What the program does without a window: import, render, validate. Needs no display. */
class Headless {
public:
    Headless() = delete;
    /// The exit status: 0, or 1 with one line on standard error for each thing that failed.
    static int run(const CommandLine& commandLine);
};

} // namespace vlEditor
