#pragma once
#include <vlScripts/Interpreter.h>

#include <lua.hpp>

#include <atomic>
#include <string>

namespace vlScripts {

/** Watches one Lua state's memory, and the instructions and time of one execution. Once an
 *  execution has used up a limit it is ended: from then on every instruction of it fails, so that
 *  no handler of the script's can go on. */
class Budget final {
public:
    enum class Ending { none, instructions, time, memory, interrupted };

    explicit Budget(const Limits& limits) : limits_(limits) {}

    const Limits& limits() const { return limits_; }
    void setLimits(const Limits& limits) { limits_ = limits; }

    void begin(lua_State* state);
    void finish(lua_State* state);
    bool isRunning() const { return running_ != nullptr; }
    Ending ending() const { return ending_; }
    /// One line: which limit was reached.
    std::string describeEnding() const;
    /// "chunk:line" where it ended, and the calls that led there.
    const std::string& endedAt() const { return endedAt_; }
    const std::string& traceback() const { return traceback_; }

    /// Raises when the execution has ended or ends now. Work done by C++ is told in instructions.
    void check(lua_State* state, std::uint64_t instructions = 0);
    /// Any thread.
    void interrupt() { interrupted_ = true; }
    /// False once there is no line left to print.
    bool takeLine() { return printed_++ < limits_.printedLines; }
    bool isFirstLineTooMany() const { return printed_ == limits_.printedLines + 1; }

    std::size_t usedMemory() const { return used_; }
    std::size_t memoryLimit() const { return std::max<std::size_t>(limits_.memory, 1U << 20U); }
    static void* allocate(void* budget, void* block, std::size_t oldSize, std::size_t newSize);

    /// Runs in a coroutine: hooks belong to each of them.
    class InCoroutine {
    public:
        InCoroutine(Budget& budget, lua_State* coroutine);
        ~InCoroutine() { budget_.running_ = outer_; }
        InCoroutine(const InCoroutine&) = delete;
        InCoroutine& operator=(const InCoroutine&) = delete;

    private:
        Budget& budget_;
        lua_State* outer_;
    };
    lua_State* running() const { return running_; }

private:
    static void hook(lua_State* state, lua_Debug* record);
    void* resize(void* block, std::size_t oldSize, std::size_t newSize);
    void look();
    void end(Ending ending);
    [[noreturn]] void raise(lua_State* state);

    Limits limits_;
    std::size_t used_ = 0;
    std::size_t sinceLook_ = 0;   ///< bytes asked for since the clock was read
    std::size_t refusedSize_ = 0; ///< of the last request, when it was refused
    lua_State* running_ = nullptr;
    std::chrono::steady_clock::time_point deadline_;
    std::uint64_t instructions_ = 0;
    std::size_t printed_ = 0;
    Ending ending_ = Ending::none;
    std::string endedAt_;
    std::string traceback_;
    std::atomic<bool> interrupted_ = false;
};

/// "chunk:line" of the function of a script that runs; empty when there is none.
std::string positionIn(lua_State* state);
/// The calls that led here, innermost first, one a line. Asks Lua for no memory.
std::string tracebackOf(lua_State* state);

} // namespace vlScripts
