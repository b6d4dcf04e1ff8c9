// Runs whole commands in turns and says what each took: wall time, processor time, peak memory, and
// how many times the peers' time that is.
#include "Report.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {
namespace {

constexpr const char* help =
        "usage: run_measured [--runs N] [--drop-caches] [--before SHELL-COMMAND] [--goal TEXT]\n"
        "                    [--until LINE]\n"
        "                    --title TEXT NAME command... [::: NAME command...]...\n"
        "The commands run in turns, N times each; the first is compared with the others. With\n"
        "--until the time ends when a command prints that line, not when it ends.\n";

[[noreturn]] void fail(const std::string& line) {
    fmt::print(stderr, "run_measured: {}\n", line);
    std::exit(1);
}

struct Command {
    std::string name;
    std::vector<char*> arguments; ///< ends with a null
    Samples wallMs;
    Samples cpuMs;
    Samples peakMb;
};

struct Measured {
    double wallMs = 0;
    double cpuMs = 0;
    double peakMb = 0;
};

struct Options {
    int runs = 5;
    bool dropCaches = false;
    std::string before;
    std::string goal;
    std::string until;
    std::string title;
    std::vector<Command> commands;
};

Options readOptions(int argc, char** argv) {
    Options options;
    int i = 1;
    for (; i < argc && std::strncmp(argv[i], "--", 2) == 0; ++i) {
        const std::string name = argv[i];
        if (name == "--drop-caches") {
            options.dropCaches = true;
            continue;
        }
        if (++i == argc) fail(help);
        if (name == "--runs")
            options.runs = std::max(1, std::atoi(argv[i]));
        else if (name == "--before")
            options.before = argv[i];
        else if (name == "--goal")
            options.goal = argv[i];
        else if (name == "--until")
            options.until = argv[i];
        else if (name == "--title")
            options.title = argv[i];
        else
            fail(help);
    }
    bool begins = true;
    for (; i < argc; ++i) {
        if (std::strcmp(argv[i], ":::") == 0) {
            begins = true;
        } else if (begins) {
            options.commands.emplace_back().name = argv[i];
            begins = false;
        } else {
            options.commands.back().arguments.push_back(argv[i]);
        }
    }
    for (Command& command : options.commands) {
        if (command.arguments.empty()) fail(help);
        command.arguments.push_back(nullptr);
    }
    if (options.commands.empty() || options.title.empty()) fail(help);
    return options;
}

/// Needs the administrator's rights. Nothing that was read before is in memory afterwards.
bool dropCaches() {
    sync();
    const int file = open("/proc/sys/vm/drop_caches", O_WRONLY);
    if (file < 0) return false;
    const bool done = write(file, "3\n", 2) == 2;
    close(file);
    return done;
}

/// When the line came; reads on until the writer ends.
double timeOfLine(int from, const std::string& line) {
    double time = 0;
    std::string text;
    char buffer[4096];
    for (ssize_t got = 0; (got = read(from, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(got));
        if (time == 0 && ("\n" + text).find("\n" + line + "\n") != std::string::npos)
            time = nowMs();
    }
    return time;
}

Measured runOnce(const Command& command, const std::string& until) {
    int output[2];
    if (pipe(output) != 0) fail("no pipe");
    const double start = nowMs();
    const pid_t child = fork();
    if (child < 0) fail(std::string("fork: ") + std::strerror(errno));
    if (child == 0) {
        dup2(output[1], STDOUT_FILENO);
        close(output[0]);
        close(output[1]);
        execvp(command.arguments[0], command.arguments.data());
        std::perror(command.arguments[0]);
        _exit(127);
    }
    close(output[1]);
    const double said = timeOfLine(output[0], until);
    close(output[0]);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) fail("wait4 failed");
    const double end = until.empty() ? nowMs() : said;
    if (end == 0) fail(fmt::format("'{}' did not print '{}'", command.name, until));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail(fmt::format("'{}' failed: status {:#x}", command.name, status));
    const auto inMs = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return {end - start,
            inMs(usage.ru_utime) + inMs(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
}

void runAll(Options& options) {
    bool permitted = true;
    // The first run of all is for the caches, where they are not to be dropped.
    for (int run = options.dropCaches ? 0 : -1; run < options.runs; ++run) {
        for (Command& command : options.commands) {
            if (!options.before.empty() && std::system(options.before.c_str()) != 0)
                fail("'" + options.before + "' failed");
            if (options.dropCaches) permitted = dropCaches() && permitted;
            Measured measured = runOnce(command, options.until);
            if (run < 0) continue;
            command.wallMs.add(measured.wallMs);
            command.cpuMs.add(measured.cpuMs);
            command.peakMb.add(measured.peakMb);
        }
    }
    if (!permitted)
        fmt::print("  the page cache could not be dropped (that takes the administrator): "
                   "these are warm runs\n");
}

std::string timeAndPeak(const Command& command) {
    return withSpread(command.wallMs) + " ms, " + figure(command.peakMb.median()) + " MB";
}

void report(const Options& options) {
    fmt::print("{}, {} runs each, in turns\n", options.title, options.runs);
    fmt::print("  {:34} {:>28} {:>12} {:>10}\n", "", "wall ms", "processor ms", "peak MB");
    for (const Command& command : options.commands)
        fmt::print("  {:34} {:>28} {:>12} {:>10}\n",
                   command.name,
                   withSpread(command.wallMs),
                   figure(command.cpuMs.median()),
                   figure(command.peakMb.median()));
    const Command& ours = options.commands.front();
    for (std::size_t i = 1; i < options.commands.size(); ++i) {
        const Command& peer = options.commands[i];
        summarise(fmt::format("{}, against {}", options.title, peer.name),
                  timeAndPeak(ours),
                  timeAndPeak(peer),
                  pairedRatios(ours.wallMs, peer.wallMs),
                  options.goal);
    }
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    bench::Options options = bench::readOptions(argc, argv);
    bench::runAll(options);
    bench::report(options);
}
