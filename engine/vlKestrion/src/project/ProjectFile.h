#pragma once
#include <vlCommon/Result.h>
#include <vlExport/Node.h>
#include <vlMaths/Quaternion.h>
#include <vlMaths/Vector.h>
#include <vlMemory/String.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace vlKestrion {

struct EntityDecl {
    vlMemory::String mesh;
    vlMemory::String material; ///< this or the shader; both may be empty
    vlMemory::String shader;
    vlMemory::String renderQueue;    ///< empty: the default one
    std::optional<bool> transparent; ///< not there: what the material says
    bool visible = true;
    std::uint32_t line = 0;
};

struct NodeDecl {
    static constexpr std::uint32_t noParent = 0xFFFFFFFF;

    vlMemory::String name; ///< may be empty
    vlMaths::Vector position{0, 0, 0, 1};
    vlMaths::Quaternion orientation; ///< of length 1
    vlMaths::Vector scale{1, 1, 1};
    std::vector<EntityDecl> entities;
    std::uint32_t parent = noParent; ///< index of an earlier node
    std::uint32_t line = 0;
};

struct DeclarationRef {
    vlMemory::String path; ///< relative to the project's folder
    std::uint32_t line = 0;
};

/** A project as its file says it, checked in itself but not against what it refers to. */
struct ProjectDecl {
    std::vector<DeclarationRef> declarations;
    vlMemory::String compositor;
    std::uint32_t compositorLine = 0;
    vlMemory::String camera;
    std::uint32_t cameraLine = 0;
    vlMemory::String renderingScript;
    std::vector<NodeDecl> nodes;           ///< each behind its parent
    std::vector<vlMemory::String> errors;  ///< a line for each part that was left out
    std::vector<vlMemory::String> unknown; ///< a line for each member that means nothing
};

/** Where a project lies. */
struct ProjectPlace {
    vlMemory::String name;   ///< as it was asked for: what stands before each error
    vlMemory::String path;   ///< absolute
    vlMemory::String folder; ///< absolute
    /// A file of the project's folder as it is called in errors.
    vlMemory::String nameOf(vlMemory::StringView relativePath) const;
};

inline constexpr std::uint32_t projectFormatVersion = 1;
inline constexpr std::size_t maxProjectNodes = 1000000;

inline constexpr std::size_t maxErrorLines = 200;

/// Names and texts of files stand in errors as they are until a person is shown them; and nobody
/// reads more than the first two hundred.
void finishLines(std::vector<vlMemory::String>& lines);
/// A relative path is taken from the working directory.
ProjectPlace placeOf(vlMemory::StringView path);
/// Fails where the tree is no project at all; what is faulty inside is left out and named.
vlCommon::Result<ProjectDecl> readProject(const vlExport::Node& tree, vlMemory::StringView name);
/// Reads a file and its JSON; the error starts with the name.
vlCommon::Result<vlExport::Node> readTree(vlMemory::StringView path, vlMemory::StringView name);

/** A declaration file of a project, read. */
struct DeclarationFile {
    vlMemory::String name;   ///< as errors call it
    vlMemory::String folder; ///< absolute
    vlExport::Node tree;
};

/// The error names the line that wants the file where the file cannot be had, and the file's own
/// line where its text is faulty.
vlCommon::Result<DeclarationFile> readDeclaration(const ProjectPlace& place,
                                                  const DeclarationRef& declaration);

} // namespace vlKestrion
