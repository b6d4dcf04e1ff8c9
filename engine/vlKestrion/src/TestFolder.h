#pragma once
#include <vlMemory/String.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vlKestrion {

/** A folder of a test's own, which goes with it. */
class TestFolder {
public:
    TestFolder() {
        std::string pattern =
                (std::filesystem::temp_directory_path() / "vlKestrion_XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    vlMemory::String path(vlMemory::StringView name) const { return (path_ / name).string(); }
    /// Makes the folders it stands in; the answer is its path.
    vlMemory::String write(vlMemory::StringView name, vlMemory::StringView text) const {
        const std::filesystem::path file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }
    vlMemory::String read(vlMemory::StringView name) const {
        std::ostringstream text;
        text << std::ifstream(path_ / name, std::ios::binary).rdbuf();
        return text.str();
    }
    bool has(vlMemory::StringView name) const { return std::filesystem::exists(path_ / name); }
    std::size_t fileCount() const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path_))
            count += entry.is_regular_file() ? 1U : 0U;
        return count;
    }

private:
    std::filesystem::path path_;
};

} // namespace vlKestrion
