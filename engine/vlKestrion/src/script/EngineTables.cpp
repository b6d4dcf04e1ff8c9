#include "script/EngineTables.h"

#include "script/Kinds.h"

#include <vlGraphics/System.h>

namespace vlKestrion {
namespace {

using vlCommon::Result;
using vlMemory::String;
using vlScripts::Value;
using vlScripts::Values;

void addAccess(vlScripts::Interpreter& interpreter, const EngineKind& entry) {
    const String kind = entry.kind.name;
    interpreter.addFunction(
            "engine." + kind, [kind, exists = entry.exists](auto given) -> Result<Values> {
                const String* name = given.empty() ? nullptr : given[0].asText();
                if (name == nullptr) return vlCommon::fail("expected the name of a " + kind);
                if (!exists(*name))
                    return vlCommon::fail("there is no " + kind + " '" + *name + "'");
                return Values{vlScripts::Object{kind, *name}};
            });
    interpreter.addFunction("engine." + entry.plural, [kind, list = entry.list](auto) {
        vlScripts::Table table;
        for (String& name : list())
            table.items.emplace_back(vlScripts::Object{kind, std::move(name)});
        return Result<Values>(Values{std::move(table)});
    });
}

Result<Values> timeMs(std::span<const Value>) {
    const vlGraphics::System* system = vlGraphics::System::getInstance();
    if (system == nullptr) return vlCommon::fail("the engine does not run");
    return Values{static_cast<std::int64_t>(system->getTimeMs())};
}

String kindsRow(const EngineKind& entry) {
    return "### " + entry.kind.name + "\n\n`engine." + entry.kind.name + "(name)`, `engine." +
           entry.plural + "()`\n\n";
}

} // namespace

std::vector<EngineKind> engineKinds() {
    std::vector<EngineKind> kinds;
    for (const auto make : {nodeKind,
                            entityKind,
                            cameraKind,
                            materialKind,
                            shaderKind,
                            programKind,
                            meshKind,
                            textureKind,
                            samplerKind,
                            bufferKind,
                            blendStateKind,
                            depthStencilStateKind,
                            rasterStateKind,
                            viewportKind,
                            renderQueueKind,
                            compositorKind,
                            renderContextKind})
        kinds.push_back(make());
    return kinds;
}

void addEngineTables(vlScripts::Interpreter& interpreter) {
    for (EngineKind& entry : engineKinds()) {
        addAccess(interpreter, entry);
        interpreter.addKind(std::move(entry.kind));
    }
    interpreter.addFunction("engine.timeMs", timeMs);
}

String describeEngineKinds() {
    String text;
    for (const EngineKind& entry : engineKinds()) {
        text += kindsRow(entry) + "| field | value | |\n|---|---|---|\n";
        for (const auto& field : entry.kind.fields) {
            const String note = field.set                   ? field.description
                                : field.description.empty() ? "read only"
                                                            : field.description + "; read only";
            text += "| `" + field.name + "` | " + field.type + " | " + note + " |\n";
        }
        for (const auto& method : entry.kind.methods) {
            text += "| `" + method.name + "(" + method.arguments + ")` | | " + method.description +
                    " |\n";
        }
        text += "\n";
    }
    text.pop_back();
    return text;
}

} // namespace vlKestrion
