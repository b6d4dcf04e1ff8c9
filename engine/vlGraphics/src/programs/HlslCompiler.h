#pragma once
#include "programs/ApartProcess.h"
#include "programs/CompileRequest.h"
#include "programs/IncludeFiles.h"

#include <cstddef>
#include <span>

namespace vlGraphics {

/// Bytes of one stage's source that are still compiled.
inline constexpr std::size_t maxSourceBytes = std::size_t{4} << 20U;

/// The stages that a program of that type may have, in their order.
std::span<const SHADER_TYPE> stagesOf(PROGRAM_TYPE type);

/** Compiles HLSL to SPIR-V 1.3 and reflects it. Depends on nothing but the request and the files
 * included; callable from any thread. A failure names the stages, and the lines in the texts as
 * their authors number them: at least the first fault of each stage. Runs in a process of its own,
 * for there are texts that the compiler breaks down on; that is a failure like others. */
CompileReport compileHlsl(const CompileRequest& request);
/// The same from its parts, with nothing to include.
CompileOutcome
compileHlsl(PROGRAM_TYPE type, const ProgramSourcesHolder& sources, bool crossCompilerDefines);

/** The same in this process, which breaks down with the compiler. Notes the stage that it is at,
 * and past all stages the one that it translates. Needs a deep stack. */
CompileReport compileHere(const CompileRequest& request, ApartNote& note);
/** Not where a sanitizer watches: a copy made while another thread allocates would wait for the
 * sanitizer's allocator for ever, and findings are to end the process. */
#if defined(VL_SANITIZE_ADDRESS) || defined(VL_SANITIZE_THREAD)
inline constexpr bool compilesApart = false;
#else
inline constexpr bool compilesApart = true;
#endif

/// Has the files read that a compilation would include, and those of branches it would not take.
void readIncludes(const CompileRequest& request, IncludeFiles& files);
/// Makes what all compilations share, without which each copy of the process would make its own.
void warmUpCompiler();

} // namespace vlGraphics
