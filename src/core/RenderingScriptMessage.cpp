#include "core/RenderingScriptMessage.h"

#include "core/EngineHandler.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"

namespace vlEditor {

void RenderingScriptMessage::runOnGraphicsThread() {
    RenderingScript& slot = EngineHandler::getInstance().getRenderingScript();
    if (name.empty()) {
        slot.set(nullptr);
        return;
    }
    vlScripts::CompilationResult result;
    if (!compiled) compiled = vlScripts::CompiledScript::compile(name, text, result);
    if (compiled)
        slot.set(compiled);
    else
        postToUi(LogMessage(result.message));
}

} // namespace vlEditor
