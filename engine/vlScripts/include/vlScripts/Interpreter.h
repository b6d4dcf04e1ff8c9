#pragma once
#include <vlCommon/Result.h>
#include <vlScripts/CompiledScript.h>
#include <vlScripts/ObjectKind.h>
#include <vlScripts/Value.h>

#include <chrono>
#include <functional>
#include <memory>
#include <span>
#include <string_view>

namespace vlScripts {

/** How far one execution may go. What exceeds a limit ends with an error that no script can catch.
 */
struct Limits {
    std::uint64_t instructions = 0;    ///< of the virtual machine, about; 0: no limit
    std::chrono::milliseconds time{0}; ///< 0: no limit
    std::size_t memory =
            64U << 20U; ///< bytes that all of the interpreter's values may take; at least 1 MiB
    std::size_t printedLines = 1000; ///< further ones are left out, and one line says so
};

struct ExecutionResult {
    bool succeeded = true;
    std::string message;   ///< one line, "chunk:line: text"; empty on success
    std::string traceback; ///< several lines; empty on success
    Values returned;
};

/// What scripts call. An error becomes an error of the script, with its position.
using NativeFunction = std::function<vlCommon::Result<Values>(std::span<const Value> arguments)>;

/** One confined Lua state. Scripts see the language, its own tables without files, processes and
 *  bytecode, and what is added here. Globals stay from one execution to the next, unless a script
 *  filled the memory with them: then all of them are dropped. print() goes to the LogManager.
 *  One thread at a time, but for interrupt(). */
class Interpreter final {
public:
    explicit Interpreter(const Limits& limits);
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    /// "ui.click" makes the table "ui" when needed. One of that path that is there is replaced.
    void addFunction(std::string_view path, NativeFunction function);
    /// Values of kind Object become things with these fields from now on.
    void addKind(ObjectKind kind);

    void setLimits(const Limits& limits);
    const Limits& getLimits() const;

    ExecutionResult execute(const CompiledScript& script);
    /// Calls a function of a script, also from within a NativeFunction: it then counts towards the
    /// limits of the execution under way.
    ExecutionResult call(const Function& function, std::span<const Value> arguments);
    /// Any thread: what runs ends soon with an error, once a NativeFunction under way has returned.
    /// Does nothing while nothing runs.
    void interrupt();

private:
    class State;
    std::unique_ptr<State> state_;
};

} // namespace vlScripts
