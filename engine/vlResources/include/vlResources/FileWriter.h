#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <span>

namespace vlResources {

/** Writes files whole or not at all: into a sibling first, which takes the file's place once it is
 *  safely on the disk. After a failure (folder missing or not writable, disk full) the old file is
 * as it was, no sibling is left and the error names the file and the reason. A symbolic link is
 * followed, and an old file's permissions are kept. Relative paths are the process's. Any thread;
 * two writers of one file do not mix, the last one stays. */
class FileWriter {
public:
    FileWriter() = delete;

    static vlCommon::Result<> writeFileWhole(vlMemory::StringView path,
                                             std::span<const std::byte> bytes);
    static vlCommon::Result<> writeFileWhole(vlMemory::StringView path, vlMemory::StringView text);
};

} // namespace vlResources
