#include "WinUiTest.h"

#include <vlWinUi/FileWatcher.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <map>

namespace vlWinUi {
namespace {

namespace fs = std::filesystem;

struct FileWatcherTest : test::WinUiTest {
    fs::path root() const { return folder.path().toStdString(); }
    static void write(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    /// As most editors save.
    static void replace(const fs::path& path, const std::string& text) {
        const fs::path other = path.string() + "~";
        write(other, text);
        fs::rename(other, path);
    }
    /// Until that many changes were told in all, and none more comes.
    void expectTold(int count, const std::string& why) {
        const auto all = [this] {
            int sum = 0;
            for (const auto& [path, times] : told)
                sum += times;
            return sum;
        };
        QElapsedTimer clock;
        clock.start();
        while (all() < count && clock.elapsed() < 10'000)
            System::settle();
        clock.restart();
        while (clock.elapsed() < 250)
            System::settle();
        EXPECT_EQ(all(), count) << why;
    }

    QTemporaryDir folder;
    std::map<std::string, int> told;
};

TEST_F(FileWatcherTest, EveryWayOfChangingAFileIsToldOnce) {
    const fs::path file = root() / "a.hlsl";
    const fs::path other = root() / "other";
    write(file, "one");
    FileWatcher watcher([this](const std::string& path) { ++told[path]; });
    watcher.setPaths({file, "relative", file});
    for (int i = 0; i < 5; ++i)
        write(file, std::string(static_cast<std::size_t>(i), 'x'));
    expectTold(1, "written");
    for (int i = 0; i < 3; ++i) {
        replace(file, "text " + std::to_string(i));
        expectTold(2 + i, "replaced");
    }
    write(file, "written after replacing");
    expectTold(5, "written after replacing");
    fs::remove(file);
    expectTold(6, "removed");
    write(file, "back");
    expectTold(7, "made again");
    for (int i = 0; i < 20; ++i)
        write(other, std::to_string(i));
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    expectTold(7, "left as it was");
    watcher.setPaths({other});
    write(file, "no longer watched");
    expectTold(7, "no longer watched");
    EXPECT_EQ(told[file], 7);
}

TEST_F(FileWatcherTest, FilesInFoldersThatComeAndGoAreWaitedFor) {
    const fs::path file = root() / "deep" / "deeper" / "a.hlsl";
    FileWatcher watcher([this](const std::string& path) { ++told[path]; });
    watcher.setPaths({file});
    for (int round = 0; round < 2; ++round) {
        fs::create_directories(file.parent_path());
        expectTold(3 * round, "no file yet");
        write(file, "one");
        expectTold(3 * round + 1, "made");
        write(file, "and two");
        expectTold(3 * round + 2, "written");
        fs::remove_all(root() / "deep");
        expectTold(3 * round + 3, "gone with its folder");
    }
}

TEST_F(FileWatcherTest, AFileBehindALinkIsFollowed) {
    fs::create_directory(root() / "there");
    const fs::path target = root() / "there" / "t.hlsl";
    const fs::path link = root() / "link.hlsl";
    write(target, "one");
    fs::create_symlink(target, link);
    FileWatcher watcher([this](const std::string& path) { ++told[path]; });
    watcher.setPaths({link});
    replace(target, "another");
    expectTold(1, "replaced behind the link");
    write(target, "more text");
    expectTold(2, "written behind the link");
}

TEST_F(FileWatcherTest, ThousandsAreWatchedAndTheCallbackMayEndIt) {
    std::vector<std::string> paths;
    for (int i = 0; i < 3000; ++i) {
        paths.push_back(root() / ("file" + std::to_string(i)));
        if (i % 2 == 0) write(paths.back(), "text");
    }
    std::unique_ptr<FileWatcher> watcher;
    watcher = std::make_unique<FileWatcher>([&](const std::string& path) {
        ++told[path];
        watcher.reset();
    });
    QElapsedTimer clock;
    clock.start();
    watcher->setPaths(paths);
    watcher->setPaths(paths);
    EXPECT_LT(clock.elapsed(), 3000);
    write(paths[7], "made");
    write(paths[2998], "written again");
    expectTold(1, "only until it was destroyed");
    EXPECT_EQ(watcher, nullptr);
}

} // namespace
} // namespace vlWinUi
