#include "interfaces/CommandInterpreter.h"

#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "core/ScriptSubmitMessage.h"

namespace vlEditor {
namespace {

std::string sourcesOf(const std::string& command) {
    if (!command.starts_with('=')) return command;
    return "print(" + command.substr(1) + "\n)";
}

} // namespace

CommandInterpreter::CommandInterpreter() : script_("VLEDITOR_COMMAND") {
    script_.setTargetInterpreter(vlScripts::Script::luaInterpreter);
    script_.setHidden(true);
}

void CommandInterpreter::submit(const std::string& command) {
    script_.setSources(sourcesOf(command));
    script_.unload();
    if (script_.load()) {
        postToGraphics(ScriptSubmitMessage(script_.getCompiled()));
        return;
    }
    const vlScripts::CompilationResult& result = script_.getCompilationResult();
    const bool isSyntax = result.kind == vlScripts::CompilationResult::syntaxError;
    EditorLogger::getInstance().log(
            (isSyntax ? "Syntax error :\n" : "An unknown error occurred :\n") + result.message,
            "CommandLineInterpreter");
}

} // namespace vlEditor
