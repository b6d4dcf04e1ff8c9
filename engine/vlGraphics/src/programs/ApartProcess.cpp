#include "programs/ApartProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <mutex>
#include <new>
#include <optional>
#include <span>
#include <utility>

namespace vlGraphics {

namespace {

using Bytes = std::vector<std::byte>;

using Work = std::function<Bytes(ApartNote&)>;

/// By the clock, for what waits instead of working, for each second given: a machine may be busy.
constexpr std::chrono::seconds waitForSecond{15};
constexpr int exitWithoutResult = 1;

/** A note that the copy shares with the process. */
class SharedNote {
public:
    SharedNote()
        : place_(::mmap(nullptr,
                        sizeof(ApartNote),
                        PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS,
                        -1,
                        0)) {
        if (place_ != MAP_FAILED) note_ = new (place_) ApartNote(0);
    }
    ~SharedNote() {
        if (note_ != nullptr) ::munmap(place_, sizeof(ApartNote));
    }
    SharedNote(const SharedNote&) = delete;
    SharedNote& operator=(const SharedNote&) = delete;
    ApartNote* get() const { return note_; }

private:
    void* place_;
    ApartNote* note_ = nullptr; ///< null: there is no memory
};

struct Copy {
    ::pid_t process = -1; ///< -1: there is none
    int result = -1;      ///< where it is read from
};

bool writeAll(int to, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ::ssize_t written = ::write(to, bytes.data(), bytes.size());
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

/// Memory beyond what the process had: far more than what work needs, and less than what brings a
/// machine to its knees.
constexpr ::rlim_t mostMemory = ::rlim_t{2} << 30U;

/// Of its own, in bytes, as RLIMIT_DATA counts; 0 where the system does not tell.
::rlim_t dataOfSelf() {
    std::ifstream pages("/proc/self/statm");
    ::rlim_t count = 0;
    for (int field = 0; field < 6; ++field)
        if (!(pages >> count)) return 0;
    return count * static_cast<::rlim_t>(::sysconf(_SC_PAGESIZE));
}

/// The copy must not outlive the process, nor answer its own faults as the process would.
void limitSelf(unsigned mostSeconds, ::rlim_t data) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int fault : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGXCPU})
        std::signal(fault, SIG_DFL);
    // A terminal sends these to both, and the process ends the copy when it ends.
    for (const int request : {SIGINT, SIGTERM, SIGHUP})
        std::signal(request, SIG_IGN);
    const ::rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    const ::rlimit time{mostSeconds, mostSeconds + 1};
    ::setrlimit(RLIMIT_CPU, &time);
    if (data == 0) return;
    const ::rlimit memory{data + mostMemory, data + mostMemory};
    ::setrlimit(RLIMIT_DATA, &memory);
}

[[noreturn]] void runCopy(const Work& work, unsigned mostSeconds, ApartNote& note, int result) {
    limitSelf(mostSeconds, dataOfSelf());
    bool isWritten = false;
    try {
        isWritten = writeAll(result, work(note));
    } catch (...) {
        isWritten = false;
    }
    // Nothing that belongs to the process is to be ended or flushed twice.
    ::_exit(isWritten ? 0 : exitWithoutResult);
}

Copy start(const Work& work, unsigned mostSeconds, ApartNote& note) {
    // A copy made meanwhile would hold the writing end, and so this one's end would not show.
    static std::mutex oneAtATime;
    const std::lock_guard guard(oneAtATime);
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
    const ::pid_t process = ::fork();
    if (process == 0) runCopy(work, mostSeconds, note, ends[1]);
    ::close(ends[1]);
    if (process > 0) return {process, ends[0]};
    ::close(ends[0]);
    return {};
}

/// All until the copy ends; nothing where it waits for ever.
std::optional<Bytes> readAll(int from, std::chrono::seconds longestWait) {
    const auto until = std::chrono::steady_clock::now() + longestWait;
    Bytes all;
    std::array<std::byte, 65536> some{};
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                until - std::chrono::steady_clock::now());
        if (left.count() <= 0) return std::nullopt;
        ::pollfd ready{from, POLLIN, 0};
        if (::poll(&ready, 1, static_cast<int>(left.count())) <= 0) continue;
        const ::ssize_t got = ::read(from, some.data(), some.size());
        if (got <= 0) return all;
        all.insert(all.end(), some.begin(), some.begin() + got);
    }
}

ApartResult::End endOf(::pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return ApartResult::End::DONE;
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    if (signal == SIGXCPU) return ApartResult::End::STOPPED;
    return signal == SIGKILL ? ApartResult::End::ENDED : ApartResult::End::BROKEN;
}

} // namespace

ApartResult runApart(const Work& work, unsigned mostSeconds) {
    ApartResult result;
    const SharedNote note;
    if (note.get() == nullptr) return result;
    const Copy copy = start(work, mostSeconds, *note.get());
    if (copy.process < 0) return result;
    auto bytes = readAll(copy.result, waitForSecond * mostSeconds);
    ::close(copy.result);
    if (!bytes) ::kill(copy.process, SIGKILL);
    result.end = endOf(copy.process);
    result.note = note.get()->load();
    if (bytes && result.end == ApartResult::End::DONE) result.bytes = *std::move(bytes);
    return result;
}

} // namespace vlGraphics
