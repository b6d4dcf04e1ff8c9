#include "app/automation/AutomationScriptMessage.h"

#include "app/automation/Answers.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"

#include <vlKestrion/System.h>
#include <vlScripts/Environment.h>

namespace vlEditor {
namespace {

/// A function belongs to the engine's interpreter and stays there.
vlScripts::Value withoutFunctions(const vlScripts::Value& value) {
    if (value.asFunction() != nullptr) return {};
    const vlScripts::Table* table = value.asTable();
    if (table == nullptr) return value;
    vlScripts::Table copy;
    for (const vlScripts::Value& item : table->items)
        copy.items.push_back(withoutFunctions(item));
    for (const auto& [name, member] : table->members)
        copy.members.emplace_back(name, withoutFunctions(member));
    return copy;
}

} // namespace

void AutomationScriptMessage::runOnGraphicsThread() {
    // Whoever asked is told by the end of all answers.
    if (EngineHandler::getInstance().isLeaving()) return;
    vlScripts::CompilationResult compilation;
    const auto compiled = vlScripts::CompiledScript::compile("editor.script", text, compilation);
    auto& environment = vlKestrion::System::getInstance()->getScriptEnvironment();
    if (compiled == nullptr) {
        problem = compilation.message;
    } else if (!environment.execute(*compiled)) {
        problem = environment.getLastExecutionResult().message;
    } else {
        for (const vlScripts::Value& value : environment.getLastExecutionResult().returned)
            returned.push_back(withoutFunctions(value));
    }
    postToUi(std::move(*this));
}

void AutomationScriptMessage::runOnUiThread() {
    if (problem.empty())
        Answers::getInstance().give(ticket, std::move(returned));
    else
        Answers::getInstance().give(ticket, vlCommon::fail(problem));
}

} // namespace vlEditor
