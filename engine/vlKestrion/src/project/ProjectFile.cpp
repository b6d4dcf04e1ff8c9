#include "ProjectFile.h"

#include <vlExport/JsonExporter.h>
#include <vlExport/NodeReader.h>
#include <vlMemory/Utf8.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <cmath>
#include <filesystem>
#include <span>

namespace vlKestrion {

namespace {

using vlExport::Node;
using vlExport::NodeReader;

/// But for those of the editor.
void noteUnknown(const NodeReader& reader, std::vector<vlMemory::String>& lines) {
    for (const vlMemory::String& line : reader.unknownMembers())
        if (line.find("unknown member 'EDITOR_") == vlMemory::String::npos) lines.push_back(line);
}

/// Walks the scene without calling itself: how deep it may be is the tree's concern alone.
class SceneReader {
public:
    SceneReader(vlMemory::StringView name, ProjectDecl& project) : name_(name), project_(project) {}

    void read(const Node& roots) {
        enter(roots, NodeDecl::noParent);
        while (!open_.empty()) {
            Level& level = open_.back();
            if (level.next == level.nodes.size()) {
                open_.pop_back();
                continue;
            }
            const Node& node = level.nodes[level.next++];
            if (project_.nodes.size() == maxProjectNodes) {
                error(node, fmt::format("more than {} nodes", maxProjectNodes));
                return;
            }
            readNode(node, level.parent);
        }
    }

private:
    struct Level {
        std::span<const Node> nodes;
        std::uint32_t parent;
        std::size_t next = 0;
    };

    void error(const Node& node, vlMemory::StringView text) {
        project_.errors.push_back(fmt::format("{}:{}: {}", name_, node.line(), text));
    }

    void enter(const Node& list, std::uint32_t parent) {
        if (list.isArray()) {
            open_.push_back({list.elements(), parent});
        } else {
            error(list, "'nodes' expected an array");
        }
    }

    /// What is below a faulty node goes with it: nobody could say where it belongs.
    void readNode(const Node& node, std::uint32_t parent) {
        if (!node.isObject()) return error(node, "a node expected an object");
        NodeDecl decl;
        decl.parent = parent;
        decl.line = node.line();
        NodeReader reader(node, name_);
        reader.optional("name", decl.name);
        reader.optional("position", decl.position, 3);
        reader.optional("orientation", decl.orientation);
        reader.optional("scale", decl.scale, 3);
        reader.ignore("entities");
        reader.ignore("nodes");
        reader.check(vlMaths::lengthSquared(decl.orientation) > 0, "orientation", "is no rotation");
        if (!keep(reader)) return;
        decl.orientation = vlMaths::normalised(decl.orientation);
        if (const Node* entities = node.find("entities")) readEntities(*entities, decl);
        project_.nodes.push_back(std::move(decl));
        const auto self = static_cast<std::uint32_t>(project_.nodes.size() - 1);
        if (const Node* children = node.find("nodes")) enter(*children, self);
    }

    void readEntities(const Node& list, NodeDecl& node) {
        if (!list.isArray()) return error(list, "'entities' expected an array");
        for (const Node& element : list.elements()) {
            if (!element.isObject()) {
                error(element, "an entity expected an object");
                continue;
            }
            EntityDecl decl;
            decl.line = element.line();
            NodeReader reader(element, name_);
            reader.optional("mesh", decl.mesh);
            reader.optional("material", decl.material);
            reader.optional("shader", decl.shader);
            reader.optional("renderQueue", decl.renderQueue);
            if (reader.has("transparent"))
                reader.optional("transparent", decl.transparent.emplace());
            reader.optional("visible", decl.visible);
            reader.check(decl.material.empty() || decl.shader.empty(),
                         "shader",
                         "cannot stand beside 'material'");
            if (keep(reader)) node.entities.push_back(std::move(decl));
        }
    }

    bool keep(NodeReader& reader) {
        const auto read = reader.finish();
        if (!read) project_.errors.push_back(read.error().message);
        noteUnknown(reader, project_.unknown);
        return read.has_value();
    }

