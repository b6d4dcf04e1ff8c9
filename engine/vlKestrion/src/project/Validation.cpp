#include "MaterialFile.h"
#include "ProjectFile.h"
#include "References.h"

#include <vlGraphics/ContentLoader.h>
#include <vlGraphics/RenderQueue.h>
#include <vlKestrion/ProjectLoader.h>
#include <vlKestrion/Validation.h>

#include <fmt/format.h>

namespace vlKestrion {

namespace {

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
                  fmt::format("material '{}'", material.name),
                  "shaders",
                  "shader",
                  material.shader);
        const String& name = place_.name;
        refer(name,
              project.compositorLine,
              "project",
              "compositors",
              "compositor",
              project.compositor);
        refer(name, project.cameraLine, "project", "cameras", "camera", project.camera);
        for (const NodeDecl& node : project.nodes) {
            for (const EntityDecl& entity : node.entities)
                checkEntity(node, entity);
        }
        missing_.report(errors_);
    }

private:
    void checkDeclaration(const DeclarationRef& declaration) {
        auto file = readDeclaration(place_, declaration);
        if (file) return checkFile(*file);
        errors_.push_back(file.error().message);
    }

public:
    void checkFile(DeclarationFile& file) {
        auto& [name, folder, tree] = file;
        names_.gather(tree, name, errors_);
        for (MaterialDecl& material : readMaterials(tree, name, errors_))
            materials_.emplace_back(name, std::move(material));
        if (tree.remove("materials") && !declaresMore(tree)) return;
        const auto lines =
                vlGraphics::ContentLoader::validateDeclarations(tree, name, folder, place_.folder);
        errors_.insert(errors_.end(), lines.begin(), lines.end());
    }

private:
    void checkEntity(const NodeDecl& node, const EntityDecl& entity) {
        const auto referTo = [&](StringView kinds, const String& name, StringView kind) {
            if (name.empty()) return;
            const String referrer = fmt::format("node '{}'", node.name);
            refer(place_.name, entity.line, referrer, kinds, kind, name);
        };
        referTo("meshes", entity.mesh, "mesh");
        referTo("materials", entity.material, "material");
        referTo("shaders", entity.shader, "shader");
        referTo("renderQueues", entity.renderQueue, "render queue");
    }

    void refer(StringView file,
               std::uint32_t line,
               StringView referrer,
               StringView kinds,
               StringView kind,
               const String& name) {
        if (name.empty() || StringView(name).starts_with(reservedPrefix)) return;
        if (!names_.has(kinds, name)) missing_.note(file, line, referrer, kind, name);
    }

    const ProjectPlace& place_;
    std::vector<String>& errors_;
    DeclaredNames names_;
    MissingNames missing_;
    std::vector<std::pair<String, MaterialDecl>> materials_; ///< with their file's name
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
    finishLines(errors);
    return errors;
}

std::vector<String> validateFile(StringView path) {
    if (path.ends_with(".vls")) return ProjectLoader::validate(path);
    std::vector<String> errors;
    const ProjectPlace place = placeOf(path);
    auto tree = readTree(place.path, place.name);
    if (!tree) return {tree.error().message};
    DeclarationFile file{place.name, place.folder, std::move(*tree)};
    ProjectCheck(place, errors).checkFile(file);
    finishLines(errors);
    return errors;
}

} // namespace vlKestrion
