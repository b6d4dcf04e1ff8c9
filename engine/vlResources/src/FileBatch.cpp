#include "SiblingFile.h"

#include <vlResources/FileBatch.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <ranges>
#include <system_error>

namespace vlResources {

namespace {

namespace fs = std::filesystem;

/** The folders that were made for a batch; they are removed again unless they are kept. */
class MadeFolders {
public:
    MadeFolders() = default;
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;
    ~MadeFolders() {
        std::error_code ignored;
        for (const fs::path& folder : std::views::reverse(made_))
            fs::remove(folder, ignored);
    }

    vlCommon::Result<> make(const fs::path& folder) {
        std::error_code error;
        std::vector<fs::path> missing;
        for (fs::path above = folder; !above.empty() && !fs::exists(above, error);
             above = above.parent_path()) {
            missing.push_back(above);
        }
        for (const fs::path& next : std::views::reverse(missing)) {
            if (fs::create_directory(next, error)) made_.push_back(next);
            if (error) break;
        }
        std::error_code unknown;
        if (folder.empty() || fs::is_directory(folder, unknown)) return {};
        if (!error) error = std::make_error_code(std::errc::not_a_directory);
        return vlCommon::fail(
                fmt::format("folder '{}' cannot be made: {}", folder.string(), error.message()));
    }

    void keep() { made_.clear(); }

private:
    std::vector<fs::path> made_;
};

} // namespace

void FileBatch::add(vlMemory::StringView path, vlMemory::Buffer bytes) {
    const auto [place, isNew] = places_.try_emplace(vlMemory::String(path), files_.size());
    if (isNew) files_.push_back({vlMemory::String(path), {}});
    files_[place->second].bytes = std::move(bytes);
}

void FileBatch::add(vlMemory::StringView path, vlMemory::StringView text) {
    vlMemory::Buffer bytes(text.size());
    std::ranges::copy(std::as_bytes(std::span(text)), bytes.data());
    add(path, std::move(bytes));
}

vlCommon::Result<> FileBatch::commit() const {
    // Declared first, so that they go after the siblings in them.
    MadeFolders folders;
    std::vector<SiblingFile> siblings;
    siblings.reserve(files_.size());
    for (const File& file : files_) {
        if (auto made = folders.make(fs::path(file.path).parent_path()); !made) return made;
        auto sibling = SiblingFile::write(file.path, file.bytes.span());
        if (!sibling) return tl::unexpected(sibling.error());
        siblings.push_back(std::move(*sibling));
    }
    for (SiblingFile& sibling : siblings) {
        auto published = sibling.publishRevocably();
        if (published) continue;
        for (SiblingFile& done : siblings)
            done.revoke();
        return published;
    }
    folders.keep();
    return {};
}

} // namespace vlResources
