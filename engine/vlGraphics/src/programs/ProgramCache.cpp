#include "programs/ProgramCache.h"

#include "programs/HlslCompiler.h"
#include "programs/HlslText.h"
#include "programs/ProgramArchive.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <glslang/Public/ShaderLang.h>
#include <glslang/SPIRV/GlslangToSpv.h>
#include <spirv-tools/libspirv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace vlGraphics {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t fileMagic = 0x31475250'4C56ULL; ///< "VLPRG1"
constexpr std::uintmax_t largestFile = std::uintmax_t{16} << 20U;
constexpr vlMemory::StringView fileEnd = ".bin";
constexpr vlMemory::StringView siblingEnd = ".new";
constexpr std::uint64_t writesBetweenLooks = 512;
constexpr std::time_t day = 24 * 60 * 60;

struct Header {
    std::uint64_t magic = fileMagic;
    std::uint64_t size = 0; ///< of what follows
    Digest key;
    Digest content;
};

/// Any build compiles in its own way.
Digest buildDigest() {
    DigestMaker maker;
    const glslang::Version version = glslang::GetVersion();
    maker.add(fmt::format("{}.{}.{}{} {} {}",
                          version.major,
                          version.minor,
                          version.patch,
                          version.flavor,
                          glslang::GetSpirvGeneratorVersion(),
                          spvSoftwareVersionDetailsString()));
    struct stat about {};
    if (::stat("/proc/self/exe", &about) == 0) {
        maker.add(static_cast<std::uint64_t>(about.st_size));
        maker.add(static_cast<std::uint64_t>(about.st_mtim.tv_sec));
        maker.add(static_cast<std::uint64_t>(about.st_mtim.tv_nsec));
    }
    return maker.get();
}

Digest keyOf(const CompileRequest& request) {
    static const Digest build = buildDigest();
    DigestMaker maker;
    maker.add(build.high);
    maker.add(build.low);
    maker.add(static_cast<std::uint64_t>(request.type));
    maker.add(std::uint64_t{request.crossCompilerDefines});
    maker.add(std::uint64_t{request.boundLoops});
    maker.add(std::uint64_t{request.writingStages});
    maker.add(std::uint64_t{request.mostPasses});
    maker.add(std::uint64_t{request.mayInclude()});
    maker.add(request.folder);
    maker.add(request.filePrefix);
    for (const SHADER_TYPE stage : stagesOf(request.type)) {
        maker.add(request.sources.getMemory(stage));
        const std::vector<DefineMacro>& macros = request.sources.getDefineMacros(stage);
        maker.add(std::uint64_t{macros.size()});
        for (const DefineMacro& macro : macros) {
            maker.add(macro.name);
            maker.add(macro.value);
        }
    }
    return maker.get();
}

