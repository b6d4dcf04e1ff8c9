#pragma once
#include <vlCommon/Result.h>
#include <vlGraphics/ContentLoader.h>
#include <vlKestrion/Material.h>

#include <vector>

namespace vlGraphics {
class Node;
}

namespace vlKestrion {

/** Which project to load, and how. */
class ProjectLoadQuery {
public:
    /// Relative to the working directory unless absolute.
    explicit ProjectLoadQuery(vlMemory::StringView path) : path_(path) {}
    const vlMemory::String& getPath() const { return path_; }

private:
    vlMemory::String path_;
};

/** What a project gave. A project that cannot be read gives errors and nothing else; one whose
 * parts are faulty gives the rest and a line for each fault. Pointers are the managers'. */
struct ProjectLoadResult {
    bool opened = false;
    std::vector<vlMemory::String> errors;
    vlGraphics::DeclarationLoadResult resources;
    std::vector<Material*> materials;
    std::vector<vlGraphics::Node*> rootNodes;
    vlMemory::String compositor; ///< that the project wants to be seen through; may be empty
    vlMemory::String camera;     ///< likewise
};

/** Reads projects (".vls"): a list of declaration files and a scene of nodes and entities. Adds to
 * what is there already; a node whose name is taken gets it with " (2)", " (3)" and so on behind.
 * Files that a project names stay inside its folder; the working directory is left alone. Owned by
 * System; graphics thread only. */
class ProjectLoader final {
public:
    ProjectLoadResult load(const ProjectLoadQuery& query);
    /// Checks a project and everything it names without making anything; one line an error. Needs
    /// no engine; any thread.
    static std::vector<vlMemory::String> validate(vlMemory::StringView path);
};

} // namespace vlKestrion
