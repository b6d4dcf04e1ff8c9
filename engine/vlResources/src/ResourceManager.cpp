#include <vlMemory/Utf8.h>
#include <vlResources/ResourceManager.h>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>

namespace vlResources {

namespace {

namespace fs = std::filesystem;

class FileDescriptor {
public:
    explicit FileDescriptor(int value) : value_(value) {}
    ~FileDescriptor() {
        if (value_ >= 0) ::close(value_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return value_; }

private:
    int value_;
};

/// Bytes. No system opens what is longer, and taking it apart would take its time.
constexpr std::size_t longestPath = 4096;

vlCommon::Result<vlMemory::Buffer> failed(vlMemory::StringView path, vlMemory::StringView why) {
    return vlCommon::fail(
            fmt::format("file '{}' cannot be read: {}", vlMemory::printable(path), why));
}

vlMemory::String withoutTrailingSlash(const fs::path& path) {
    vlMemory::String text = path.generic_string();
    if (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

/// The way from a folder to something in it; nothing where it is not inside.
std::optional<fs::path> inside(const fs::path& folder, const fs::path& path) {
    const auto [inFolder, inPath] =
            std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    if (inFolder != folder.end()) return {};
    fs::path rest;
    for (auto part = inPath; part != path.end(); ++part)
        rest /= *part;
    return rest;
}

fs::path followed(const fs::path& path) {
    std::error_code error;
    fs::path result = fs::weakly_canonical(path, error);
    return error ? path.lexically_normal() : result;
}

} // namespace

void ResourceManager::setWorkingPath(vlMemory::StringView path) {
    workingPath_ = path.empty() ? vlMemory::StringView(".") : path;
}

vlMemory::String ResourceManager::getWorkingPathAbsolute() const {
    std::error_code error;
    const fs::path absolute = fs::absolute(workingPath_, error);
    return withoutTrailingSlash((error ? fs::path(workingPath_) : absolute).lexically_normal());
}

vlMemory::String ResourceManager::getFromWorkingDirFromAbsolute(vlMemory::StringView path) const {
    const fs::path asked = fs::path(path).lexically_normal();
    if (!asked.is_absolute()) return vlMemory::String(path);
    const fs::path folder = getWorkingPathAbsolute();
    auto rest = inside(folder, asked);
    // The same place by another way, over a symbolic link.
    if (!rest) rest = inside(followed(folder), followed(asked));
    if (!rest || rest->empty()) return vlMemory::String(path);
    return rest->generic_string();
}

vlMemory::String ResourceManager::getAbsoluteFromWorkingDir(vlMemory::StringView path) const {
    const fs::path asked(path);
    if (asked.is_absolute()) return vlMemory::String(path);
    return withoutTrailingSlash((fs::path(getWorkingPathAbsolute()) / asked).lexically_normal());
}

vlMemory::Buffer ResourceManager::loadFileIntoMemory(vlMemory::StringView path) const {
    auto read = readFile(path);
    return read ? std::move(*read) : vlMemory::Buffer();
}

vlCommon::Result<vlMemory::Buffer> ResourceManager::readFile(vlMemory::StringView path,
                                                             std::size_t maxSize) const {
    if (path.empty()) return failed(path, "the path is empty");
    if (path.find('\0') != vlMemory::StringView::npos) return failed(path, "no such path");
    if (path.size() > longestPath) return failed(path, "the path is too long");
    const vlMemory::String absolute = getAbsoluteFromWorkingDir(path);
    // Without waiting, or opening a named pipe would block until somebody writes into it.
    const FileDescriptor file(::open(absolute.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.get() < 0 && errno == ENOENT) return failed(path, "it does not exist");
    if (file.get() < 0) return failed(path, std::strerror(errno));
    struct stat about {};
    if (::fstat(file.get(), &about) != 0) return failed(path, std::strerror(errno));
    if (S_ISDIR(about.st_mode)) return failed(path, "it is a folder");
    if (!S_ISREG(about.st_mode)) return failed(path, "it is not a regular file");
    const auto size = static_cast<std::size_t>(about.st_size);
    if (size > maxSize) {
        return failed(path, fmt::format("{} bytes, more than the {} allowed", size, maxSize));
    }
    vlMemory::Buffer bytes(size);
    std::size_t done = 0;
    while (done < size) {
        const ::ssize_t count = ::read(file.get(), bytes.data() + done, size - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return failed(path, std::strerror(errno));
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

vlCommon::Result<> ResourceManager::checkFolderExists(vlMemory::StringView path) const {
    const vlMemory::String absolute = getAbsoluteFromWorkingDir(path);
    std::error_code error;
    fs::create_directories(absolute, error);
    std::error_code unknown;
    if (fs::is_directory(absolute, unknown)) return {};
    if (!error) error = std::make_error_code(std::errc::not_a_directory);
    return vlCommon::fail(fmt::format("folder '{}' cannot be made: {}", path, error.message()));
}

vlCommon::Result<vlMemory::String>
ResourceManager::resolveInside(vlMemory::StringView baseFolder,
                               vlMemory::StringView relativePath) const {
    const auto refuse = [&](vlMemory::StringView why) {
        return vlCommon::fail(fmt::format("path '{}' {}", vlMemory::printable(relativePath), why));
    };
    if (relativePath.empty()) return refuse("is empty");
    if (relativePath.find('\0') != vlMemory::StringView::npos) return refuse("holds a zero byte");
    if (relativePath.size() > longestPath) return refuse("is too long");
    const fs::path relative(relativePath);
    if (relative.is_absolute()) return refuse("is absolute; only relative ones are allowed here");
    const vlMemory::String leaves = fmt::format("leaves the folder '{}'", baseFolder);
    const fs::path normal = relative.lexically_normal();
    if (*normal.begin() == "..") return refuse(leaves);
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(getAbsoluteFromWorkingDir(baseFolder), error);
    if (error) return refuse(error.message());
    const fs::path target = fs::weakly_canonical(folder / relative, error);
    if (error) return refuse(error.message());
    if (!inside(folder, target)) return refuse(leaves);
    return withoutTrailingSlash(target);
}

} // namespace vlResources
