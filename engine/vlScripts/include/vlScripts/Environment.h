#pragma once
#include <vlScripts/Interpreter.h>
#include <vlScripts/Script.h>

namespace vlScripts {

/** The engine's one interpreter with its tables. Owned by vlKestrion::System; graphics thread only
 *  (whoever owns the engine). */
class Environment final {
public:
    /// An engine's commands are for the moment: what takes longer stops the drawing.
    static constexpr Limits defaultLimits{.instructions = 0,
                                          .time = std::chrono::milliseconds(2000),
                                          .memory = 64U << 20U,
                                          .printedLines = 1000};

    explicit Environment(const Limits& limits = defaultLimits) : interpreter_(limits) {}

    /// False on failure; the result says why.
    bool execute(const CompiledScript& script);
    /// Within this time instead of the interpreter's own; 0: none.
    bool execute(const CompiledScript& script, std::chrono::milliseconds time);
    /// Fails, too, when the script is not loaded.
    bool execute(const Script& script);
    /// Of the last execute().
    const ExecutionResult& getLastExecutionResult() const { return last_; }

    Interpreter& interpreter() { return interpreter_; }

private:
    Interpreter interpreter_;
    ExecutionResult last_;
};

} // namespace vlScripts
