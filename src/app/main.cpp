#include "app/CommandLine.h"
#include "app/Headless.h"
#include "app/Shutdown.h"
#include "app/StartUp.h"
#include "app/automation/ScriptRun.h"

#include <vlWinUi/System.h>

#include <filesystem>
#include <iostream>
#include <memory>

int main(int argc, char** argv) {
    using namespace vlEditor;
    int status = 0;
    const auto commandLine =
            CommandLine::parse(std::vector<std::string>(argv, argv + argc), status);
    if (!commandLine) return status;
    if (!commandLine->needsWindow()) return Headless::run(*commandLine);

    std::unique_ptr<ScriptRun> script;
    if (commandLine->run) {
        auto loaded = ScriptRun::load(commandLine->run->script);
        if (!loaded) {
            std::cerr << "vlEditor: " + loaded.error().message + "\n";
            return 1;
        }
        script = std::move(*loaded);
        // A person would read it in the log; a script's caller reads this.
        const std::string& project = commandLine->project;
        std::error_code failed;
        if (!project.empty() && !std::filesystem::is_regular_file(project, failed)) {
            std::cerr << "vlEditor: " + project + ": no such file\n";
            return 1;
        }
    }
    bool good = StartUp::run(*commandLine);
    if (good) {
        if (script) script->start();
        vlWinUi::System::run();
        good = !script || script->finish();
    }
    Shutdown::run();
    return good ? 0 : 1;
}