class File {
public:
    File(const std::string& path, int flags)
        : file_(::open(path.c_str(), flags | O_CLOEXEC, 0644)) {}
    ~File() {
        if (file_ >= 0) ::close(file_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    int get() const { return file_; }

private:
    int file_;
};

std::vector<std::byte> readWhole(const File& file, std::uintmax_t size) {
    std::vector<std::byte> bytes(size);
    const ::ssize_t got = ::read(file.get(), bytes.data(), bytes.size());
    if (got < 0 || static_cast<std::uintmax_t>(got) != size) bytes.clear();
    return bytes;
}

bool writeWhole(const std::string& path, std::span<const std::byte> bytes) {
    const File file(path, O_WRONLY | O_CREAT | O_EXCL);
    return file.get() >= 0 &&
           ::write(file.get(), bytes.data(), bytes.size()) == static_cast<::ssize_t>(bytes.size());
}

} // namespace

ProgramCache::ProgramCache(vlMemory::StringView folder, std::uintmax_t maxBytes)
    : folder_(folder), maxBytes_(maxBytes) {
}

ProgramCache::~ProgramCache() {
    if (written_ > 0) removeOldest();
}

vlMemory::String ProgramCache::pathOf(const Digest& key) const {
    return fmt::format("{}/{}{}", folder_, toText(key), fileEnd);
}

std::optional<CompileReport> ProgramCache::find(const CompileRequest& request) const {
    const Digest key = keyOf(request);
    const File file(pathOf(key), O_RDONLY | O_NONBLOCK);
    struct stat about {};
    if (file.get() < 0 || ::fstat(file.get(), &about) != 0 || !S_ISREG(about.st_mode))
        return std::nullopt;
    const auto size = static_cast<std::uintmax_t>(about.st_size);
    if (size < sizeof(Header) || size > largestFile) return std::nullopt;
    const std::vector<std::byte> bytes = readWhole(file, size);
    if (bytes.empty()) return std::nullopt;
    Header header;
    std::memcpy(&header, bytes.data(), sizeof header);
    const std::span<const std::byte> content = std::span(bytes).subspan(sizeof header);
    if (header.magic != fileMagic || header.size != content.size() || header.key != key)
        return std::nullopt;
    DigestMaker maker;
    maker.add(content);
    if (maker.get() != header.content) return std::nullopt;
    auto report = reportFrom(content);
    if (!report || !areUnchanged(request.workingPath, report->probes)) return std::nullopt;
    // What is in use stays; the day spares a write at each start.
    if (std::time(nullptr) - about.st_mtim.tv_sec > day) ::futimens(file.get(), nullptr);
    return report;
}

void ProgramCache::keep(const CompileRequest& request, const CompileReport& report) {
    if (!report.outcome) return;
    const std::vector<std::byte> content = toBytes(report);
    Header header;
    header.size = content.size();
    header.key = keyOf(request);
    DigestMaker maker;
    maker.add(content);
    header.content = maker.get();
    std::vector<std::byte> bytes(sizeof header + content.size());
    std::memcpy(bytes.data(), &header, sizeof header);
    std::copy(content.begin(), content.end(), bytes.begin() + sizeof header);
    std::error_code error;
    if (written_ == 0) fs::create_directories(folder_, error);
    const std::uint64_t number = ++written_;
    // A sibling of its own for each writer; a torn file after a power cut shows by its digest.
    const std::string path = pathOf(header.key);
    const std::string sibling = fmt::format("{}.{}.{}{}", path, ::getpid(), number, siblingEnd);
    if (!writeWhole(sibling, bytes) || std::rename(sibling.c_str(), path.c_str()) != 0)
        ::unlink(sibling.c_str());
    if (number % writesBetweenLooks == 0) removeOldest();
}

void ProgramCache::removeOldest() const {
    struct Kept {
        fs::file_time_type time;
        std::uintmax_t size = 0;
        fs::path path;
    };
    std::vector<Kept> files;
    std::uintmax_t total = 0;
    std::error_code error;
    for (fs::directory_iterator entry(folder_, error), end; !error && entry != end;
         entry.increment(error)) {
        // Another program may remove a file meanwhile.
        std::error_code gone;
        const Kept kept{
                entry->last_write_time(gone), gone ? 0 : entry->file_size(gone), entry->path()};
        if (gone) continue;
        const bool isSibling = kept.path.extension() == siblingEnd;
        if (isSibling && fs::file_time_type::clock::now() - kept.time > std::chrono::hours(1))
            fs::remove(kept.path, gone);
        if (kept.path.extension() != fileEnd) continue;
        total += kept.size;
        files.push_back(kept);
    }
    if (total <= maxBytes_) return;
    std::sort(files.begin(), files.end(), [](const Kept& a, const Kept& b) {
        return a.time < b.time;
    });
    // Some room, or every other write would come here to remove one file.
    for (const Kept& kept : files) {
        if (total <= maxBytes_ / 4 * 3) break;
        fs::remove(kept.path, error);
        total -= kept.size;
    }
}

} // namespace vlGraphics
