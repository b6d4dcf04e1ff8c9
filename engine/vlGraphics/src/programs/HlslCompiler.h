#pragma once
#include "programs/CompileRequest.h"

#include <cstddef>
#include <span>

namespace vlGraphics {

/// Bytes of one stage's source that are still compiled.
inline constexpr std::size_t maxSourceBytes = std::size_t{4} << 20U;

/// The stages that a program of that type may have, in their order.
std::span<const SHADER_TYPE> stagesOf(PROGRAM_TYPE type);

/** Compiles HLSL to SPIR-V 1.3 and reflects it. Depends on nothing but the request and the files
 * included; callable from any thread. A failure names the stages, and the lines in the texts as
 * their authors number them: at least the first fault of each stage. */
CompileReport compileHlsl(const CompileRequest& request);
/// The same from its parts, with nothing to include.
CompileOutcome
compileHlsl(PROGRAM_TYPE type, const ProgramSourcesHolder& sources, bool crossCompilerDefines);

} // namespace vlGraphics
