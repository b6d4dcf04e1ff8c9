#include <vlGraphics/MeshFile.h>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <cstring>

namespace vlGraphics {

namespace {

static_assert(std::endian::native == std::endian::little, "the file's numbers are copied as bytes");

constexpr std::array<char, 4> magic{'V', 'L', 'M', 'B'};
constexpr std::uint32_t currentVersion = 1;
constexpr std::uint32_t mostAttributes = 16;
constexpr std::uint32_t mostStride = 2048; ///< bytes
constexpr std::uint64_t mostFileBytes = std::uint64_t{1} << 32U;
constexpr std::size_t alignment = 16; ///< of the vertices in the file

struct FileHeader {
    std::array<char, 4> magic{};
    std::uint32_t version = 0;
    std::uint32_t topology = 0;
    std::uint32_t attributeCount = 0;
    std::uint32_t vertexStride = 0;
    std::uint32_t vertexCount = 0;
    std::uint32_t indexCount = 0;
    std::uint32_t reserved = 0;
    std::array<float, 4> sphere{};
    std::array<float, 3> lowest{};
    std::array<float, 3> highest{};
    std::uint64_t fileSize = 0;
};
static_assert(sizeof(FileHeader) == 80);

struct FileAttribute {
    std::array<char, 64> semantic{}; ///< filled up with zeros
    std::uint32_t format = 0;
    std::uint32_t offset = 0;
};
static_assert(sizeof(FileAttribute) == 72);

std::uint64_t vertexStart(std::uint32_t attributeCount) {
    const std::uint64_t end =
            sizeof(FileHeader) + std::uint64_t{attributeCount} * sizeof(FileAttribute);
    return (end + alignment - 1) / alignment * alignment;
}

std::uint64_t sizeOf(const FileHeader& header) {
    return vertexStart(header.attributeCount) +
           std::uint64_t{header.vertexStride} * header.vertexCount +
           std::uint64_t{header.indexCount} * sizeof(std::uint32_t);
}

/// Bytes in memory, taken from the front.
class MemorySource {
public:
    explicit MemorySource(std::span<const std::byte> bytes) : bytes_(bytes), size_(bytes.size()) {}
    std::uint64_t size() const { return size_; }
    vlCommon::Result<> read(std::span<std::byte> target) {
        if (target.size() > bytes_.size()) return vlCommon::fail("ends too early");
        if (!target.empty()) std::memcpy(target.data(), bytes_.data(), target.size());
        bytes_ = bytes_.subspan(target.size());
        return {};
    }

private:
    std::span<const std::byte> bytes_;
    std::uint64_t size_;
};

/// A file, read straight into where its parts belong.
class FileSource {
public:
    // Without waiting, or opening a named pipe would block until somebody writes into it.
    explicit FileSource(const vlMemory::String& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~FileSource() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    vlCommon::Result<> open() {
        if (descriptor_ < 0) return vlCommon::fail(std::strerror(errno));
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) return vlCommon::fail(std::strerror(errno));
        if (!S_ISREG(status.st_mode)) return vlCommon::fail("is no file");
        size_ = static_cast<std::uint64_t>(status.st_size);
        return {};
    }
    std::uint64_t size() const { return size_; }
    vlCommon::Result<> read(std::span<std::byte> target) {
        while (!target.empty()) {
            const ::ssize_t got = ::read(descriptor_, target.data(), target.size());
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) return vlCommon::fail(std::strerror(errno));
            if (got == 0) return vlCommon::fail("ends too early");
            target = target.subspan(static_cast<std::size_t>(got));
        }
        return {};
    }

private:
    int descriptor_;
    std::uint64_t size_ = 0;
};

vlCommon::Result<> checkHeader(const FileHeader& header, std::uint64_t fileSize) {
    if (header.magic != magic) return vlCommon::fail("is no mesh data");
    if (header.version == 0 || header.version > currentVersion) {
        return vlCommon::fail(fmt::format("has format version {}, where {} is the newest that this "
                                          "program reads",
                                          header.version,
                                          currentVersion));
    }
    if (header.attributeCount > mostAttributes) {
        return vlCommon::fail(fmt::format("{} vertex attributes, where 1 to {} are possible",
                                          header.attributeCount,
                                          mostAttributes));
    }
    // Or the sizes below could exceed 64 bits.
    if (header.vertexStride > mostStride) {
        return vlCommon::fail(fmt::format("a vertex of {} bytes, where at most {} are possible",
                                          header.vertexStride,
                                          mostStride));
    }
    if (header.reserved != 0) return vlCommon::fail("has a broken header");
    if (header.fileSize != sizeOf(header) || header.fileSize != fileSize) {
        return vlCommon::fail(fmt::format(
                "has {} bytes, where its header speaks of {}", fileSize, sizeOf(header)));
    }
    if (fileSize > mostFileBytes) {
        return vlCommon::fail(
                fmt::format("has {} bytes, more than the {} allowed", fileSize, mostFileBytes));
    }
    return {};
}

template <class Source> vlCommon::Result<> readAttributes(Source& source, MeshData& mesh) {
    for (VertexAttribute& attribute : mesh.attributes) {
        FileAttribute stored;
        if (auto read = source.read(std::as_writable_bytes(std::span(&stored, 1))); !read)
            return read;
        // All that stands before the zeros, so that a broken text stays a broken semantic.
        const vlMemory::StringView text(stored.semantic.data(), stored.semantic.size());
        const std::size_t last = text.find_last_not_of('\0');
        attribute.semantic = text.substr(0, last == vlMemory::StringView::npos ? 0 : last + 1);
        attribute.format = static_cast<FORMAT>(stored.format);
        attribute.offset = stored.offset;
    }
    return {};
}

template <class Source> vlCommon::Result<MeshData> readParts(Source& source) {
    FileHeader header;
    if (source.size() < sizeof header) return vlCommon::fail("ends within its header");
    if (auto read = source.read(std::as_writable_bytes(std::span(&header, 1))); !read) {
        return tl::unexpected(read.error());
    }
    if (auto checked = checkHeader(header, source.size()); !checked) {
        return tl::unexpected(checked.error());
    }
    MeshData mesh;
    mesh.topology = static_cast<PRIMITIVE_TOPOLOGY>(header.topology);
    mesh.vertexStride = header.vertexStride;
    mesh.vertexCount = header.vertexCount;
    mesh.sphere = {{header.sphere[0], header.sphere[1], header.sphere[2]}, header.sphere[3]};
    mesh.box.lowest = {header.lowest[0], header.lowest[1], header.lowest[2]};
    mesh.box.highest = {header.highest[0], header.highest[1], header.highest[2]};
    mesh.attributes.resize(header.attributeCount);
    if (auto read = readAttributes(source, mesh); !read) return tl::unexpected(read.error());

    std::array<std::byte, alignment> padding{};
    const std::uint64_t attributesEnd =
            sizeof(FileHeader) + std::uint64_t{header.attributeCount} * sizeof(FileAttribute);
    const auto gap = static_cast<std::size_t>(vertexStart(header.attributeCount) - attributesEnd);
    mesh.vertices.resize(std::size_t{header.vertexStride} * header.vertexCount);
    mesh.indices.resize(header.indexCount);
    for (const std::span<std::byte> part : {std::span<std::byte>(padding).first(gap),
                                            mesh.vertices.span(),
                                            std::as_writable_bytes(std::span(mesh.indices))}) {
        if (auto read = source.read(part); !read) return tl::unexpected(read.error());
    }
    if (auto checked = checkMeshData(mesh); !checked) return tl::unexpected(checked.error());
    return mesh;
}

vlCommon::Result<MeshData> named(vlCommon::Result<MeshData> result, vlMemory::StringView name) {
    if (result) return result;
    return vlCommon::fail(fmt::format("{}: {}", name, result.error().message));
}

void append(vlMemory::Buffer& buffer, std::size_t& at, std::span<const std::byte> bytes) {
    if (!bytes.empty()) std::memcpy(buffer.data() + at, bytes.data(), bytes.size());
    at += bytes.size();
}

} // namespace

