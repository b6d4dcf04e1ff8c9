#include "core/RenderingScript.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"

#include <vlScripts/Environment.h>

namespace vlEditor {

void RenderingScript::set(std::shared_ptr<const vlScripts::CompiledScript> script) {
    script_ = std::move(script);
}

std::string RenderingScript::getName() const {
    return script_ ? script_->getName() : std::string();
}

void RenderingScript::run(vlScripts::Environment* environment) const {
    if (!script_ || environment == nullptr) return;
    if (environment->execute(*script_, turnTime)) return;
    postToUi(LogMessage(environment->getLastExecutionResult().message));
}

} // namespace vlEditor
