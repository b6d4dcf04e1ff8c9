#pragma once
#include <vlGraphics/ProgramSourcesHolder.h>

namespace vlEditor {

/// What a program has when it is made or becomes one of that type: one that can be compiled and
/// begun from. Any thread.
vlGraphics::ProgramSourcesHolder defaultSources(vlGraphics::PROGRAM_TYPE type);

} // namespace vlEditor