vlCommon::Result<MeshData> readMeshFile(vlMemory::StringView path) {
    FileSource source{vlMemory::String(path)};
    if (auto opened = source.open(); !opened) {
        return named(tl::unexpected(opened.error()), path);
    }
    return named(readParts(source), path);
}

vlCommon::Result<MeshData> readMeshFile(std::span<const std::byte> bytes,
                                        vlMemory::StringView nameForErrors) {
    MemorySource source(bytes);
    return named(readParts(source), nameForErrors);
}

vlMemory::Buffer writeMeshFile(const MeshData& mesh) {
    FileHeader header;
    header.magic = magic;
    header.version = currentVersion;
    header.topology = static_cast<std::uint32_t>(mesh.topology);
    header.attributeCount = static_cast<std::uint32_t>(mesh.attributes.size());
    header.vertexStride = mesh.vertexStride;
    header.vertexCount = mesh.vertexCount;
    header.indexCount = static_cast<std::uint32_t>(mesh.indices.size());
    const vlMaths::Vector& center = mesh.sphere.center;
    header.sphere = {center.x, center.y, center.z, mesh.sphere.radius};
    header.lowest = {mesh.box.lowest.x, mesh.box.lowest.y, mesh.box.lowest.z};
    header.highest = {mesh.box.highest.x, mesh.box.highest.y, mesh.box.highest.z};
    header.fileSize = sizeOf(header);

    vlMemory::Buffer buffer(static_cast<std::size_t>(header.fileSize));
    std::size_t at = 0;
    append(buffer, at, std::as_bytes(std::span(&header, 1)));
    for (const VertexAttribute& attribute : mesh.attributes) {
        FileAttribute stored;
        std::copy_n(attribute.semantic.begin(),
                    std::min(attribute.semantic.size(), stored.semantic.size()),
                    stored.semantic.begin());
        stored.format = static_cast<std::uint32_t>(attribute.format);
        stored.offset = attribute.offset;
        append(buffer, at, std::as_bytes(std::span(&stored, 1)));
    }
    at = static_cast<std::size_t>(vertexStart(header.attributeCount));
    append(buffer, at, mesh.vertices.span());
    append(buffer, at, std::as_bytes(std::span(mesh.indices)));
    return buffer;
}

} // namespace vlGraphics
