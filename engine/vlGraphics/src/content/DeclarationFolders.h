#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>

namespace vlGraphics {

/** Where the paths of a declaration lead. A plain value. */
class DeclarationFolders {
public:
    /// Relative ones are taken from the working directory. An empty root is the folder itself; an
    /// empty folder means a memento, whose paths are those of the resources.
    DeclarationFolders(vlMemory::StringView folder, vlMemory::StringView root);

    bool isMemento() const { return folder_.empty(); }
    /// The absolute path of a file that the declaration refers to; refused where it leaves the
    /// root.
    vlCommon::Result<vlMemory::String> resolve(vlMemory::StringView reference) const;
    /// How the declaration refers to a file of that source path.
    vlMemory::String refer(vlMemory::StringView sourcePath) const;

    /// What a resource keeps of an absolute path: relative to the working directory where the file
    /// lies inside it.
    static vlMemory::String sourcePathOf(vlMemory::StringView absolutePath);

private:
    vlMemory::String folder_;
    vlMemory::String root_;
};

} // namespace vlGraphics
