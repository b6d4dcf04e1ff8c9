#include "editors/script/Script.h"

#include "core/RenderingScriptChangeMessage.h"
#include "core/RenderingScriptName.h"
#include "editors/AllKinds.h"
#include "interfaces/kinds/KindEntry.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Static.h>

namespace vlEditor {
namespace {

using Names = Bindings<ScriptKind>::Names;
using vlWinUi::ComponentManager;

ScriptStatus statusOf(const ScriptRecord& record) {
    if (record.status != ScriptStatus()) return record.status;
    if (!record.error.empty()) return errorStatus(record.name, record.error);
    return {.text = record.compiled ? "Compiled." : "Not compiled as it is now."};
}

/// What was said before is not said while the engine works.
void setBusy(const Names& names) {
    auto& tracker = ScriptUiDataTracker::getInstance();
    for (const std::string& name : names) {
        ScriptRecord* record = tracker.get(name);
        if (record == nullptr) continue;
        record->status = {.isBusy = true};
        tracker.notifyUpdated(name);
    }
}

template <class M> void postForEach(const Names& names) {
    setBusy(names);
    for (const std::string& name : names)
        postToGraphics(M(name));
}

void showStatus(const std::string& base, const ScriptStatus* status, bool isMixed) {
    const ScriptStatus shown = status != nullptr && !isMixed ? *status : ScriptStatus();
    auto* label = ComponentManager::get<vlWinUi::Static>(base + "_STATUS_LABEL");
    auto* edit = ComponentManager::get<vlWinUi::CodeEdit>(base + "_SOURCE_EDIT");
    if (label == nullptr || edit == nullptr) return;
    label->setText(shown.text);
    label->setToolTip(shown.text);
    std::vector<vlWinUi::CodeProblem> problems;
    if (shown.line > 0) problems.push_back({.line = shown.line, .message = shown.text});
    edit->setProblems(std::move(problems));
    label->setClickCallback(
            [edit, line = shown.line](const vlWinUi::ClickEvent&) { edit->goToLine(line); });
}

void showRenderingScript(const std::string& base, const std::string& name) {
    if (auto* label = ComponentManager::get<vlWinUi::Static>(base + "_RENDERING_LABEL"))
        label->setText(name.empty() ? "-" : name);
    if (auto* clear = ComponentManager::get<vlWinUi::Button>(base + "_RENDERING_CLEAR"))
        clear->setEnabled(!name.empty(), "No script is run once a turn.");
}

} // namespace

void ScriptKind::bind(Bindings<ScriptKind>& window) {
    const std::string& base = window.getBase();
    window.code("_SOURCE_EDIT", ScriptSource{});
    window.row<ScriptStatus>(statusOf, [base](const ScriptStatus* status, bool isMixed) {
        showStatus(base, status, isMixed);
    });
    window.button("_COMPILE_BUTTON", postForEach<ScriptCompileMessage>);
    window.button("_RUN_BUTTON", postForEach<ScriptRunMessage>);
    window.button("_RENDERING_BUTTON", [](const Names& names) {
        setBusy({names.front()});
        postToGraphics(ScriptCompileMessage(names.front(), true));
    });
    bindButton(base + "_RENDERING_CLEAR", [] { postToGraphics(RenderingScriptChangeMessage()); });
    window.keep(RenderingScriptName::getInstance().listen(
            [base](const std::string& name) { showRenderingScript(base, name); }));
}

void ScriptKind::registerMessages(MessageRegistry& registry) {
    registry.add<ScriptCompileMessage>(MessageQueue::graphics);
    registry.add<ScriptRunMessage>(MessageQueue::graphics);
}

const AnyKind& scriptKind() {
    static const KindEntry<ScriptKind, ScriptSource> kind;
    return kind;
}

} // namespace vlEditor
