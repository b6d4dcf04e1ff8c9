#include <vlResources/FileBatch.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

namespace vlResources {
namespace {

namespace fs = std::filesystem;

/// A folder of its own for each test, gone afterwards.
class Resources : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "vlResourcesXXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = fs::canonical(name);
        manager.setWorkingPath(folder.string());
    }
    void TearDown() override {
        std::error_code ignored;
        fs::permissions(folder, fs::perms::owner_all, ignored);
        fs::remove_all(folder, ignored);
    }

    std::string at(const std::string& name) const { return (folder / name).string(); }
    std::string content(const std::string& name) const {
        const auto bytes = manager.readFile(name);
        return bytes ? std::string(bytes->text()) : bytes.error().message;
    }
    std::size_t count() const {
        const auto files = fs::recursive_directory_iterator(folder);
        return static_cast<std::size_t>(std::distance(fs::begin(files), fs::end(files)));
    }

    fs::path folder;
    ResourceManager manager;
};

TEST_F(Resources, WorkingPathIsKeptAsGivenAndADotByDefault) {
    EXPECT_EQ(ResourceManager().getWorkingPath(), ".");
    EXPECT_EQ(ResourceManager().getWorkingPathAbsolute(), fs::current_path().string());
    manager.setWorkingPath("some/../folder/");
    EXPECT_EQ(manager.getWorkingPath(), "some/../folder/");
    EXPECT_EQ(manager.getWorkingPathAbsolute(), (fs::current_path() / "folder").string());
    manager.setWorkingPath("");
    EXPECT_EQ(manager.getWorkingPath(), ".");
}

TEST_F(Resources, PathsInsideTheWorkingDirectoryBecomeRelativeAndBack) {
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute(at("a/b.vls")), "a/b.vls");
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute(at("a/../b.vls")), "b.vls");
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute(folder.string() + "2/b.vls"),
              folder.string() + "2/b.vls");
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute("a.vls"), "a.vls");
    EXPECT_EQ(manager.getAbsoluteFromWorkingDir("a/./b.vls"), at("a/b.vls"));
    EXPECT_EQ(manager.getAbsoluteFromWorkingDir("/x/y"), "/x/y");
    fs::create_directory(at("real"));
    fs::create_symlink(folder, at("real/way"));
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute(at("real/way/c.vls")), "real/way/c.vls");
    manager.setWorkingPath(at("real/way"));
    EXPECT_EQ(manager.getFromWorkingDirFromAbsolute(at("c.vls")), "c.vls");
}

TEST_F(Resources, UnreadableFilesSayWhy) {
    fs::create_directory(at("d"));
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    ASSERT_TRUE(FileWriter::writeFileWhole(at("f"), "12345").has_value());
    EXPECT_EQ(content("x"), "file 'x' cannot be read: it does not exist");
    EXPECT_EQ(content("d"), "file 'd' cannot be read: it is a folder");
    EXPECT_EQ(content("pipe"), "file 'pipe' cannot be read: it is not a regular file");
    EXPECT_EQ(content("f/x"), "file 'f/x' cannot be read: Not a directory");
    EXPECT_EQ(manager.readFile("f", 4).error().message,
              "file 'f' cannot be read: 5 bytes, more than the 4 allowed");
    EXPECT_TRUE(manager.readFile("f", 5).has_value());
    EXPECT_TRUE(manager.loadFileIntoMemory("x").empty());
    EXPECT_EQ(manager.loadFileIntoMemory("f").text(), "12345");
}

TEST_F(Resources, FoldersAreMadeUnlessAFileIsInTheWay) {
    EXPECT_TRUE(manager.checkFolderExists("a/b/c").has_value());
    EXPECT_TRUE(manager.checkFolderExists("a/b/c").has_value());
    EXPECT_TRUE(fs::is_directory(at("a/b/c")));
    ASSERT_TRUE(FileWriter::writeFileWhole(at("f"), "x").has_value());
    EXPECT_EQ(manager.checkFolderExists("f").error().message,
              "folder 'f' cannot be made: Not a directory");
    EXPECT_FALSE(manager.checkFolderExists("f/g").has_value());
}

TEST_F(Resources, NoPathLeavesItsFolder) {
    fs::create_directories(at("in/sub"));
    fs::create_symlink("/etc", at("in/out"));
    fs::create_symlink("sub", at("in/link"));
    EXPECT_EQ(manager.resolveInside("in", "sub/../x.png").value(), at("in/x.png"));
    EXPECT_EQ(manager.resolveInside("in", "link/new.png").value(), at("in/sub/new.png"));
    EXPECT_EQ(manager.resolveInside("in", "/etc/passwd").error().message,
              "path '/etc/passwd' is absolute; only relative ones are allowed here");
    for (const char* path :
         {"../x", "sub/../../x", "out/passwd", "..", "../in/x", "link/../../x"}) {
        const auto resolved = manager.resolveInside("in", path);
        ASSERT_FALSE(resolved.has_value()) << path;
        EXPECT_EQ(resolved.error().message,
                  "path '" + std::string(path) + "' leaves the folder 'in'");
    }
    EXPECT_FALSE(manager.resolveInside("in", "").has_value());
    EXPECT_FALSE(manager.resolveInside("in", vlMemory::StringView("a\0b", 3)).has_value());
    EXPECT_EQ(manager.resolveInside("in", "../\x1B\n").error().message,
              "path '../\?\?' leaves the folder 'in'");
    const std::string longer(5000, '/');
    EXPECT_TRUE(manager.resolveInside("in", "a" + longer).error().message.ends_with("is too long"));
    EXPECT_TRUE(manager.readFile("a" + longer).error().message.ends_with("the path is too long"));
}

