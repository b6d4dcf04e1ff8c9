#pragma once
#include "programs/CompileRequest.h"
#include "programs/InterfaceMapper.h"

namespace vlGraphics {

/** What the program's SPIR-V really uses. Fails where stages do not fit each other and where two
 * resources want one address, with the file as the compiler calls it. Any thread. */
tl::expected<ProgramReflection, ProgramDiagnostic> reflect(const CompiledProgram& program,
                                                           const MappedInterfaces& interfaces);

} // namespace vlGraphics
