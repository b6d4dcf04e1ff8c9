#pragma once
#include "programs/CompiledProgram.h"

#include <vlGraphics/Program.h>
#include <vlGraphics/ProgramSourcesHolder.h>

#include <tl/expected.hpp>

#include <cstddef>

namespace vlGraphics {

/** All that a compilation depends on: equal requests compile to the same. */
struct CompileRequest {
    PROGRAM_TYPE type = PROGRAM_TYPE::PIPELINE;
    ProgramSourcesHolder sources;
    bool crossCompilerDefines = true;
    friend bool operator==(const CompileRequest&, const CompileRequest&) = default;
};

struct CompileRequestHash {
    std::size_t operator()(const CompileRequest& request) const;
};

using CompileOutcome = tl::expected<CompiledProgram, ProgramCompilationResult>;

} // namespace vlGraphics
