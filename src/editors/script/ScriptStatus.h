#pragma once
#include <vlScripts/Script.h>

#include <cstddef>
#include <string>

namespace vlEditor {

/** What is said below a script's source. */
struct ScriptStatus {
    std::string text = {};
    std::size_t line = 0; ///< that it is about, from 1; 0: none in particular
    bool isError = false;
    bool isBusy = false; ///< nothing is said until the engine has answered
    friend bool operator==(const ScriptStatus&, const ScriptStatus&) = default;
};

/// Of a line as compiling and running give it, "name:3: text"; any other is about no line.
ScriptStatus errorStatus(const std::string& name, const std::string& message);

// Graphics thread.
/// Empty when the last compilation went well, or there was none.
std::string compileErrorOf(const vlScripts::Script& script);
/// What is loaded is the source as it is now, under the name that the script has now.
bool isCompiledAsItIs(const vlScripts::Script& script);

} // namespace vlEditor
