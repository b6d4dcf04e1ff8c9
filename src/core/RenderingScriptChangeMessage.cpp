#include "core/RenderingScriptChangeMessage.h"

#include "core/EngineHandler.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "core/RenderingScriptName.h"

#include <vlScripts/ScriptManager.h>

namespace vlEditor {

void RenderingScriptChangeMessage::runOnGraphicsThread() {
    RenderingScript& slot = EngineHandler::getInstance().getRenderingScript();
    if (name.empty()) {
        slot.set(nullptr);
        return;
    }
    const auto* manager = vlScripts::ScriptManager::getInstance();
    vlScripts::Script* script = manager == nullptr ? nullptr : manager->get(name);
    if (script == nullptr) {
        postToUi(LogMessage("There is no script '" + name + "' to render with."));
        return;
    }
    if (const auto loaded = script->load())
        slot.follow(*script);
    else
        postToUi(LogMessage(loaded.error().message));
}

void RenderingScriptChangeMessage::runOnUiThread() {
    RenderingScriptName::getInstance().set(name);
}

} // namespace vlEditor
