#pragma once
#include <vlGraphics/ProgramReflection.h>
#include <vlGraphics/ProgramSourcesHolder.h>
#include <vlGraphics/ResourceManager.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace vlGraphics {

/** What the compiler has to say about a place in a program's sources. */
struct ProgramDiagnostic {
    SHADER_TYPE stage = SHADER_TYPE::VERTEX;
    vlMemory::String file; ///< of an #include, relative to the working directory, or absolute where
                           ///< it lies outside; empty: the stage's own source
    std::uint32_t line = 1; ///< from 1
    vlMemory::String text;
    friend bool operator==(const ProgramDiagnostic&, const ProgramDiagnostic&) = default;
};

/** How a program's last compilation ended. */
class ProgramCompilationResult {
public:
    ProgramCompilationResult() = default;
    /// One error, as "line: text".
    ProgramCompilationResult(SHADER_TYPE stage, vlMemory::StringView errorMessage);
    /// Of several errors, in the order in which they are to be mended.
    explicit ProgramCompilationResult(std::vector<ProgramDiagnostic> diagnostics)
        : diagnostics_(std::move(diagnostics)) {}
    bool isSuccess() const { return diagnostics_.empty(); }
    /// The stage of the first error; meaningless on success.
    SHADER_TYPE getStage() const {
        return isSuccess() ? SHADER_TYPE::VERTEX : diagnostics_.front().stage;
    }
    /// The first error as "line: text", or "file:line: text" within an #include; empty on success.
    vlMemory::String getErrorMessage() const;
    /// At most a few for each stage: the compiler gives up early.
    const std::vector<ProgramDiagnostic>& getDiagnostics() const { return diagnostics_; }

private:
    std::vector<ProgramDiagnostic> diagnostics_;
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
    /// The sources belong into files of a folder (relative to the working directory), one a stage,
    /// and include from there; empty: into none.
    void setFromFiles(vlMemory::StringView folder);
    bool isFromFile() const { return !folder_.empty(); }
    const vlMemory::String& getFolder() const { return folder_; }
    /// Where the sources look first for what they include: the folder that they belong into, or
    /// did when they were last those of files. Empty: in the working directory alone.
    const vlMemory::String& getIncludeFolder() const { return includeFolder_; }
    void setIncludeFolder(vlMemory::StringView folder);

    /// Defines the portable spelling (vlFloat4, vlMul, ..., under VL_HLSL) before the sources. On.
    void setActivateCrossCompilerDefines(bool value);
    bool getActivateCrossCompilerDefines() const { return crossCompilerDefines_; }

    /// Loops that need not end are left after many passes, or when a frame takes too long; the
    /// program is then as if its last compilation had failed, and the last result that drew without
    /// comes back into use. On. Off lets such loops keep the device, and compiles them as written.
    void setBoundLoops(bool value);
    bool getBoundLoops() const { return boundLoops_; }

    /// Starts compiling what the settings say now. Succeeds at once; the outcome comes later.
    vlCommon::Result<> load() override;
    void unload() override;

    /// A compilation is under way.
    bool isCompiling() const;
    /// There is a good result to draw with, perhaps of an earlier source.
    bool isUsable() const { return gpu_ != nullptr; }
    const ProgramCompilationResult& getLastCompilationResult() const { return result_; }
    /// The files that the last compilation read through #include or missed, also one that failed:
    /// relative to the working directory, or absolute where they lie outside; each once.
    const std::vector<vlMemory::String>& getIncludedFiles() const { return includedFiles_; }
    /// The same of the sources as they are now, and of branches that the compiler would leave out;
    /// reads the disk.
    std::vector<vlMemory::String> findIncludedFiles() const;
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
    vlMemory::String includeFolder_;
    bool crossCompilerDefines_ = true;
    bool boundLoops_ = true;
    std::uint64_t ticket_ = 0;   ///< of the newest compilation started
    std::uint64_t finished_ = 0; ///< of the newest compilation ended
    std::uint64_t build_ = 0;
    ProgramCompilationResult result_;
    std::vector<vlMemory::String> includedFiles_;
    ProgramReflection reflection_;
    std::unique_ptr<Gpu> gpu_;
    /// Of the result before, until the one in use has drawn a frame without being stopped.
    ProgramReflection triedReflection_;
    std::unique_ptr<Gpu> triedGpu_;
    bool isTried_ = true; ///< the result in use has
};

class ProgramManager final : public ResourceManager<Program>,
                             public vlCommon::MaybeSingletonClass<ProgramManager> {
public:
    /// Adopts what the compilation threads have finished. Called at the start of each frame.
    void adoptFinished();
    /// Blocks until no compilation is under way, and adopts all: headless rendering's first step.
    void waitForAll();
    bool isAnyCompiling() const;

    /// Hears of every program whose compilation ended, well or not, once it is adopted; failures
    /// are then its to tell, and otherwise go to the log. One at a time; an empty one is none.
    void setCompiledCallback(std::function<void(Program&)> callback);
    void tellCompiled(Program& program) const;

private:
    std::function<void(Program&)> compiled_;
};

} // namespace vlGraphics
