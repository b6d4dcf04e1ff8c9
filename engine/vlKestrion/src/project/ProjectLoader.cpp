#include "MaterialFile.h"
#include "ProjectFile.h"
#include "References.h"

#include <vlGraphics/Camera.h>
#include <vlGraphics/Mesh.h>
#include <vlGraphics/Node.h>
#include <vlGraphics/RenderQueue.h>
#include <vlGraphics/System.h>
#include <vlKestrion/ProjectLoader.h>

#include <fmt/format.h>

#include <unordered_map>

namespace vlKestrion {

namespace {

using vlMemory::String;
using vlMemory::StringView;

/** Makes one project. */
class ProjectBuilder {
public:
    ProjectBuilder(const ProjectPlace& place, ProjectLoadResult& result)
        : place_(place), result_(result) {}

    void build(const ProjectDecl& project) {
        for (const DeclarationRef& declaration : project.declarations)
            loadDeclaration(declaration);
        makeMaterials();
        checkView<vlGraphics::CompositorManager>(
                project.compositor, project.compositorLine, "compositor");
        checkView<vlGraphics::CameraManager>(project.camera, project.cameraLine, "camera");
        result_.compositor = project.compositor;
        result_.camera = project.camera;
        makeNodes(project);
        missing_.report(result_.errors);
    }

private:
    void error(StringView file, std::uint32_t line, StringView text) {
        result_.errors.push_back(fmt::format("{}:{}: {}", file, line, text));
    }

    void loadDeclaration(const DeclarationRef& declaration) {
        auto file = readDeclaration(place_, declaration);
        if (!file) {
            result_.errors.push_back(file.error().message);
            return;
        }
        auto& [name, folder, tree] = *file;
        names_.gather(tree, name, result_.errors);
        for (MaterialDecl& material : readMaterials(tree, name, result_.errors))
            materials_.push_back({name, std::move(material)});
        if (tree.remove("materials") && !declaresMore(tree)) return;
        // Without a device there is nothing to load the resources onto; they are made all the same.
        const bool load = vlGraphics::System::getInstance() != nullptr;
        const vlGraphics::DeclarationLoadResult loaded =
                vlGraphics::ContentLoader::loadDeclarations(
                        tree, name, folder, place_.folder, load);
        const auto& errors = loaded.getErrors();
        result_.errors.insert(result_.errors.end(), errors.begin(), errors.end());
        take<vlGraphics::BlendState,
             vlGraphics::DepthStencilState,
             vlGraphics::RasterState,
             vlGraphics::Sampler,
             vlGraphics::Buffer,
             vlGraphics::Camera,
             vlGraphics::Viewport,
             vlGraphics::RenderQueue,
             vlGraphics::Program,
             vlGraphics::Shader,
             vlGraphics::Texture,
             vlGraphics::Mesh,
             vlGraphics::Compositor,
             vlScripts::Script>(loaded);
    }

    template <class... Kinds> void take(const vlGraphics::DeclarationLoadResult& loaded) {
        const auto takeKind = [&](const auto& resources) {
            for (auto* resource : resources)
                result_.resources.add(resource);
        };
        (takeKind(loaded.getResources<Kinds>()), ...);
    }

    /// After all else, so that a material may stand before its shader.
    void makeMaterials() {
        auto* manager = MaterialManager::getInstance();
        auto* shaders = vlGraphics::ShaderManager::getInstance();
        for (const auto& [file, decl] : materials_) {
            const Material* bearer = manager->get(decl.name);
            if (bearer != nullptr && bearer->isHidden()) {
                error(file,
                      decl.line,
                      fmt::format("material '{}': the one that bears this name is not the "
                                  "project's",
                                  decl.name));
                continue;
            }
            Material* material = manager->createOrRetrieve(decl.name);
            if (!decl.shader.empty() && shaders->get(decl.shader) == nullptr)
                missing_.note(file,
                              decl.line,
                              fmt::format("material '{}'", decl.name),
                              "shader",
                              decl.shader);
            material->setShader(shaders->handleOf(decl.shader));
            material->setTransparent(decl.transparent);
            result_.materials.push_back(material);
        }
    }

    template <class Manager>
    void checkView(const String& name, std::uint32_t line, StringView kind) {
        if (name.empty() || Manager::getInstance()->get(name) != nullptr) return;
        missing_.note(place_.name, line, "project", kind, name);
    }

