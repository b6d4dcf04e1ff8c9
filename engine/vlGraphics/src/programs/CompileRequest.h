#pragma once
#include "programs/CompiledProgram.h"
#include "programs/IncludeFiles.h"

#include <vlGraphics/Program.h>
#include <vlGraphics/ProgramSourcesHolder.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <utility>
#include <vector>

namespace vlGraphics {

/** All that a compilation depends on but the files that it includes: equal requests compile to the
 *  same as long as those stay as they are. */
struct CompileRequest {
    PROGRAM_TYPE type = PROGRAM_TYPE::PIPELINE;
    ProgramSourcesHolder sources;
    bool crossCompilerDefines = true;
    bool boundLoops = true;
    /// Stages in which the device lets threads write; bit n is stage n.
    std::uint32_t writingStages = ~0U;
    /// Of one thread through its loops, where they are bound.
    std::uint32_t mostPasses = std::uint32_t{1} << 20U;
    /// Where #include looks; both are empty where nothing may include anything.
    vlMemory::String workingPath; ///< absolute
    vlMemory::String folder;      ///< where the sources lie, relative to the working path
    vlMemory::String filePrefix;  ///< before the names of included files when they are told

    bool mayInclude() const { return !workingPath.empty(); }
    friend bool operator==(const CompileRequest&, const CompileRequest&) = default;
};

/** The request for sources that lie in a folder: relative to the working directory, which files are
 * then included from, or absolute where it lies outside; then from the folder that it stands in.
 * Without what the compilation does not look at, so that requests which differ only there are
 * equal. */
CompileRequest makeRequest(PROGRAM_TYPE type,
                           const ProgramSourcesHolder& sources,
                           bool crossCompilerDefines,
                           vlMemory::StringView folder);

struct CompileRequestHash {
    std::size_t operator()(const CompileRequest& request) const;
};

using CompileOutcome = tl::expected<CompiledProgram, ProgramCompilationResult>;

/** An outcome, and what of the disk it depends on. */
struct CompileReport {
    CompileReport(CompileOutcome made) : outcome(std::move(made)) {} // NOLINT: an outcome is one
    CompileOutcome outcome;
    std::vector<IncludeProbe> probes;
    std::vector<vlMemory::String> includedFiles; ///< of Program::getIncludedFiles()
    bool isLasting = true; ///< false: it failed for what may be otherwise the next time
};

} // namespace vlGraphics