TEST_F(Resources, WritingReplacesWholeKeepsPermissionsAndFollowsLinks) {
    ASSERT_TRUE(FileWriter::writeFileWhole(at("f"), "old").has_value());
    fs::permissions(at("f"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("f", at("link"));
    ASSERT_TRUE(FileWriter::writeFileWhole(at("link"), "newer").has_value());
    EXPECT_EQ(content("f"), "newer");
    EXPECT_TRUE(fs::is_symlink(at("link")));
    EXPECT_EQ(fs::status(at("f")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_TRUE(FileWriter::writeFileWhole(at(std::string(255, 'n')), "long").has_value());
    EXPECT_EQ(count(), 3U);
}

TEST_F(Resources, AFailedWriteNamesTheReasonAndLeavesNothing) {
    fs::create_directory(at("d"));
    EXPECT_EQ(FileWriter::writeFileWhole(at("d"), "x").error().message,
              "file '" + at("d") + "' cannot be written: Is a directory");
    EXPECT_EQ(FileWriter::writeFileWhole(at("no/f"), "x").error().message,
              "file '" + at("no/f") + "' cannot be written: No such file or directory");
    EXPECT_FALSE(FileWriter::writeFileWhole("", "x").has_value());
    EXPECT_EQ(count(), 1U);
}

TEST_F(Resources, AReadOnlyFolderKeepsItsFile) {
    ASSERT_TRUE(FileWriter::writeFileWhole(at("f"), "old").has_value());
    constexpr auto readable = fs::perms::owner_read | fs::perms::owner_exec |
                              fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(folder, readable);
    // An administrator may write everywhere: for the moment this is nobody.
    const auto user = ::geteuid();
    ASSERT_EQ(::seteuid(user == 0 ? 65534 : user), 0);
    const auto written = FileWriter::writeFileWhole(at("f"), "new");
    FileBatch batch;
    batch.add(at("sub/g"), "new");
    const auto committed = batch.commit();
    ASSERT_EQ(::seteuid(user), 0);
    ASSERT_FALSE(written.has_value());
    EXPECT_EQ(written.error().message,
              "file '" + at("f") + "' cannot be written: Permission denied");
    ASSERT_FALSE(committed.has_value());
    EXPECT_EQ(committed.error().message,
              "folder '" + at("sub") + "' cannot be made: Permission denied");
    EXPECT_EQ(content("f"), "old");
}

TEST_F(Resources, AFullDiskKeepsTheOldFiles) {
    fs::create_directory(at("disk"));
    if (::mount("none", at("disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "a small disk cannot be mounted here";
    }
    ASSERT_TRUE(FileWriter::writeFileWhole(at("disk/f"), "old").has_value());
    const auto written = FileWriter::writeFileWhole(at("disk/f"), std::string(200000, 'x'));
    FileBatch batch;
    batch.add(at("disk/f"), "new");
    batch.add(at("disk/sub/g"), std::string(200000, 'x'));
    const auto committed = batch.commit();
    const std::string kept = content("disk/f");
    const std::size_t files = count();
    ASSERT_EQ(::umount(at("disk").c_str()), 0);
    ASSERT_FALSE(written.has_value());
    EXPECT_EQ(written.error().message,
              "file '" + at("disk/f") + "' cannot be written: No space left on device");
    EXPECT_FALSE(committed.has_value());
    EXPECT_EQ(kept, "old");
    EXPECT_EQ(files, 2U);
}

TEST_F(Resources, ABatchWritesAllFilesAndTheFoldersTheyNeed) {
    ASSERT_TRUE(FileWriter::writeFileWhole(at("a"), "old").has_value());
    FileBatch batch;
    batch.add(at("a"), "early");
    batch.add(at("x/y/b"), "b");
    batch.add(at("a"), "late");
    const auto done = batch.commit();
    ASSERT_TRUE(done.has_value()) << done.error().message;
    EXPECT_EQ(content("a"), "late");
    EXPECT_EQ(content("x/y/b"), "b");
    EXPECT_EQ(count(), 4U);
}

TEST_F(Resources, ABatchThatCannotBeWrittenChangesNothing) {
    ASSERT_TRUE(FileWriter::writeFileWhole(at("a"), "old").has_value());
    fs::create_directory(at("d"));
    FileBatch batch;
    batch.add(at("a"), "new");
    batch.add(at("x/y/b"), "b");
    batch.add(at("d"), "a folder is in the way");
    EXPECT_FALSE(batch.commit().has_value());
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(count(), 2U);
}

TEST_F(Resources, ARenameThatFailsHalfWayIsUndone) {
    ASSERT_TRUE(FileWriter::writeFileWhole(at("a"), "old").has_value());
    FileBatch batch;
    batch.add(at("a"), "new");
    batch.add(at("fresh"), "new");
    batch.add(at("x"), "this is to become a file");
    batch.add(at("x/b"), "and a folder");
    EXPECT_FALSE(batch.commit().has_value());
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(count(), 1U);
}

} // namespace
} // namespace vlResources
