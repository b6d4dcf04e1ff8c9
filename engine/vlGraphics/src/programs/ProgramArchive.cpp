#include "programs/ProgramArchive.h"

#include <array>
#include <concepts>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

namespace vlGraphics {

namespace {

template <class T>
concept Plain = std::is_arithmetic_v<T> || std::is_enum_v<T>;

/** Puts values one behind the other. */
class Writer {
public:
    static constexpr bool isReading = false;

    void bytes(const void* from, std::size_t size) {
        const auto* const first = static_cast<const std::byte*>(from);
        bytes_.insert(bytes_.end(), first, first + size);
    }
    std::size_t count(std::size_t size, std::size_t /*least*/) {
        bytes(&size, sizeof size);
        return size;
    }
    std::vector<std::byte> take() { return std::move(bytes_); }

private:
    std::vector<std::byte> bytes_;
};

/** Takes them out again; what runs past the end leaves zeros and a mark. */
class Reader {
public:
    static constexpr bool isReading = true;

    explicit Reader(std::span<const std::byte> bytes) : rest_(bytes) {}

    void bytes(void* to, std::size_t size) {
        if (size > rest_.size()) return fail();
        if (size > 0) std::memcpy(to, rest_.data(), size);
        rest_ = rest_.subspan(size);
    }
    /// Of elements that have that many bytes at least.
    std::size_t count(std::size_t /*size*/, std::size_t least) {
        std::size_t size = 0;
        bytes(&size, sizeof size);
        if (size <= rest_.size() / least) return size;
        fail();
        return 0;
    }
    bool isWhole() const { return !failed_ && rest_.empty(); }

private:
    void fail() {
        failed_ = true;
        rest_ = {};
    }

    std::span<const std::byte> rest_;
    bool failed_ = false;
};

template <class Archive, Plain T> void put(Archive& archive, T& value) {
    archive.bytes(&value, sizeof value);
}

template <class Archive, class T>
requires(std::same_as<T, std::string> ||
         std::same_as<T, std::vector<std::uint32_t>>) void put(Archive& archive, T& value) {
    constexpr std::size_t one = sizeof(typename T::value_type);
    const std::size_t count = archive.count(value.size(), one);
    if constexpr (Archive::isReading) value.resize(count);
    archive.bytes(value.data(), count * one);
}

template <class Archive, class T, std::size_t n>
void put(Archive& archive, std::array<T, n>& values) {
    for (T& value : values)
        put(archive, value);
}

template <class Archive, class T>
requires(!Plain<T>) void put(Archive& archive, std::vector<T>& values);

template <class Archive, class... Ts> void putAll(Archive& archive, Ts&... values) {
    (put(archive, values), ...);
}

template <class Archive> void put(Archive& archive, ReflectedMember& member) {
    putAll(archive, member.name, member.type, member.offset, member.byteSize);
}

template <class Archive> void put(Archive& archive, ReflectedResource& resource) {
    putAll(archive,
           resource.name,
           resource.resourceClass,
           resource.shape,
           resource.isBuffer,
           resource.isTexelBuffer,
           resource.isComparison,
           resource.isCounter,
           resource.slot,
           resource.space,
           resource.arrayCount,
           resource.byteSize,
           resource.stride,
           resource.stageMask,
           resource.texelFormat,
           resource.isFormatFixed,
           resource.members,
           resource.file,
           resource.line);
}

template <class Archive> void put(Archive& archive, ReflectedInput& input) {
    putAll(archive, input.semantic, input.location, input.locationCount, input.format);
}

template <class Archive> void put(Archive& archive, ProgramReflection& reflection) {
    putAll(archive,
           reflection.resources,
           reflection.inputs,
           reflection.colorTargetCount,
           reflection.colorTargetMask,
           reflection.writesAlpha,
           reflection.threadGroupSize,
           reflection.obstacle,
           reflection.obstacleStage,
           reflection.obstacleFile,
           reflection.obstacleLine);
}

template <class Archive> void put(Archive& archive, LoopPlace& place) {
    putAll(archive, place.file, place.line);
}

template <class Archive> void put(Archive& archive, CompiledProgram& program) {
    putAll(archive,
           program.spirv,
           program.reflection,
           program.loops,
           program.tellingStages,
           program.mostPasses);
}

template <class Archive> void put(Archive& archive, ProgramDiagnostic& diagnostic) {
    putAll(archive, diagnostic.stage, diagnostic.file, diagnostic.line, diagnostic.text);
}

template <class Archive> void put(Archive& archive, IncludeProbe& probe) {
    bool isThere = probe.content.has_value();
    Digest content = probe.content.value_or(Digest());
    putAll(archive, probe.path, isThere, content.high, content.low);
    if constexpr (Archive::isReading)
        probe.content = isThere ? std::optional(content) : std::nullopt;
}

template <class Archive, class T>
requires(!Plain<T>) void put(Archive& archive, std::vector<T>& values) {
    const std::size_t count = archive.count(values.size(), 1);
    if constexpr (Archive::isReading) values.resize(count);
    for (T& value : values)
        put(archive, value);
}

template <class Archive> void put(Archive& archive, CompileOutcome& outcome) {
    bool isProgram = outcome.has_value();
    std::vector<ProgramDiagnostic> faults;
    if (!isProgram) faults = outcome.error().getDiagnostics();
    put(archive, isProgram);
    if (isProgram) return put(archive, *outcome);
    put(archive, faults);
    if constexpr (Archive::isReading)
        outcome = tl::unexpected(ProgramCompilationResult(std::move(faults)));
}

} // namespace

std::vector<std::byte> toBytes(const CompileReport& report) {
    CompileReport copy = report; // writing and reading share their words, and reading changes
    Writer writer;
    putAll(writer, copy.outcome, copy.probes, copy.includedFiles);
    return writer.take();
}

std::optional<CompileReport> reportFrom(std::span<const std::byte> bytes) {
    CompileReport report{CompiledProgram()};
    Reader reader(bytes);
    putAll(reader, report.outcome, report.probes, report.includedFiles);
    return reader.isWhole() ? std::optional(std::move(report)) : std::nullopt;
}

} // namespace vlGraphics
