#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/Buffer.h>
#include <vlMemory/String.h>

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace vlResources {

/** Several files that belong together and are written all or not at all. commit() writes every file
 *  into a sibling first and only then renames them one after the other; folders that are missing
 * are made. After a failure the old files are as they were, and the siblings and the folders that
 * were made are gone. Should a rename itself fail half way, the files already renamed get their old
 * content back. A value of one thread. */
class FileBatch {
public:
    /// The later one of two with the same path counts. Relative paths are the process's.
    void add(vlMemory::StringView path, vlMemory::Buffer bytes);
    void add(vlMemory::StringView path, vlMemory::StringView text);
    std::size_t size() const { return files_.size(); }

    /// May be called again after a failure.
    vlCommon::Result<> commit() const;

private:
    struct File {
        vlMemory::String path;
        vlMemory::Buffer bytes;
    };
    std::vector<File> files_;
    std::unordered_map<vlMemory::String, std::size_t> places_; ///< in files_, by path
};

} // namespace vlResources
