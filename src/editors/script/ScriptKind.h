#pragma once
#include "core/MessageRegistry.h"
#include "editors/script/ScriptStatus.h"
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/Bindings.h"

#include <vlScripts/ScriptManager.h>

namespace vlEditor {

struct ScriptKind;

/** What the UI knows of a script. */
struct ScriptRecord {
    std::string name;
    std::string source;
    std::string error;     ///< of the last compilation, one line; empty when it went well
    bool compiled = false; ///< what is loaded is the source as it is now
    ScriptStatus status; ///< the UI's own: of a run or a compilation under way; ends with the next
                         ///< change of the script

    template <class K = ScriptKind> static constexpr auto members() { return membersOfFields<K>(); }
    /// Without what compiling and running say: they change no script.
    friend bool operator==(const ScriptRecord& a, const ScriptRecord& b) {
        return a.name == b.name && a.source == b.source;
    }
};

struct ScriptKind {
    using Record = ScriptRecord;
    using Engine = vlScripts::Script;
    using Manager = vlScripts::ScriptManager;

    static constexpr ContainerType containerType = ContainerType::script;
    static constexpr KindTexts texts{
            .kind = "Script",
            .title = "Scripts",
            .prefix = "EDITOR_SCRIPT_",
            .creation = "SCRIPT_CREATION",
            .creationTitle = "Script Creation",
            .explorer = "EDITOR_SCRIPTS_EXPLO",
            .filterLabel = "Scripts Declaration Files",
            .extension = "vlsc",
            .pickLists = {{{"SCRIPT_POP_UP_LIST"}}},
            .subject = "Script",
            .deleteStart = "Deleting Script ",
            .deleteEnd = ".\nAre you sure ?",
            .tellsSuccess = false,
    };
    // While a text is worked on, the last good one runs on.
    static constexpr KindHooks<Engine> hooks{
            .reload = Reload::never, .load = &vlGraphics::ContentLoader::loadScriptDeclaration};
    static constexpr std::tuple fields{
            VL_FIELD(source, getSources, setSources),
            ReadOnlyField{"error", &Record::error, &compileErrorOf},
            ReadOnlyField{"compiled", &Record::compiled, &isCompiledAsItIs},
    };
    static KindLayout layout() { return {"script.json", {}}; }
    static void bind(Bindings<ScriptKind>& window);
    static void registerMessages(MessageRegistry& registry);
};

} // namespace vlEditor
