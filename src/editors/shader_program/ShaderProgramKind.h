#pragma once
#include "core/MessageRegistry.h"
#include "editors/shader_program/MacroText.h"
#include "interfaces/ContainerType.h"
#include "interfaces/kinds/Bindings.h"

#include <vlGraphics/Program.h>

#include <array>

namespace vlEditor {

struct ShaderProgramKind;

/// In the order of the engine's: vertex, hull, domain, geometry, pixel, compute, ray tracing.
inline constexpr std::size_t programStageCount = vlGraphics::shaderTypeCount;
template <class T> using PerStage = std::array<T, programStageCount>;
/// "Vertex"; the stage must be one.
std::string_view stageLabel(std::uint32_t stage);

/** What the compiler says about a place in a program's sources. */
struct ShaderProgramDiagnostic {
    std::uint32_t stage = 0;
    std::string file;       ///< of an #include; empty: the stage's own source
    std::uint32_t line = 1; ///< from 1
    std::string text;

    static constexpr auto members() {
        return std::tuple{Member{"stage", &ShaderProgramDiagnostic::stage},
                          Member{"file", &ShaderProgramDiagnostic::file},
                          Member{"line", &ShaderProgramDiagnostic::line},
                          Member{"text", &ShaderProgramDiagnostic::text}};
    }
    friend bool operator==(const ShaderProgramDiagnostic&,
                           const ShaderProgramDiagnostic&) = default;
};

/** A resource that the program as it was last compiled uses. */
struct ShaderProgramResource {
    std::string letter; ///< of its register: "b", "t", "s" or "u"
    std::uint32_t slot = 0;
    std::uint32_t space = 0;
    std::string name;
    std::uint32_t byteSize = 0;           ///< of a constant buffer
    std::vector<std::string> memberNames; ///< likewise

    static constexpr auto members() {
        return std::tuple{Member{"letter", &ShaderProgramResource::letter},
                          Member{"slot", &ShaderProgramResource::slot},
                          Member{"space", &ShaderProgramResource::space},
                          Member{"name", &ShaderProgramResource::name},
                          Member{"byteSize", &ShaderProgramResource::byteSize},
                          Member{"memberNames", &ShaderProgramResource::memberNames}};
    }
    friend bool operator==(const ShaderProgramResource&, const ShaderProgramResource&) = default;
};

/** What the UI knows of a shader program. */
struct ShaderProgramRecord {
    std::string name;
    std::uint32_t type = 0; ///< the engine's PROGRAM_TYPE
    PerStage<std::string> sources;
    PerStage<ShaderProgramMacroList> macros;
    std::string folder; ///< that the sources belong into, as the engine has it; empty: into none

    // Of the last compilation that ended, which may have been of earlier sources.
    bool isCompiling = false; ///< there is a newer one
    bool isUsable = false;    ///< there is a good result to draw with, perhaps an older one
    bool failed = false;
    std::uint32_t failedStage = 0;
    std::string failure;
    std::vector<ShaderProgramDiagnostic> diagnostics;
    std::vector<ShaderProgramResource> resources; ///< of the result in use
    std::vector<std::string> includedFiles;       ///< relative to the working directory

    template <class K = ShaderProgramKind> static constexpr auto members() {
        return membersOfFields<K>();
    }
    /// Without what compiling says, and where the sources belong: they change no program.
    friend bool operator==(const ShaderProgramRecord& a, const ShaderProgramRecord& b) {
        return a.name == b.name && a.type == b.type && a.sources == b.sources &&
               a.macros == b.macros;
    }
};

/** A program as its declaration. Saving one says where its sources belong, which changes neither
 * the program nor what an undo leads back to. */
struct ShaderProgramMemento : TreeMemento<ShaderProgramKind> {
    friend bool operator==(const ShaderProgramMemento& a, const ShaderProgramMemento& b);
};

struct ShaderProgramKind {
    using Record = ShaderProgramRecord;
    using Engine = vlGraphics::Program;
    using Manager = vlGraphics::ProgramManager;
    using Memento = ShaderProgramMemento;

