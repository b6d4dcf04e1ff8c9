#pragma once
#include <vlMemory/String.h>

#include <vector>

namespace vlKestrion {

/** Checks a file and everything it names without making anything: a project (".vls") or
 * declarations of any kind, materials among them (any other ending). One line an error that starts
 * with "file:line:"; empty for a good file. A relative path is taken from the working directory.
 * Needs no engine; any thread. */
std::vector<vlMemory::String> validateFile(vlMemory::StringView path);

} // namespace vlKestrion
