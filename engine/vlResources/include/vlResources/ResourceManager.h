#pragma once
#include <vlCommon/Result.h>
#include <vlCommon/SingletonClass.h>
#include <vlMemory/Buffer.h>
#include <vlMemory/String.h>

#include <cstddef>

namespace vlResources {

/** The working directory that resource and project paths are relative to, and the reading of files.
 *  Made and given its path by the UI thread at start-up; from then on its const methods may be
 * called from several threads at once. Paths are UTF-8; a relative one is taken from the working
 * directory, an absolute one as it is. */
class ResourceManager final : public vlCommon::SingletonClass<ResourceManager> {
public:
    static constexpr std::size_t defaultMaxSize = std::size_t{1} << 30U; ///< bytes

    /// Kept as given and not checked; an empty path means ".".
    void setWorkingPath(vlMemory::StringView path);
    /// The text as it was given; "." until then.
    const vlMemory::String& getWorkingPath() const { return workingPath_; }
    vlMemory::String getWorkingPathAbsolute() const;

    /// Relative to the working directory, with '/', where the path lies inside it; otherwise
    /// unchanged.
    vlMemory::String getFromWorkingDirFromAbsolute(vlMemory::StringView path) const;
    vlMemory::String getAbsoluteFromWorkingDir(vlMemory::StringView path) const;

    /// Empty where the file is missing, empty, unreadable or larger than defaultMaxSize.
    vlMemory::Buffer loadFileIntoMemory(vlMemory::StringView path) const;
    /// The error names the file and says why: missing, a folder, not readable, larger than maxSize.
    vlCommon::Result<vlMemory::Buffer> readFile(vlMemory::StringView path,
                                                std::size_t maxSize = defaultMaxSize) const;
    /// Makes the folder, and those it stands in, where it is missing.
    vlCommon::Result<> checkFolderExists(vlMemory::StringView path) const;

    /** The absolute path of what a file refers to by a path relative to its folder. Refuses
     * absolute paths and whatever leaves the folder, by ".." or by a symbolic link; what it names
     * need not exist. An empty path is refused. */
    vlCommon::Result<vlMemory::String> resolveInside(vlMemory::StringView baseFolder,
                                                     vlMemory::StringView relativePath) const;

private:
    vlMemory::String workingPath_ = ".";
};

} // namespace vlResources
