#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/FileWatcher.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QTimer>
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <set>

namespace vlWinUi {
namespace {

constexpr int LOOK_MS = 40;      ///< between two looks while something moves
constexpr qint64 QUIET_MS = 100; ///< without a change before it is told
constexpr int POLL_MS = 1000;    ///< between two looks at what the system does not watch for us

/** What tells one state of a file from another without reading it. All zero when there is none. */
struct Stamp {
    ino_t file = 0;
    off_t size = 0;
    timespec written{};

    static Stamp of(const std::string& path) {
        struct stat found {};
        if (::stat(path.c_str(), &found) != 0) return {};
        return {found.st_ino, found.st_size, found.st_mtim};
    }
    bool exists() const { return file != 0; }
    friend bool operator==(const Stamp& a, const Stamp& b) {
        return a.file == b.file && a.size == b.size && a.written.tv_sec == b.written.tv_sec &&
               a.written.tv_nsec == b.written.tv_nsec;
    }
};

/// The nearest folder that there is at or above that one.
QString existingFolder(QString folder) {
    while (!QFileInfo(folder).isDir()) {
        const QString above = QFileInfo(folder).path();
        if (above == folder) break;
        folder = above;
    }
    return folder;
}

/// Where a file comes and goes: its folder, and that of the file that a link leads to.
std::set<QString> foldersOf(const QString& path) {
    const QFileInfo info(path);
    std::set<QString> folders{existingFolder(info.path())};
    if (info.isSymLink()) folders.insert(existingFolder(QFileInfo(info.symLinkTarget()).path()));
    return folders;
}

} // namespace

class FileWatcher::Watch final : public QObject {
public:
    explicit Watch(std::function<void(const std::string&)> changed) : changed_(std::move(changed)) {
        clock_.start();
        looks_.setInterval(LOOK_MS);
        polls_.setInterval(POLL_MS);
        connect(&looks_, &QTimer::timeout, this, [this] { look(); });
        connect(&polls_, &QTimer::timeout, this, [this] { poll(); });
        connect(&system_, &QFileSystemWatcher::fileChanged, this, [this](const QString& path) {
            const auto [begin, end] = byPath_.equal_range(path);
            for (auto at = begin; at != end; ++at)
                suspect(*at->second);
        });
        connect(&system_, &QFileSystemWatcher::directoryChanged, this, [this](const QString& path) {
            dirtyFolders_.insert(path);
            if (!looks_.isActive()) looks_.start();
        });
    }

    void setPaths(std::vector<std::string> paths) {
        std::ranges::sort(paths);
        paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
        std::erase_if(paths, [](const std::string& path) { return !path.starts_with('/'); });
        QStringList gone;
        for (auto at = files_.begin(); at != files_.end();) {
            const bool stays = std::ranges::binary_search(paths, at->first);
            if (!stays) gone.append(at->second.path);
            at = stays ? std::next(at) : files_.erase(at);
        }
        for (const std::string& path : paths) {
            if (files_.contains(path)) continue;
            File& file = files_[path];
            file.path = QDir::cleanPath(toQt(path));
            file.seen = file.told = Stamp::of(path);
        }
        indexFiles();
        // Two names may lead to one path.
        gone.removeIf([this](const QString& path) { return byPath_.contains(path); });
        if (!gone.isEmpty()) system_.removePaths(gone);
        watchAll();
    }

private:
    struct File {
        QString path;
        Stamp seen;           ///< at the last look
        Stamp told;           ///< when it was last told
        qint64 movedAt = 0;   ///< of the clock
        bool suspect = false; ///< to be looked at until it rests
    };
    using Named = std::map<std::string, File, std::less<>>::value_type;

