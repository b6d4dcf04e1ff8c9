#include "ProjectEdit.h"

#include <vlExport/JsonExporter.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <filesystem>

namespace vlKestrion {

namespace {

using vlExport::Node;

Node emptyProject() {
    Node tree = Node::object();
    tree.add("formatVersion", projectFormatVersion);
    tree.add("declarations", Node::array());
    tree.add("compositor", "");
    tree.add("camera", "");
    tree.add("scene", Node::object()).add("nodes", Node::array());
    return tree;
}

/// The member of the object; made where it is missing.
Node& member(Node& object, vlMemory::StringView name, Node fresh) {
    Node* known = object.find(name);
    return known != nullptr ? *known : object.add(name, std::move(fresh));
}

} // namespace

vlCommon::Result<ProjectEdit> ProjectEdit::open(vlMemory::StringView path) {
    ProjectEdit edit;
    edit.place_ = placeOf(path);
    std::error_code error;
    if (std::filesystem::exists(edit.place_.path, error)) {
        auto tree = readTree(edit.place_.path, edit.place_.name);
        if (!tree) return tl::unexpected(tree.error());
        edit.tree_ = std::move(*tree);
    } else {
        edit.tree_ = emptyProject();
    }
    auto project = readProject(edit.tree_, edit.place_.name);
    if (!project) return tl::unexpected(project.error());
    edit.project_ = std::move(*project);
    if (auto good = edit.check(); !good) return tl::unexpected(good.error());
    if (auto gathered = edit.gatherNames(); !gathered) return tl::unexpected(gathered.error());
    return edit;
}

/// There must be somewhere to add to.
vlCommon::Result<> ProjectEdit::check() const {
    const auto fails = [&](const Node& node, vlMemory::StringView text) {
        return vlCommon::fail(fmt::format("{}:{}: {}", place_.name, node.line(), text));
    };
    const Node* declarations = tree_.find("declarations");
    if (declarations != nullptr && !declarations->isArray())
        return fails(*declarations, "'declarations' expected an array");
    const Node* scene = tree_.find("scene");
    const Node* nodes = scene == nullptr ? nullptr : scene->find("nodes");
    if (scene != nullptr && !scene->isObject()) return fails(*scene, "'scene' expected an object");
    if (nodes != nullptr && !nodes->isArray()) return fails(*nodes, "'nodes' expected an array");
    if (!project_.errors.empty()) return vlCommon::fail(project_.errors.front());
    return {};
}

vlCommon::Result<> ProjectEdit::gatherNames() {
    for (const NodeDecl& node : project_.nodes)
        names_.add(node.name);
    for (const DeclarationRef& declaration : project_.declarations) {
        const auto file = readDeclaration(place_, declaration);
        if (!file) return tl::unexpected(file.error());
        for (const vlExport::Member& list : file->tree.members()) {
            for (const Node& element : list.value.elements()) {
                const Node* name = element.find("name");
                if (name != nullptr && name->isString()) names_.add(*name->asString());
            }
        }
    }
    return {};
}

void ProjectEdit::addDeclaration(vlMemory::StringView path) {
    member(tree_, "declarations", Node::array()).append(path);
}

void ProjectEdit::addRootNode(Node node) {
    Node& scene = member(tree_, "scene", Node::object());
    member(scene, "nodes", Node::array()).append(std::move(node));
}

vlMemory::String ProjectEdit::text() const {
    return vlExport::JsonExporter::exportTreeIntoString(tree_);
}

} // namespace vlKestrion
