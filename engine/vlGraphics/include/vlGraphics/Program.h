#pragma once
#include <vlGraphics/ProgramReflection.h>
#include <vlGraphics/ProgramSourcesHolder.h>
#include <vlGraphics/ResourceManager.h>

#include <memory>

namespace vlGraphics {

/** How a program's last compilation ended. */
class ProgramCompilationResult {
public:
    ProgramCompilationResult() = default;
    ProgramCompilationResult(SHADER_TYPE stage, vlMemory::StringView errorMessage)
        : stage_(stage), errorMessage_(errorMessage) {}
    bool isSuccess() const { return errorMessage_.empty(); }
    /// The stage that failed; meaningless on success.
    SHADER_TYPE getStage() const { return stage_; }
    /// First error as "line: text"; empty on success.
    const vlMemory::String& getErrorMessage() const { return errorMessage_; }

private:
    SHADER_TYPE stage_ = SHADER_TYPE::VERTEX;
    vlMemory::String errorMessage_;
};

/** The HLSL sources of up to seven stages, and what they compile to. Compilation runs on the
 * engine's own threads: after load() the last good result stays in use until the new one is there,
 * and for good when it fails. Graphics thread only. */
class Program final : public Resource {
public:
    static constexpr vlMemory::StringView kindName = "shader program";

    Program();
    ~Program() override;

    PROGRAM_TYPE getType() const { return type_; }
    void setType(PROGRAM_TYPE type);

    /// Sources as text kept by the program.
    const ProgramSourcesHolder& getMemory() const { return sources_; }
    void setFromMemory(ProgramSourcesHolder sources);
    bool isFromMemory() const { return folder_.empty(); }
    /// The sources belong into files of a folder (relative to the working directory), one a stage.
    void setFromFiles(vlMemory::StringView folder);
    bool isFromFile() const { return !folder_.empty(); }
    const vlMemory::String& getFolder() const { return folder_; }

    /// Defines the portable spelling (vlFloat4, vlMul, ..., under VL_HLSL) before the sources. On.
    void setActivateCrossCompilerDefines(bool value);
    bool getActivateCrossCompilerDefines() const { return crossCompilerDefines_; }

    /// Starts compiling what the settings say now. Succeeds at once; the outcome comes later.
    vlCommon::Result<> load() override;
    void unload() override;

    /// A compilation is under way.
    bool isCompiling() const;
    /// There is a good result to draw with, perhaps of an earlier source.
    bool isUsable() const { return gpu_ != nullptr; }
    ProgramCompilationResult getLastCompilationResult() const { return result_; }
    /// Of the result in use; empty before the first.
    const ProgramReflection& getReflection() const { return reflection_; }
    /// Grows whenever another result comes into use.
    std::uint64_t getBuild() const { return build_; }

    struct Gpu; ///< the back end's side: modules and layouts of the result in use
    Gpu* gpu() const { return gpu_.get(); }

private:
    friend class ProgramCompiler;
    PROGRAM_TYPE type_ = PROGRAM_TYPE::PIPELINE;
    ProgramSourcesHolder sources_;
    vlMemory::String folder_;
    bool crossCompilerDefines_ = true;
    std::uint64_t ticket_ = 0;   ///< of the newest compilation started
    std::uint64_t finished_ = 0; ///< of the newest compilation ended
    std::uint64_t build_ = 0;
    ProgramCompilationResult result_;
    ProgramReflection reflection_;
    std::unique_ptr<Gpu> gpu_;
};

class ProgramManager final : public ResourceManager<Program>,
                             public vlCommon::MaybeSingletonClass<ProgramManager> {
public:
    /// Adopts what the compilation threads have finished. Called at the start of each frame.
    void adoptFinished();
    /// Blocks until no compilation is under way, and adopts all: headless rendering's first step.
    void waitForAll();
    bool isAnyCompiling() const;
};

} // namespace vlGraphics