    void indexFiles() {
        byPath_.clear();
        byFolder_.clear();
        for (Named& file : files_) {
            byPath_.emplace(file.second.path, &file);
            for (const QString& folder : foldersOf(file.second.path))
                byFolder_.emplace(folder, &file);
        }
    }
    /// Watches what is there, and lets go of folders in which nothing is waited for.
    void watchAll() {
        QStringList wanted;
        const QStringList watchedFiles = system_.files();
        const QStringList watchedFolders = system_.directories();
        const std::set<QString> files(watchedFiles.begin(), watchedFiles.end());
        const std::set<QString> folders(watchedFolders.begin(), watchedFolders.end());
        for (const auto& [path, file] : byPath_)
            if (file->second.seen.exists() && !files.contains(path)) wanted.append(path);
        for (auto at = byFolder_.begin(); at != byFolder_.end();
             at = byFolder_.upper_bound(at->first))
            if (!folders.contains(at->first)) wanted.append(at->first);
        QStringList gone;
        for (const QString& folder : folders)
            if (!byFolder_.contains(folder)) gone.append(folder);
        if (!gone.isEmpty()) system_.removePaths(gone);
        wanted.removeDuplicates();
        const QStringList refused = wanted.isEmpty() ? QStringList() : system_.addPaths(wanted);
        // The system bounds how much is watched, and some file systems tell nothing.
        if (refused.isEmpty())
            polls_.stop();
        else
            polls_.start();
    }
    void suspect(Named& file) {
        file.second.suspect = true;
        if (!looks_.isActive()) looks_.start();
    }
    void poll() {
        for (Named& file : files_)
            suspect(file);
    }
    /// True when another file bears the name now, or none: what is watched may have changed.
    bool lookAt(Named& named) {
        auto& [name, file] = named;
        const Stamp now = Stamp::of(name);
        if (now == file.seen) return false;
        const bool other = now.file != file.seen.file;
        // The watch is the old one's.
        if (other) system_.removePath(file.path);
        file.seen = now;
        file.movedAt = clock_.elapsed();
        file.suspect = true;
        return other;
    }
    bool lookInto(const QString& folder) {
        // A folder that went has taken its watch along, even when it is back by now.
        bool anew = !system_.directories().contains(folder);
        const auto [begin, end] = byFolder_.equal_range(folder);
        for (auto at = begin; at != end; ++at) {
            if (lookAt(*at->second)) anew = true;
            const File& file = at->second->second;
            // A folder on the way to the file may have come.
            if (!file.seen.exists() && !foldersOf(file.path).contains(folder)) anew = true;
        }
        return anew;
    }
    void look() {
        bool anew = false;
        for (const QString& folder : std::exchange(dirtyFolders_, {}))
            if (lookInto(folder)) anew = true;
        std::vector<std::string> told;
        bool moving = false;
        for (Named& named : files_) {
            File& file = named.second;
            if (!file.suspect) continue;
            if (lookAt(named)) anew = true;
            if (clock_.elapsed() - file.movedAt < QUIET_MS) {
                moving = true;
                continue;
            }
            file.suspect = false;
            if (file.seen == file.told) continue;
            file.told = file.seen;
            told.push_back(named.first);
        }
        if (anew) {
            indexFiles();
            watchAll();
        }
        if (!moving && dirtyFolders_.empty()) looks_.stop();
        tell(told);
    }
    void tell(const std::vector<std::string>& names) {
        const QPointer<Watch> self = this;
        const auto changed = changed_;
        for (const std::string& name : names) {
            if (self.isNull()) return;
            if (files_.contains(name)) changed(name);
        }
    }

    std::function<void(const std::string&)> changed_;
    std::map<std::string, File, std::less<>> files_;
    std::multimap<QString, Named*> byPath_;
    std::multimap<QString, Named*> byFolder_;
    std::set<QString> dirtyFolders_;
    QFileSystemWatcher system_;
    QElapsedTimer clock_;
    QTimer looks_;
    QTimer polls_;
};

FileWatcher::FileWatcher(std::function<void(const std::string& path)> changed)
    : watch_(std::make_unique<Watch>(std::move(changed))) {
    vlCommon::assertUiThread();
}

FileWatcher::~FileWatcher() = default;

void FileWatcher::setPaths(std::vector<std::string> absolutePaths) {
    vlCommon::assertUiThread();
    watch_->setPaths(std::move(absolutePaths));
}

} // namespace vlWinUi