    vlMemory::StringView name_;
    ProjectDecl& project_;
    std::vector<Level> open_;
};

void readDeclarationList(const Node& list, vlMemory::StringView name, ProjectDecl& project) {
    const auto error = [&](const Node& node, vlMemory::StringView text) {
        project.errors.push_back(fmt::format("{}:{}: {}", name, node.line(), text));
    };
    if (!list.isArray()) return error(list, "'declarations' expected an array");
    for (const Node& element : list.elements()) {
        const vlMemory::String* path = element.asString();
        if (path == nullptr || path->empty()) {
            error(element, "a declaration expected the path of a file");
        } else {
            project.declarations.push_back({*path, element.line()});
        }
    }
}

} // namespace

vlMemory::String ProjectPlace::nameOf(vlMemory::StringView relativePath) const {
    return (std::filesystem::path(name).parent_path() / relativePath).generic_string();
}

void finishLines(std::vector<vlMemory::String>& lines) {
    if (lines.size() > maxErrorLines) {
        const std::size_t more = lines.size() - maxErrorLines;
        lines.resize(maxErrorLines);
        lines.push_back(fmt::format("and {} more", more));
    }
    for (vlMemory::String& line : lines)
        line = vlMemory::printable(line);
}

ProjectPlace placeOf(vlMemory::StringView path) {
    ProjectPlace place;
    place.name = path;
    place.path = vlResources::ResourceManager::getInstance().getAbsoluteFromWorkingDir(path);
    place.folder = std::filesystem::path(place.path).parent_path().generic_string();
    return place;
}

vlCommon::Result<ProjectDecl> readProject(const Node& tree, vlMemory::StringView name) {
    if (!tree.isObject()) return vlCommon::fail(fmt::format("{}: this is no project", name));
    ProjectDecl project;
    NodeReader reader(tree, name);
    reader.formatVersion(projectFormatVersion);
    reader.optional("compositor", project.compositor);
    reader.optional("camera", project.camera);
    reader.optional("renderingScript", project.renderingScript);
    reader.ignore("declarations");
    reader.ignore("scene");
    if (auto read = reader.finish(); !read) return tl::unexpected(read.error());
    noteUnknown(reader, project.unknown);
    const auto lineOf = [&](vlMemory::StringView member) {
        const Node* node = tree.find(member);
        return node == nullptr ? 0 : node->line();
    };
    project.compositorLine = lineOf("compositor");
    project.cameraLine = lineOf("camera");

    if (const Node* list = tree.find("declarations")) readDeclarationList(*list, name, project);
    if (const Node* scene = tree.find("scene")) {
        if (!scene->isObject())
            project.errors.push_back(
                    fmt::format("{}:{}: 'scene' expected an object", name, scene->line()));
        if (const Node* roots = scene->find("nodes")) SceneReader(name, project).read(*roots);
    }
    return project;
}

vlCommon::Result<Node> readTree(vlMemory::StringView path, vlMemory::StringView name) {
    auto file = vlResources::ResourceManager::getInstance().readFile(path);
    if (!file) return vlCommon::fail(fmt::format("{}: {}", name, file.error().message));
    return vlExport::JsonExporter::importIntoTree(file->text(), name);
}

vlCommon::Result<DeclarationFile> readDeclaration(const ProjectPlace& place,
                                                  const DeclarationRef& declaration) {
    const auto fails = [&](const vlCommon::Error& error) {
        return vlCommon::fail(
                fmt::format("{}:{}: {}", place.name, declaration.line, error.message));
    };
    const auto& files = vlResources::ResourceManager::getInstance();
    const auto path = files.resolveInside(place.folder, declaration.path);
    if (!path) return fails(path.error());
    const auto file = files.readFile(*path);
    if (!file) return fails(file.error());
    const vlMemory::String name = place.nameOf(declaration.path);
    auto tree = vlExport::JsonExporter::importIntoTree(file->text(), name);
    if (!tree) return tl::unexpected(tree.error());
    return DeclarationFile{
            name, std::filesystem::path(*path).parent_path().generic_string(), std::move(*tree)};
}

} // namespace vlKestrion
