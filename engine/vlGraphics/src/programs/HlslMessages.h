#pragma once
#include "programs/IncludeFiles.h"

#include <vlGraphics/Program.h>

namespace vlGraphics::HlslMessages {

/// The first error of what the compiler says about a stage; its file is as the compiler calls it.
/// Later ones mostly follow from the first.
ProgramDiagnostic firstError(SHADER_TYPE stage, vlMemory::StringView log);

/// A message of our own, "line: text".
ProgramDiagnostic error(SHADER_TYPE stage, vlMemory::StringView message);

/// Puts the path of an included file in the place of the compiler's name for it, and makes the text
/// one of printable characters.
void finish(ProgramDiagnostic& diagnostic, const IncludeFiles& files);

} // namespace vlGraphics::HlslMessages