    // Engine to record.
    static PerStage<std::string> sourcesOf(const Engine& program);
    static PerStage<ShaderProgramMacroList> macrosOf(const Engine& program);
    static std::vector<ShaderProgramDiagnostic> diagnosticsOf(const Engine& program);
    static std::vector<ShaderProgramResource> resourcesOf(const Engine& program);
    static std::vector<std::string> includedFilesOf(const Engine& program);

    /// What a new program begins with.
    static void makeFresh(Engine& program);
    /// The declaration, and each stage's source in a folder beside it that is called as the
    /// program; the sources belong there from then on, and what they include from another such
    /// folder comes along. What that one holds stays as it is.
    static vlCommon::Result<> save(Engine& program, const std::string& path);
    /// With the kind's extension, and a line in the log.
    static std::string savePath(std::string chosen);
    /// Files of the one are not the other's, which still includes what lies beside them.
    static void separate(vlExport::Node& declaration);
    /// A copy's sources belong into no files.
    static void detach(vlExport::Node& declaration) {
        declaration.remove("folder");
        declaration.remove("includeFolder");
    }
    /// Why the program is worth a look; empty where it compiled.
    static std::string faultOf(const Record& record);

    static constexpr ContainerType containerType = ContainerType::shaderProgram;
    static constexpr KindTexts texts{
            .kind = "ShaderProgram",
            .title = "Shader Programs",
            .prefix = "EDITOR_SHADER_PROG_",
            .creation = "SHADER_PROGRAM_CREATION",
            .creationTitle = "Shader porogram Creation",
            .explorer = "EDITOR_SHADER_PROGRAM_EXPLO",
            .filterLabel = "Shader Program Decl Files",
            .extension = "vlpr",
            .pickLists = {{{"SHADER_PROGRAM_POP_UP_LIST"}}},
            .subject = "Shader program",
            .deleteStart = "Deleting Shader program '",
            .saveButton = "_SAVE_BUTTON",
            .saved = "Done.",
            .notSaved = "Error.",
            .lineEnd = "",
            .savesUnderOwnName = true,
    };
    // While a text is worked on, the last good result is drawn with.
    static constexpr KindHooks<Engine> hooks{
            .reload = Reload::inPlace,
            .editsMakeMissing = false,
            .load = &vlGraphics::ContentLoader::loadShaderProgramDeclaration,
            .created = &makeFresh,
            .save = &save,
            .savePath = &savePath};
    static constexpr std::tuple fields{
            ReadOnlyField{"type", &Record::type, &Engine::getType},
            ReadOnlyField{"sources", &Record::sources, &sourcesOf},
            ReadOnlyField{"macros", &Record::macros, &macrosOf},
            ReadOnlyField{"folder", &Record::folder, &Engine::getFolder},
            ReadOnlyField{"compiling", &Record::isCompiling, &Engine::isCompiling},
            ReadOnlyField{"usable", &Record::isUsable, &Engine::isUsable},
            ReadOnlyField{"failed",
                          &Record::failed,
                          [](const Engine& program) {
                              return !program.getLastCompilationResult().isSuccess();
                          }},
            ReadOnlyField{"failedStage",
                          &Record::failedStage,
                          [](const Engine& program) {
                              return program.getLastCompilationResult().getStage();
                          }},
            ReadOnlyField{"failure",
                          &Record::failure,
                          [](const Engine& program) {
                              return program.getLastCompilationResult().getErrorMessage();
                          }},
            ReadOnlyField{"diagnostics", &Record::diagnostics, &diagnosticsOf},
            ReadOnlyField{"resources", &Record::resources, &resourcesOf},
            ReadOnlyField{"includedFiles", &Record::includedFiles, &includedFilesOf},
    };
    static KindLayout layout() { return {"shader_program.json", {}}; }
    static void bind(Bindings<ShaderProgramKind>& window);
    static void registerMessages(MessageRegistry& registry);
};

} // namespace vlEditor
