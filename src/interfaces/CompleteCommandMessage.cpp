#include "interfaces/CompleteCommandMessage.h"

#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "interfaces/LogInterface.h"

#include <vlScripts/Environment.h>
#include <vlWinUi/ComponentManager.h>

#include <algorithm>

namespace vlEditor {
namespace {

/// A script that returns the names in the table that the other names lead to.
std::string listingOf(const std::vector<std::string>& tables) {
    std::string script = "local t = _G\n";
    for (const std::string& name : tables)
        script += "t = type(t) == 'table' and t['" + name + "'] or nil\n";
    return script + "local names = {}\n"
                    "if type(t) == 'table' then\n"
                    "  for name in pairs(t) do\n"
                    "    if type(name) == 'string' then names[#names + 1] = name end\n"
                    "  end\n"
                    "end\n"
                    "return names\n";
}

} // namespace

void CompleteCommandMessage::runOnGraphicsThread() {
    vlScripts::CompilationResult compiled;
    const auto script =
            vlScripts::CompiledScript::compile("completion", listingOf(tables), compiled);
    vlScripts::Environment* environment = EngineHandler::getInstance().getScriptEnvironment();
    if (!script || environment == nullptr) return;
    const vlScripts::ExecutionResult result = environment->interpreter().execute(*script);
    for (const vlScripts::Value& value : result.returned) {
        if (value.asTable() == nullptr) continue;
        for (const vlScripts::Value& item : value.asTable()->items) {
            if (const std::string* name = item.asText();
                name != nullptr && name->starts_with(begin))
                candidates.push_back(*name);
        }
    }
    std::ranges::sort(candidates);
    postToUi(std::move(*this));
}

void CompleteCommandMessage::runOnUiThread() {
    const vlWinUi::Component* root = vlWinUi::ComponentManager::get(window);
    if (root == nullptr) return;
    if (LogInterface* const* shown = root->getDataAs<LogInterface*>())
        (*shown)->offerCompletions(begin, candidates);
}

} // namespace vlEditor
