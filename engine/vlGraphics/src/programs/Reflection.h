#pragma once
#include "programs/CompileRequest.h"
#include "programs/InterfaceMapper.h"

#include <vector>

namespace vlGraphics {

/** What the program's SPIR-V really uses. Fails where a stage holds what cannot be bound. Any
 * thread. */
tl::expected<ProgramReflection, ProgramCompilationResult>
reflect(const CompiledProgram& program, const std::vector<PlacedSemantic>& vertexInputs);

} // namespace vlGraphics
