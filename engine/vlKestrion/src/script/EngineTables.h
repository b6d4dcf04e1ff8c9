#pragma once
#include <vlMemory/String.h>
#include <vlScripts/Interpreter.h>

#include <vector>

namespace vlKestrion {

/// A kind of engine objects as scripts know it.
struct EngineKind {
    vlScripts::ObjectKind kind;
    vlMemory::String plural; ///< "nodes": the function that lists them
    /// Names of those that are not hidden, in order of creation.
    std::vector<vlMemory::String> (*list)();
    bool (*exists)(const vlMemory::String& name);
};

/// Every kind, in the order of the documentation.
std::vector<EngineKind> engineKinds();

/// Adds the table "engine": one function for each kind, one that lists it, and the clock.
void addEngineTables(vlScripts::Interpreter& interpreter);

/// The documentation's tables of fields, as Markdown.
vlMemory::String describeEngineKinds();

} // namespace vlKestrion
