#pragma once
#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>
#include <vlScripts/Value.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

namespace vlEditor {

/** Where the script's thread waits for what the other threads find out for it. A question is known
 *  by its ticket, a number that may travel in a message. Any thread; made by the UI thread before
 *  there is a script's thread. */
class Answers final : public vlCommon::SingletonClass<Answers> {
public:
    /// What a script gets; never a function of its own, which belongs to its thread.
    using Answer = vlCommon::Result<vlScripts::Values>;
    using Time = std::chrono::steady_clock::time_point;

    std::uint64_t open();
    /// Passed over when nobody waits under that ticket.
    void give(std::uint64_t ticket, Answer answer);
    /// Fails when the editor ends, or at the deadline with `late`.
    Answer wait(std::uint64_t ticket, std::optional<Time> deadline = {}, const char* late = "");
    /// False when the editor ends meanwhile.
    bool pause(std::chrono::milliseconds duration);

    /// The editor is ending: every wait ends, and every later one.
    void end();

private:
    std::mutex lock_;
    std::condition_variable changed_;
    std::map<std::uint64_t, std::optional<Answer>> open_;
    std::uint64_t next_ = 1;
    bool ended_ = false;
};

} // namespace vlEditor
