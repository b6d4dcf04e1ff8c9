#pragma once
#include <vlCommon/SingletonClass.h>
#include <vlScripts/Script.h>

#include <string>

namespace vlEditor {

/** Compiles what is typed in the command lines, in one script that all of them
 * share, and sends it to the graphics thread, which runs it. Each command
 * travels as the snapshot that it was compiled to, so that two quick ones both
 * run. UI thread only. */
class CommandInterpreter final : public vlCommon::SingletonClass<CommandInterpreter> {
public:
    CommandInterpreter();

    /// What does not compile is told in the log. "= x" is short for printing the
    /// value of x.
    void submit(const std::string& command);

private:
    vlScripts::Script script_;
};

} // namespace vlEditor
