#include "SiblingFile.h"

#include <vlMemory/Utf8.h>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace vlResources {

namespace {

namespace fs = std::filesystem;

bool writeAll(int file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ::ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

/// Makes a rename last over a power cut; file systems that cannot do it are left alone.
void flushFolderOf(const vlMemory::String& path) {
    const vlMemory::String folder = fs::path(path).parent_path().string();
    const int handle = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0) return;
    ::fsync(handle);
    ::close(handle);
}

} // namespace

SiblingFile::SiblingFile(SiblingFile&& other) noexcept
    : asked_(std::move(other.asked_)), target_(std::move(other.target_)),
      sibling_(std::exchange(other.sibling_, {})), backup_(std::exchange(other.backup_, {})),
      published_(std::exchange(other.published_, false)) {
}

SiblingFile::~SiblingFile() {
    if (!sibling_.empty()) ::unlink(sibling_.c_str());
    if (!backup_.empty()) ::unlink(backup_.c_str());
}

vlCommon::Result<> SiblingFile::failed() const {
    const char* why = std::strerror(errno);
    return vlCommon::fail(
            fmt::format("file '{}' cannot be written: {}", vlMemory::printable(asked_), why));
}

vlMemory::String SiblingFile::nextName() const {
    // Short whatever the target's name: that one may be as long as the file system allows.
    static std::atomic<unsigned> counter = 0;
    const auto name = fmt::format(".vl-{}-{}.part", ::getpid(), counter++);
    return (fs::path(target_).parent_path() / name).string();
}

vlCommon::Result<SiblingFile> SiblingFile::write(vlMemory::StringView path,
                                                 std::span<const std::byte> bytes) {
    SiblingFile file;
    file.asked_ = path;
    if (path.empty() || path.find('\0') != vlMemory::StringView::npos) {
        errno = ENOENT;
        return tl::unexpected(file.failed().error());
    }
    std::error_code error;
    const fs::path followed =
            fs::is_symlink(path, error) ? fs::weakly_canonical(path, error) : path;
    file.target_ = (error ? fs::path(path) : followed).string();
    if (auto created = file.create(bytes); !created) return tl::unexpected(created.error());
    return file;
}

vlCommon::Result<> SiblingFile::create(std::span<const std::byte> bytes) {
    struct stat old {};
    const bool present = ::stat(target_.c_str(), &old) == 0;
    if (present && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        return failed();
    }
    // A rename does not ask whether the old file may be written.
    if (present && ::faccessat(AT_FDCWD, target_.c_str(), W_OK, AT_EACCESS) != 0) return failed();
    int file = -1;
    do {
        sibling_ = nextName();
        file = ::open(sibling_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (file < 0 && errno == EEXIST);
    if (file < 0) {
        sibling_.clear();
        return failed();
    }
    bool written = writeAll(file, bytes);
    if (written && present) written = ::fchmod(file, old.st_mode & 07777U) == 0;
    if (written) written = ::fsync(file) == 0;
    const int reason = errno;
    const bool closed = ::close(file) == 0;
    if (written && closed) return {};
    if (!written) errno = reason;
    return failed();
}

vlCommon::Result<> SiblingFile::publish() {
    if (std::rename(sibling_.c_str(), target_.c_str()) != 0) return failed();
    sibling_.clear();
    published_ = true;
    flushFolderOf(target_);
    return {};
}

vlCommon::Result<> SiblingFile::publishRevocably() {
    std::error_code error;
    if (fs::exists(target_, error)) {
        vlMemory::String kept = nextName();
        // Not every file system has hard links.
        const bool linked = ::link(target_.c_str(), kept.c_str()) == 0;
        if (!linked && !fs::copy_file(target_, kept, error)) {
            std::error_code ignored;
            fs::remove(kept, ignored);
            errno = error.value();
            return failed();
        }
        backup_ = std::move(kept);
    }
    return publish();
}

void SiblingFile::revoke() {
    if (!std::exchange(published_, false)) return;
    if (backup_.empty()) {
        ::unlink(target_.c_str());
    } else if (std::rename(backup_.c_str(), target_.c_str()) == 0) {
        backup_.clear();
    }
}

} // namespace vlResources