    void makeNodes(const ProjectDecl& project) {
        std::vector<vlGraphics::Node*> made;
        made.reserve(project.nodes.size());
        for (const NodeDecl& decl : project.nodes) {
            vlGraphics::Node* node = makeNode(decl);
            made.push_back(node);
            if (node == nullptr) continue;
            node->setPosition(decl.position.withW(1));
            node->setOrientation(decl.orientation);
            node->setScale(decl.scale);
            vlGraphics::Node* parent =
                    decl.parent == NodeDecl::noParent ? nullptr : made[decl.parent];
            if (parent == nullptr) {
                result_.rootNodes.push_back(node);
            } else {
                node->setParentNode(parent);
            }
            for (const EntityDecl& entity : decl.entities)
                makeEntity(entity, *node);
        }
    }

    /// Null, with an error, only when the name is none.
    vlGraphics::Node* makeNode(const NodeDecl& decl) {
        auto* manager = vlGraphics::NodeManager::getInstance();
        const String wanted = decl.name.empty() ? "Node" : decl.name;
        if (!vlGraphics::isValidResourceName(wanted)) {
            error(place_.name, decl.line, "node: 'name' is no resource name");
            return nullptr;
        }
        String name = wanted;
        std::uint64_t& number = nodeNumbers_[wanted];
        while (manager->get(name) != nullptr) {
            number = number == 0 ? 2 : number + 1;
            name = fmt::format("{} ({})", wanted, number);
        }
        return manager->createOrRetrieve(name);
    }

    void makeEntity(const EntityDecl& decl, vlGraphics::Node& node) {
        auto* queues = vlGraphics::RenderQueueManager::getInstance();
        const auto missing = [&](StringView kind, StringView name) {
            const String referrer = fmt::format("node '{}'", node.getName());
            missing_.note(place_.name, decl.line, referrer, kind, name);
        };
        vlGraphics::RenderQueue* queue = queues->get(decl.renderQueue);
        if (queue == nullptr) {
            if (!decl.renderQueue.empty()) missing("render queue", decl.renderQueue);
            queue = queues->createOrRetrieve(vlGraphics::RenderQueueManager::DEFAULT_RENDER_QUEUE);
        }
        vlGraphics::Entity* entity = queue->addEntity();
        entity->setParentNode(&node);
        auto* meshes = vlGraphics::MeshManager::getInstance();
        if (!decl.mesh.empty() && meshes->get(decl.mesh) == nullptr) missing("mesh", decl.mesh);
        entity->setMesh(meshes->handleOf(decl.mesh));
        if (!decl.material.empty()) {
            auto* materials = MaterialManager::getInstance();
            if (materials->get(decl.material) == nullptr) missing("material", decl.material);
            materials->assign(*entity, materials->handleOf(decl.material));
        }
        if (!decl.shader.empty()) {
            auto* shaders = vlGraphics::ShaderManager::getInstance();
            if (shaders->get(decl.shader) == nullptr) missing("shader", decl.shader);
            entity->setShader(shaders->handleOf(decl.shader));
        }
        if (!decl.transparent && decl.visible) return;
        vlGraphics::EntityRenderInfo info = entity->getRenderInfo();
        info.transparent = decl.transparent.value_or(info.transparent);
        info.visible = decl.visible;
        entity->setRenderInfo(info);
    }

    const ProjectPlace& place_;
    ProjectLoadResult& result_;
    std::vector<std::pair<String, MaterialDecl>> materials_; ///< with the name of their file
    std::unordered_map<String, std::uint64_t> nodeNumbers_;
    DeclaredNames names_;
    MissingNames missing_;
};

} // namespace

ProjectLoadResult ProjectLoader::load(const ProjectLoadQuery& query) {
    ProjectLoadResult result;
    const ProjectPlace place = placeOf(query.getPath());
    auto tree = readTree(place.path, place.name);
    if (!tree) {
        result.errors.push_back(tree.error().message);
        return result;
    }
    auto project = readProject(*tree, place.name);
    if (!project) {
        result.errors.push_back(project.error().message);
        return result;
    }
    result.opened = true;
    result.errors = std::move(project->errors);
    ProjectBuilder(place, result).build(*project);
    finishLines(result.errors);
    return result;
}

} // namespace vlKestrion
