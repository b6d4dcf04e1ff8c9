#include "MaterialFile.h"
#include "ProjectFile.h"

#include <vlGraphics/ContentLoader.h>
#include <vlGraphics/RenderQueue.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/Validation.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <filesystem>
#include <map>
#include <unordered_set>

namespace vlKestrion {

namespace {

namespace fs = std::filesystem;
using vlMemory::String;
using vlMemory::StringView;

/// The engine brings these along itself.
constexpr StringView reservedPrefix = "VORLANE_";

/** What a project's declarations declare, and whether what it refers to is among it. */
class ProjectCheck {
public:
    ProjectCheck(const ProjectPlace& place, std::vector<String>& errors)
        : place_(place), errors_(errors) {}

    void check(const ProjectDecl& project) {
        for (const DeclarationRef& declaration : project.declarations)
            checkDeclaration(declaration);
        for (const auto& [file, material] : materials_)
            refer(file,
                  material.line,
                  "shaders",
                  material.shader,
                  fmt::format("material '{}': shader", material.name));
        refer(place_.name,
              project.compositorLine,
              "compositors",
              project.compositor,
              "project: compositor");
        refer(place_.name, project.cameraLine, "cameras", project.camera, "project: camera");
        for (const NodeDecl& node : project.nodes) {
            for (const EntityDecl& entity : node.entities)
                checkEntity(node, entity);
        }
    }

private:
    void checkDeclaration(const DeclarationRef& declaration) {
        const auto& files = vlResources::ResourceManager::getInstance();
        const auto path = files.resolveInside(place_.folder, declaration.path);
        if (!path) {
            errors_.push_back(
                    fmt::format("{}:{}: {}", place_.name, declaration.line, path.error().message));
            return;
        }
        checkFile(*path, place_.nameOf(declaration.path), place_.folder);
    }

public:
    void checkFile(const String& path, const String& name, const String& root) {
        auto tree = readTree(path, name);
        if (!tree) {
            errors_.push_back(tree.error().message);
            return;
        }
        for (const vlExport::Member& member : tree->members())
            gather(member);
        for (MaterialDecl& material : readMaterials(*tree, name, errors_))
            materials_.emplace_back(name, std::move(material));
        if (tree->remove("materials") && !declaresMore(*tree)) return;
        const auto lines = vlGraphics::ContentLoader::validateDeclarations(
                *tree, name, fs::path(path).parent_path().generic_string(), root);
        errors_.insert(errors_.end(), lines.begin(), lines.end());
    }

private:
    void gather(const vlExport::Member& list) {
        for (const vlExport::Node& element : list.value.elements()) {
            const vlExport::Node* name = element.find("name");
            const String* text = name == nullptr ? nullptr : name->asString();
            if (text != nullptr) names_[list.name].insert(*text);
        }
    }

    void checkEntity(const NodeDecl& node, const EntityDecl& entity) {
        const auto referTo = [&](StringView kinds, const String& name, StringView kind) {
            if (name.empty()) return;
            refer(place_.name,
                  entity.line,
                  kinds,
                  name,
                  fmt::format("node '{}': {}", node.name, kind));
        };
        referTo("meshes", entity.mesh, "mesh");
        referTo("materials", entity.material, "material");
        referTo("shaders", entity.shader, "shader");
        referTo("renderQueues", entity.renderQueue, "render queue");
    }

    void refer(StringView file,
               std::uint32_t line,
               StringView kinds,
               const String& name,
               StringView referrer) {
        if (name.empty() || StringView(name).starts_with(reservedPrefix)) return;
        const auto known = names_.find(kinds);
        if (known != names_.end() && known->second.contains(name)) return;
        errors_.push_back(fmt::format("{}:{}: {} '{}' not found", file, line, referrer, name));
    }

    const ProjectPlace& place_;
    std::vector<String>& errors_;
    std::map<String, std::unordered_set<String>, std::less<>> names_; ///< by list
    std::vector<std::pair<String, MaterialDecl>> materials_;          ///< with their file's name
};

} // namespace

std::vector<String> ProjectLoader::validate(StringView path) {
    std::vector<String> errors;
    const ProjectPlace place = placeOf(path);
    const auto tree = readTree(place.path, place.name);
    if (!tree) return {tree.error().message};
    auto project = readProject(*tree, place.name);
    if (!project) return {project.error().message};
    errors = std::move(project->errors);
    errors.insert(errors.end(), project->unknown.begin(), project->unknown.end());
    ProjectCheck(place, errors).check(*project);
    makePrintable(errors);
    return errors;
}

std::vector<String> validateFile(StringView path) {
    if (path.ends_with(".vls")) return ProjectLoader::validate(path);
    std::vector<String> errors;
    const ProjectPlace place = placeOf(path);
    ProjectCheck(place, errors).checkFile(place.path, place.name, place.folder);
    makePrintable(errors);
    return errors;
}

} // namespace vlKestrion
