#pragma once
#include "resources/TestManagers.h"

#include <vlGraphics/MeshFile.h>
#include <vlImages/PngEncoder.h>
#include <vlResources/FileWriter.h>
#include <vlResources/ResourceManager.h>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vlGraphics {

namespace fs = std::filesystem;

/// Ends the test where the manager has none of that name.
template <class Manager> auto& known(const Manager& manager, vlMemory::StringView name) {
    auto* resource = manager.get(name);
    if (resource == nullptr) throw std::runtime_error("missing: " + vlMemory::String(name));
    return *resource;
}

/** While it lives no file can grow past its first bytes, as on a disk that is full. */
class FullDisk {
public:
    FullDisk() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit little{8, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &little);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    void (*handler_)(int);
    rlimit before_{};
};

/** A working folder with "sub" in it, a mesh and a picture, and every manager. */
class ContentLoaderTest : public testing::Test {
protected:
    ContentLoaderTest() : folder(fs::canonical(testing::TempDir()) / folderName()) {
        fs::remove_all(folder);
        fs::create_directories(folder / "sub");
        vlResources::ResourceManager::getInstance().setWorkingPath(folder.string());
        writeMesh("stone.vlmb", triangle(2));
        writeBytes("stone.png",
                   vlImages::PngEncoder::encode(
                           vlImages::Image(4, 2, vlImages::PixelFormat::rgba8).view())
                           ->span());
    }
    ~ContentLoaderTest() override {
        vlResources::ResourceManager::destroyInstance();
        fs::remove_all(folder);
    }

    /// The suite's name as well: every kind has a test of the same name.
    static std::string folderName() {
        const auto& info = *testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("content_") + info.test_suite_name() + "_" + info.name();
        std::replace(name.begin(), name.end(), '/', '_');
        return name;
    }
    void writeBytes(const std::string& name, std::span<const std::byte> bytes) {
        ASSERT_TRUE(vlResources::FileWriter::writeFileWhole((folder / name).string(), bytes));
    }
    void writeMesh(const std::string& name, const MeshData& data) {
        writeBytes(name, writeMeshFile(data).span());
    }
    void write(const std::string& name, vlMemory::StringView text) {
        writeBytes(name, std::as_bytes(std::span(text)));
    }
    std::string read(const std::string& name) {
        std::ostringstream text;
        text << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return text.str();
    }
    /// The lines of a file of that text.
    std::vector<vlMemory::String> load(vlMemory::StringView text) {
        write("test.json", text);
        return ContentLoader::loadDeclarations("test.json", {}, false).getErrors();
    }
    void expectErrors(vlMemory::StringView text, const std::vector<vlMemory::String>& expected) {
        EXPECT_EQ(load(text), expected);
    }

    /// What lies in the folder, relative to it, in order.
    std::vector<std::string> listing() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            names.push_back(entry.path().lexically_relative(folder).string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path folder;
    TestManagers managers;
};

} // namespace vlGraphics
