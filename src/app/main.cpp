#include "app/CommandLine.h"
#include "app/Headless.h"
#include "app/Shutdown.h"
#include "app/StartUp.h"

#include <vlWinUi/System.h>

int main(int argc, char** argv) {
    using namespace vlEditor;
    int status = 0;
    const auto commandLine =
            CommandLine::parse(std::vector<std::string>(argv, argv + argc), status);
    if (!commandLine) return status;
    if (!commandLine->needsWindow()) return Headless::run(*commandLine);

    const bool started = StartUp::run(*commandLine);
    if (started) vlWinUi::System::run();
    Shutdown::run();
    return started ? 0 : 1;
}
