#pragma once
#include <vlCommon/Result.h>
#include <vlScripts/CompiledScript.h>
#include <vlScripts/Interpreter.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace vlEditor {

/** An automation script on a thread of its own, with an interpreter of its own. What it wants of
 * the widgets and of the engine it asks for, and waits. UI thread. */
class ScriptRun final {
public:
    /// Fails with one line when the file cannot be read or is no script; needs nothing of the
    /// editor.
    static vlCommon::Result<std::unique_ptr<ScriptRun>> load(const std::string& file);
    ~ScriptRun();
    ScriptRun(const ScriptRun&) = delete;
    ScriptRun& operator=(const ScriptRun&) = delete;

    /// Once, when the editor is up; at its end the script has the editor leave.
    void start();
    /// The event loop has ended, by the script or without it: ends the script if it still runs, and
    /// waits for its thread. True when the script came to its own end without an error; otherwise
    /// the error has been written to standard error.
    bool finish();

private:
    explicit ScriptRun(std::shared_ptr<const vlScripts::CompiledScript> script);
    void run();

    std::shared_ptr<const vlScripts::CompiledScript> script_;
    vlScripts::Interpreter interpreter_; ///< the script's thread's while that runs
    std::thread thread_;
    std::mutex lock_; ///< of both
    std::condition_variable changed_;
    bool ended_ = false;
    bool succeeded_ = false; ///< written by the script's thread, read after its join
};

} // namespace vlEditor
