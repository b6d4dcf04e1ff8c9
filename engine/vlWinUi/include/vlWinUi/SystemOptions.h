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
    /// False: the library draws its file dialogs itself, so that Automation reaches into them.
    bool nativeDialogs = true;
};

} // namespace vlWinUi
