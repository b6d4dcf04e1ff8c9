#pragma once
#include "editors/shader_program/ShaderProgramKind.h"
#include "interfaces/kinds/ResourceInterface.h"

namespace vlEditor {

VL_RESOURCE_KIND_NAMES(ShaderProgram);

// An edit that changes a text makes the program one of memory: its files hold another one now. A
// stage that there is not changes nothing and gives a line in the log.

struct ShaderProgramSource {
    using Kind = ShaderProgramKind;
    std::string value;
    std::uint32_t stage = 0;

    static constexpr auto members() {
        return std::tuple{Member{"value", &ShaderProgramSource::value},
                          Member{"stage", &ShaderProgramSource::stage}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Program& program) const;
    void readFrom(const ShaderProgramRecord& record);
};

struct ShaderProgramMacros {
    using Kind = ShaderProgramKind;
    ShaderProgramMacroList value;
    std::uint32_t stage = 0;

    static constexpr auto members() {
        return std::tuple{Member{"value", &ShaderProgramMacros::value},
                          Member{"stage", &ShaderProgramMacros::stage}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Program& program) const;
    void readFrom(const ShaderProgramRecord& record);
};

/** Another type, with its default sources in place of all sources and macros. */
struct ChangeShaderProgramType {
    using Kind = ShaderProgramKind;
    std::uint32_t value = 1; ///< the engine's PROGRAM_TYPE, 1 to 4

    static constexpr auto members() {
        return std::tuple{Member{"value", &ChangeShaderProgramType::value}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Program& program) const;
    void readFrom(const ShaderProgramRecord& record) { value = record.type; }
    void onMade(const ShaderProgramRecord& record) const;
};

/** Compiles a program with these sources. */
struct CompileShaderProgramSources {
    using Kind = ShaderProgramKind;
    /// Each one for all stages, or none for those that the program has: what has been typed comes
    /// to the engine before this, and to the record after it.
    std::vector<std::string> sources;
    std::vector<ShaderProgramMacroList> macros;

    static constexpr auto members() {
        return std::tuple{Member{"sources", &CompileShaderProgramSources::sources},
                          Member{"macros", &CompileShaderProgramSources::macros}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Program& program) const;
    void readFrom(const ShaderProgramRecord&) {}
};

/** A stage's source from a file, which it is taken to belong to from then on. */
struct LoadShaderProgramSources {
    using Kind = ShaderProgramKind;
    std::uint32_t stage = 0;
    std::string path;

    static constexpr auto members() {
        return std::tuple{Member{"stage", &LoadShaderProgramSources::stage},
                          Member{"path", &LoadShaderProgramSources::path}};
    }
    vlCommon::Result<> applyTo(vlGraphics::Program& program) const;
    void readFrom(const ShaderProgramRecord&) {}
    void onMade(const ShaderProgramRecord& record) const;
};

using ShaderProgramSourceMessage = ResourceEditMessage<ShaderProgramSource>;
using ShaderProgramMacrosMessage = ResourceEditMessage<ShaderProgramMacros>;
using ChangeShaderProgramTypeMessage = ResourceEditMessage<ChangeShaderProgramType>;
using CompileShaderProgramSourcesMessage = ResourceEditMessage<CompileShaderProgramSources>;
using LoadShaderProgramSourcesMessage = ResourceEditMessage<LoadShaderProgramSources>;

/// A stage's text as its file has it, without a byte order mark. Fails, naming the file, where
/// there is none. Any thread.
vlCommon::Result<std::string> readStageFile(const std::string& path);
/// Gives a stage another text, if it is another. Graphics thread.
void setStageSource(vlGraphics::Program& program, std::uint32_t stage, const std::string& text);

} // namespace vlEditor
