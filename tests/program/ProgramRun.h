#pragma once
#include <sys/types.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tests {

/** A folder of a test's own, removed with everything in it. */
class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/** The editor as a process of its own, in a folder of its own. Whoever does not wait for its end
 * ends it by destroying this. */
class ProgramRun {
public:
    struct Outcome {
        int status =
                -1; ///< exit status; 128 + the signal's number when one ended it, -1 on time-out
        std::string out;
        std::string err;
    };

    /// `environment` adds to and replaces what this process has; an empty value removes the
    /// variable. Settings are kept in the folder "config" of the run's own unless it says
    /// otherwise.
    ProgramRun(const std::filesystem::path& folder,
               const std::vector<std::string>& arguments,
               const std::map<std::string, std::string>& environment = {});
    ~ProgramRun();
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    pid_t pid() const { return pid_; }
    bool isRunning();
    void signal(int number) const;
    /// Waits for the end, at most so long; the process is killed then.
    Outcome wait(int seconds = 120);
    std::string err() const;

private:
    bool reap(bool block);

    std::filesystem::path out_;
    std::filesystem::path err_;
    pid_t pid_ = -1;
    std::optional<int> status_;
};

/// Runs it to its end.
ProgramRun::Outcome run(const std::filesystem::path& folder,
                        const std::vector<std::string>& arguments,
                        const std::map<std::string, std::string>& environment = {});

/// A file's bytes; empty when it cannot be read.
std::string textOf(const std::filesystem::path& file);

/// Absolute path of a file of the repository.
std::filesystem::path source(const std::string& relative);

/// Lines that a sanitizer or the validation layers wrote; empty when they are content.
std::string complaints(const std::string& text);

} // namespace tests
