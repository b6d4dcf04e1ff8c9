#include "core/RenderingScript.h"

#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"
#include "core/RenderingScriptChangeMessage.h"

#include <vlScripts/Environment.h>
#include <vlScripts/ScriptManager.h>

namespace vlEditor {
namespace {

using vlScripts::Script;

/// Null when it was erased.
const Script* findScript(const std::string& name, std::uint64_t id) {
    const auto* manager = vlScripts::ScriptManager::getInstance();
    if (manager == nullptr) return nullptr;
    const Script* script = manager->get(name);
    if (script != nullptr && script->getId() == id) return script;
    for (std::size_t i = 0; (script = manager->getByIndex(i)) != nullptr; ++i) {
        if (script->getId() == id) return script;
    }
    return nullptr;
}

} // namespace

void RenderingScript::set(std::shared_ptr<const vlScripts::CompiledScript> script) {
    script_ = std::move(script);
    followed_ = 0;
    rename(script_ ? script_->getName() : std::string());
}

void RenderingScript::follow(const Script& script) {
    script_ = script.getCompiled();
    followed_ = script.getId();
    revision_ = script.getRevision();
    rename(script.getName());
}

void RenderingScript::update() {
    if (followed_ == 0) return;
    const Script* script = findScript(name_, followed_);
    if (script == nullptr) {
        set(nullptr);
        return;
    }
    if (script->getRevision() != revision_) {
        revision_ = script->getRevision();
        if (const auto compiled = script->getCompiled()) script_ = compiled;
    }
    if (script->getName() == name_) return;
    rename(script->getName());
    // So that its errors bear the new name.
    vlScripts::CompilationResult result;
    const auto renamed = vlScripts::CompiledScript::compile(name_, script_->getText(), result);
    if (renamed) script_ = renamed;
}

void RenderingScript::rename(const std::string& name) {
    if (name == name_) return;
    name_ = name;
    postToUi(RenderingScriptChangeMessage(name));
}

void RenderingScript::run(vlScripts::Environment* environment) {
    update();
    if (!script_ || environment == nullptr) return;
    if (environment->execute(*script_, turnTime)) return;
    postToUi(LogMessage(environment->getLastExecutionResult().message));
}

} // namespace vlEditor
