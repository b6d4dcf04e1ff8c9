#include "editors/script/ScriptMessages.h"

#include "core/EngineHandler.h"
#include "interfaces/kinds/ResourceUiDataTracker.h"

#include <vlScripts/Environment.h>

#include <fmt/format.h>

namespace vlEditor {
namespace {

using vlScripts::Script;
using vlScripts::Value;

/// Null, with a line where there is one to say, for what is not a person's.
Script* findScript(const std::string& name) {
    Script* script = managerOf<ScriptKind>().get(name);
    return script != nullptr && mayChange<ScriptKind>(*script) ? script : nullptr;
}

bool compile(Script& script) {
    script.unload();
    const auto loaded = script.load();
    logFailure(loaded);
    return loaded.has_value();
}

std::string textOf(const Value& value) {
    if (const std::string* text = value.asText()) return *text;
    if (const auto flag = value.asBool()) return *flag ? "true" : "false";
    if (value.isWhole()) return fmt::format("{}", *value.asInteger());
    if (const auto number = value.asNumber()) return fmt::format("{:.14g}", *number);
    if (const auto* object = value.asObject()) return object->kind + " '" + object->name + "'";
    if (const auto numbers = value.asTable() == nullptr ? value.asNumbers() : std::nullopt) {
        const auto* begin = numbers->values.data();
        return fmt::format("{{{}}}", fmt::join(begin, begin + numbers->count, ", "));
    }
    return value.describeKind();
}

/// Runs it, says what came of it in the log, and returns it.
ScriptStatus execute(const Script& script, vlScripts::Environment& environment) {
    const bool succeeded = environment.execute(script);
    const vlScripts::ExecutionResult& result = environment.getLastExecutionResult();
    if (!succeeded) {
        postToUi(LogMessage(result.message));
        return errorStatus(script.getName(), result.message);
    }
    if (result.returned.empty()) return {.text = "It ran to its end."};
    std::string returned;
    for (const Value& value : result.returned)
        returned += (returned.empty() ? "" : ", ") + textOf(value);
    postToUi(LogMessage(fmt::format("Script '{}' returned {}.", script.getName(), returned)));
    return {.text = "It returned " + returned + "."};
}

/// UI thread.
void adopt(const std::optional<ScriptRecord>& record) {
    auto& tracker = ResourceUiDataTracker<ScriptKind>::getInstance();
    ScriptRecord* held = record ? tracker.get(record->name) : nullptr;
    if (held == nullptr) return;
    *held = *record;
    tracker.notifyUpdated(record->name);
}

} // namespace

void ScriptCompileMessage::runOnGraphicsThread() {
    Script* script = findScript(name);
    if (script == nullptr) return;
    if (compile(*script) && render)
        EngineHandler::getInstance().getRenderingScript().follow(*script);
    ScriptCompileMessage outcome = *this;
    outcome.record = recordOf<ScriptKind>(*script);
    postToUi(std::move(outcome));
}

void ScriptCompileMessage::runOnUiThread() {
    adopt(record);
}

void ScriptRunMessage::runOnGraphicsThread() {
    // A person waits for the end, and many may be queued.
    if (EngineHandler::getInstance().isLeaving()) return;
    Script* script = findScript(name);
    if (script == nullptr) return;
    vlScripts::Environment* environment = EngineHandler::getInstance().getScriptEnvironment();
    const bool isReady = isCompiledAsItIs(*script) || compile(*script);
    ScriptRunMessage outcome = *this;
    outcome.record = recordOf<ScriptKind>(*script);
    if (isReady && environment != nullptr) outcome.record->status = execute(*script, *environment);
    postToUi(std::move(outcome));
}

void ScriptRunMessage::runOnUiThread() {
    adopt(record);
}

} // namespace vlEditor
