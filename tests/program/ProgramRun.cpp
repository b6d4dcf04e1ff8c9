#include "program/ProgramRun.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace tests {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> mergedEnvironment(std::map<std::string, std::string> changes) {
    std::vector<std::string> merged;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (changes.count(text.substr(0, text.find('='))) == 0) merged.push_back(text);
    }
    for (const auto& [name, value] : changes)
        if (!value.empty()) merged.push_back(name + "=" + value);
    return merged;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Folder::Folder() {
    std::string pattern = (fs::temp_directory_path() / "vlEditor_test_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = pattern;
}

Folder::~Folder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

ProgramRun::ProgramRun(const fs::path& folder,
                       const std::vector<std::string>& arguments,
                       const std::map<std::string, std::string>& environment)
    : out_(folder / "stdout.txt"), err_(folder / "stderr.txt") {
    std::vector<std::string> words{VL_EDITOR_PROGRAM};
    words.insert(words.end(), arguments.begin(), arguments.end());
    // What one run keeps of its window must not change the next test's.
    std::map<std::string, std::string> changes = environment;
    changes.emplace("XDG_CONFIG_HOME", (folder / "config").string());
    std::vector<std::string> variables = mergedEnvironment(std::move(changes));
    const std::vector<char*> argv = pointersTo(words);
    const std::vector<char*> envp = pointersTo(variables);
    const int out = open(out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const int err = open(err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    pid_ = fork();
    if (pid_ == 0) {
        const bool ready = dup2(out, 1) == 1 && dup2(err, 2) == 2 && chdir(folder.c_str()) == 0;
        if (ready) execve(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    close(out);
    close(err);
    if (pid_ < 0) throw std::runtime_error("no process could be made");
}

ProgramRun::~ProgramRun() {
    if (reap(false)) return;
    kill(pid_, SIGKILL);
    reap(true);
}

bool ProgramRun::reap(bool block) {
    if (status_) return true;
    int status = 0;
    if (waitpid(pid_, &status, block ? 0 : WNOHANG) != pid_) return false;
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return true;
}

bool ProgramRun::isRunning() {
    return !reap(false);
}

void ProgramRun::signal(int number) const {
    kill(pid_, number);
}

ProgramRun::Outcome ProgramRun::wait(int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!reap(false) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    Outcome outcome;
    if (!status_) {
        kill(pid_, SIGKILL);
        reap(true);
    } else {
        outcome.status = *status_;
    }
    outcome.out = textOf(out_);
    outcome.err = textOf(err_);
    return outcome;
}

std::string ProgramRun::err() const {
    return textOf(err_);
}

ProgramRun::Outcome run(const fs::path& folder,
                        const std::vector<std::string>& arguments,
                        const std::map<std::string, std::string>& environment) {
    return ProgramRun(folder, arguments, environment).wait();
}

std::string textOf(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

fs::path source(const std::string& relative) {
    return fs::path(VL_SOURCE_FOLDER) / relative;
}

std::string complaints(const std::string& text) {
    std::istringstream lines(text);
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        for (const char* mark :
             {"Sanitizer", "runtime error", "VUID-", "Validation", "UNASSIGNED-"})
            if (line.find(mark) != std::string::npos) {
                found += line + "\n";
                break;
            }
    }
    return found;
}

} // namespace tests
