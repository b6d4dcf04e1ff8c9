#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <span>

namespace vlResources {

/** New content of a file, lying on the disk beside it and waiting to take its place. The sibling
 * goes with this object unless it was published. One thread. */
class SiblingFile {
public:
    /// Writes and flushes; the error names the path that was asked for and the reason.
    static vlCommon::Result<SiblingFile> write(vlMemory::StringView path,
                                               std::span<const std::byte> bytes);

    SiblingFile(SiblingFile&& other) noexcept;
    SiblingFile& operator=(SiblingFile&& other) = delete;
    ~SiblingFile();

    /// Takes the file's place.
    vlCommon::Result<> publish();
    /// The same, but the old content stays beside it until this object goes, and can be had back.
    vlCommon::Result<> publishRevocably();
    /// After publishRevocably(): the old content, or no file where there was none.
    void revoke();

private:
    SiblingFile() = default;
    vlCommon::Result<> create(std::span<const std::byte> bytes);
    vlCommon::Result<> failed() const;
    vlMemory::String nextName() const;

    vlMemory::String asked_;   ///< the path of the caller, for messages
    vlMemory::String target_;  ///< symbolic links followed
    vlMemory::String sibling_; ///< empty once published
    vlMemory::String backup_;  ///< empty where nothing is kept
    bool published_ = false;
};

} // namespace vlResources
