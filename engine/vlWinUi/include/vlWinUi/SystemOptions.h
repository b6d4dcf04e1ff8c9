#pragma once
#include <string>
#include <vector>

namespace vlWinUi {

/** How System::initialize() starts. */
struct SystemOptions {
    /// The program's arguments, its name first; Qt's own options in them are obeyed.
    std::vector<std::string> arguments{"vlEditor"};
    std::string applicationName = "vlEditor";
    /// Without a display: widgets are drawn in memory.
    bool headless = false;
};

} // namespace vlWinUi
