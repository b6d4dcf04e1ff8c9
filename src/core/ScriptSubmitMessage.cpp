#include "core/ScriptSubmitMessage.h"

#include "core/EngineHandler.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"

#include <vlScripts/Environment.h>

namespace vlEditor {
namespace {

void report(const std::string& why) {
    postToUi(LogMessage("[CommandLineInterpreter] " + why));
}

} // namespace

void ScriptSubmitMessage::runOnGraphicsThread() {
    // A person waits for the end, and many may be queued.
    if (EngineHandler::getInstance().isLeaving()) return;
    vlScripts::Environment* environment = EngineHandler::getInstance().getScriptEnvironment();
    if (environment == nullptr) {
        report("script '" + name + "' cannot run: there is no engine");
        return;
    }
    vlScripts::CompilationResult result;
    if (!compiled) compiled = vlScripts::CompiledScript::compile(name, text, result);
    if (!compiled)
        report(result.message);
    else if (!environment->execute(*compiled))
        report(environment->getLastExecutionResult().message);
}

} // namespace vlEditor
