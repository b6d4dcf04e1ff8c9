#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vlWinUi {

/** Tells when files change on disk: written in place, replaced by another file (as most editors
 *  save), removed, or made again. A file that does not exist yet is waited for. A burst of changes
 *  is told once, about 100 ms after the last one; whatever leaves a file as it was (its time, its
 *  size, which file it is) is not told, and costs nothing more than a look. Only between
 *  System::initialize() and System::kill(). UI thread only. */
class FileWatcher {
public:
    /// Called in the event loop, with the path as it was given. It may change the paths, or destroy
    /// the watcher.
    explicit FileWatcher(std::function<void(const std::string& path)> changed);
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete;
    FileWatcher& operator=(const FileWatcher&) = delete;

    /// In place of those before, UTF-8; thousands are fine. Those that stay lose no change that is
    /// still to be told. What is not absolute is ignored.
    void setPaths(std::vector<std::string> absolutePaths);

private:
    class Watch;

    std::unique_ptr<Watch> watch_;
};

} // namespace vlWinUi
