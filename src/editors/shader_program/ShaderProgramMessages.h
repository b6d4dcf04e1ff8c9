#pragma once
#include "editors/shader_program/ShaderProgram.h"

namespace vlEditor {

/** A file that a stage's source belongs to has changed on disk. The source follows it, unless a
 *  person has changed it, too. */
class ShaderProgramFileMessage final : public RecordedMessage {
public:
    ShaderProgramFileMessage() = default;
    ShaderProgramFileMessage(std::string program,
                             std::uint32_t ofStage,
                             std::string file,
                             std::string lastRead)
        : name(std::move(program)), stage(ofStage), path(std::move(file)),
          base(std::move(lastRead)) {}

    void runOnGraphicsThread() override;
    void runOnUiThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"name", &ShaderProgramFileMessage::name},
                          Member{"stage", &ShaderProgramFileMessage::stage},
                          Member{"path", &ShaderProgramFileMessage::path},
                          Member{"base", &ShaderProgramFileMessage::base}};
    }

    std::string name;
    std::uint32_t stage = 0;
    std::string path;
    std::string base;                         ///< the source when it was last the file's
    std::string text;                         ///< on its way back: what the file holds
    bool isKept = false;                      ///< on its way back: the source stays another one
    ResourceChange<ShaderProgramKind> change; ///< on its way back
};

/** A file that programs read through #include has changed on disk: they are compiled again. */
class ShaderProgramIncludeMessage final : public Message {
public:
    ShaderProgramIncludeMessage() = default;
    explicit ShaderProgramIncludeMessage(std::string included) : file(std::move(included)) {}

    void runOnGraphicsThread() override;
    void runOnUiThread() override {}

    static constexpr auto members() {
        return std::tuple{Member{"file", &ShaderProgramIncludeMessage::file}};
    }

    std::string file; ///< as the programs' records name it
};

/** Tells the UI how the compilation of a program ended. */
class ShaderProgramCompiledMessage final : public Message {
public:
    ShaderProgramCompiledMessage() = default;
    explicit ShaderProgramCompiledMessage(ShaderProgramRecord compiled)
        : record(std::move(compiled)) {}

    void runOnGraphicsThread() override {}
    void runOnUiThread() override;

    static constexpr auto members() {
        return std::tuple{Member{"record", &ShaderProgramCompiledMessage::record}};
    }

    ShaderProgramRecord record;
};

/// For ProgramManager::setCompiledCallback(): tells the windows, in the log's place. Graphics
/// thread.
void tellProgramCompiled(const vlGraphics::Program& program);

} // namespace vlEditor
