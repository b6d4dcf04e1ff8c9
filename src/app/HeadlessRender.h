#pragma once
#include "app/CommandLine.h"

#include <string>
#include <vector>

namespace vlEditor {

/** Draws a project into a file without a window. Starts and ends the engine. */
class HeadlessRender {
public:
    struct Outcome {
        bool written = false;            ///< whole, and of a project that is whole
        std::vector<std::string> errors; ///< one line each, without what the engine has logged
    };

    HeadlessRender() = delete;
    /// When anything fails, no picture is written. Time stands at the frame's number times 1/60 s,
    /// so that pictures repeat.
    static Outcome toFile(const CommandLine::Render& wish, const std::string& project);
};

} // namespace vlEditor
