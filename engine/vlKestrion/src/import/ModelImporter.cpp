#include "Assets.h"
#include "MeshBuilder.h"
#include "ModelDeclarations.h"
#include "ModelMaterials.h"
#include "Normals.h"
#include "Parallel.h"
#include "ProjectEdit.h"

#include <vlExport/JsonExporter.h>
#include <vlGraphics/MeshFile.h>
#include <vlKestrion/ModelImporter.h>
#include <vlMemory/Utf8.h>
#include <vlResources/FileBatch.h>
#include <vlResources/ResourceManager.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <thread>

namespace vlKestrion {

namespace {

namespace fs = std::filesystem;
using vlExport::Node;
using vlMemory::String;
using vlMemory::StringView;

constexpr std::size_t maxModelSize = std::size_t{1} << 31U; ///< bytes of an OBJ file
constexpr StringView shaderFolder = "lit_src";

/** One import, from the model's text to the files that are written at its end. */
class ModelImport {
public:
    ModelImport(StringView model, ProjectEdit project)
        : modelName_(model), project_(std::move(project)),
          threads_(std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 16)) {}

    vlCommon::Result<ImportReport> run() {
        if (auto read = readModel(); !read) return tl::unexpected(read.error());
        chooseNames();
        if (auto made = makeParts(); !made) return tl::unexpected(made.error());
        addMeshes();
        addTextures();
        addMaterials();
        addView();
        files_.add(project_.place().path, project_.text());
        if (auto written = files_.commit(); !written) return tl::unexpected(written.error());
        report_.materials = static_cast<std::uint32_t>(std::count_if(
                found_.materials.begin(),
                found_.materials.end(),
                [](const ModelMaterial& material) { return !material.name.empty(); }));
        finishLines(report_.warnings);
        return std::move(report_);
    }

private:
    struct BuiltPart {
        vlMemory::Buffer bytes;
        vlMaths::BoundingBox box;
        String fault;
        String mesh; ///< resource
    };

    vlCommon::Result<> readModel() {
        const auto& files = vlResources::ResourceManager::getInstance();
        const String path = files.getAbsoluteFromWorkingDir(modelName_);
        {
            const auto text = files.readFile(path, maxModelSize);
            if (!text) return tl::unexpected(text.error());
            auto file = parseObj(text->text(), modelName_, threads_);
            if (!file) return tl::unexpected(file.error());
            file_ = std::move(*file);
        }
        report_.warnings = std::move(file_.warnings);
        report_.triangles = file_.triangleCount();
        const ModelFolder folder(fs::path(path).parent_path().string());
        found_ = findMaterials(file_, folder, modelName_, report_.warnings);
        computeMissingNormals(file_, threads_);
        return {};
    }

    /// The model's own name is what all its resources start with, and its folder's.
    void chooseNames() {
        const String stem(lastPathPart(modelName_).substr(0, lastPathPart(modelName_).rfind('.')));
        const String wanted = cleanFileName(stem, "model");
        std::error_code error;
        do {
            label_ = project_.names().unique(wanted);
        } while (fs::exists(fs::path(project_.place().folder) / label_, error));
        parts_ = partsOf(file_);
    }

    vlCommon::Result<> makeParts() {
        if (parts_.size() > maxModelParts)
            return vlCommon::fail(fmt::format("{}: {} materials in use, more than the {} allowed",
                                              modelName_,
                                              parts_.size(),
                                              maxModelParts));
        built_.resize(parts_.size());
        std::vector<MeshBuilder> builders(threads_, MeshBuilder(file_));
        // One that holds most of the model would keep a single thread busy: it gets all of them.
        const auto large = std::find_if(parts_.begin(), parts_.end(), [&](const ModelPart& part) {
            return part.triangleCount > file_.triangleCount() / 2;
        });
        const auto largest = static_cast<std::size_t>(large - parts_.begin());
        if (large != parts_.end()) makePart(largest, builders.front(), threads_);
        const std::size_t count = parts_.size() + found_.textures.size();
        inParallel(count, threads_, [&](std::size_t piece, std::size_t worker) {
            if (piece >= parts_.size()) {
                prepareTexture(found_.textures[piece - parts_.size()]);
            } else if (piece != largest) {
                makePart(piece, builders[worker], 1);
            }
        });
        builders.clear();
        file_.positions = {};
        file_.texcoords = {};
        file_.normals = {};
        file_.corners = {};
        for (const BuiltPart& part : built_)
            if (!part.fault.empty())
                return vlCommon::fail(fmt::format("{}: {}", modelName_, part.fault));
        found_.dropFaulty(report_.warnings);
        return {};
    }

    void makePart(std::size_t number, MeshBuilder& builder, std::size_t threads) {
        const ModelPart& part = parts_[number];
        const bool needsTexcoords = found_.materials[part.material].hasTexture();
        const vlGraphics::MeshData mesh = builder.build(part, needsTexcoords, threads);
        BuiltPart& built = built_[number];
        if (auto good = vlGraphics::checkMeshData(mesh); !good) {
            built.fault = good.error().message;
            return;
        }
        built.box = mesh.box;
        built.bytes = vlGraphics::writeMeshFile(mesh);
    }

    /// The path of a file of the model, relative to the project's folder.
    String inFolder(StringView fileName) const { return fmt::format("{}/{}", label_, fileName); }
    String absolute(StringView fileName) const {
        return (fs::path(project_.place().folder) / inFolder(fileName)).string();
    }

    void addFile(StringView extension, const Node& declarations) {
        const String name = label_ + String(extension);
        files_.add(absolute(name), vlExport::JsonExporter::exportTreeIntoString(declarations));
        project_.addDeclaration(inFolder(name));
    }

    void addMeshes() {
        std::map<std::uint32_t, std::vector<std::size_t>> objects;
        for (std::size_t number = 0; number < parts_.size(); ++number)
            objects[parts_[number].object].push_back(number);
        Node meshes = ModelDeclarations::file("meshes");
        Node root = Node::object();
        root.add("name", label_);
        NameSet fileNames;
        for (const auto& [object, numbers] : objects) {
            const String name = cleanName(file_.objects[object], label_);
            Node entities = Node::array();
            for (const std::size_t number : numbers)
                entities.append(addMesh(name, number, numbers.size() > 1, meshes, fileNames));
            if (objects.size() == 1) {
                root.add("entities", std::move(entities));
            } else {
                Node child = Node::object();
                child.add("name", project_.names().unique(fmt::format("{}/{}", label_, name)));
                child.add("entities", std::move(entities));
                if (root.find("nodes") == nullptr) root.add("nodes", Node::array());
                root.find("nodes")->append(std::move(child));
            }
        }
        report_.meshes = static_cast<std::uint32_t>(parts_.size());
        project_.addRootNode(std::move(root));
        addFile(".vlme", meshes);
    }

    /// The answer is the entity that shows it.
    Node addMesh(const String& object,
                 std::size_t number,
                 bool oneOfMany,
                 Node& meshes,
                 NameSet& fileNames) {
        const String& material = found_.materials[parts_[number].material].name;
        const String own = oneOfMany ? fmt::format("{} {}", object, material) : object;
        const String resource = meshNames_.unique(fmt::format("{}/{}", label_, own));
        const String fileName = fileNames.unique(cleanFileName(own, "mesh"), ".vlmb");
        files_.add(absolute(fileName), std::move(built_[number].bytes));
        ModelDeclarations::add(meshes, ModelDeclarations::mesh(resource, fileName));
        Node entity = Node::object();
        entity.add("mesh", resource);
        entity.add("material", materialName(material));
        return entity;
    }

    String materialName(StringView name) const { return fmt::format("{}/{}", label_, name); }

    void addTextures() {
        Node textures = ModelDeclarations::file("textures");
        NameSet fileNames;
        for (ModelTexture& texture : found_.textures) {
            if (!texture.fault.empty()) continue;
            const fs::path name(texture.fileName);
            texture.fileName =
                    fileNames.unique(name.stem().string(), lowerCase(name.extension().string()));
            texture.resource = fmt::format("{}/{}", label_, texture.fileName);
            const String file = "textures/" + texture.fileName;
            files_.add(absolute(file), std::move(texture.bytes));
            ModelDeclarations::add(textures, ModelDeclarations::texture(texture, file));
            ++report_.textures;
        }
        if (report_.textures == 0) return;
        addFile(".vlte", textures);
        Node samplers = ModelDeclarations::file("samplers");
        ModelDeclarations::add(samplers, ModelDeclarations::sampler(samplerName()));
        addFile(".vlsa", samplers);
    }

    String samplerName() const { return label_ + "/Sampler"; }

    void addMaterials() {
        Node programs = ModelDeclarations::file("programs");
        Node shaders = ModelDeclarations::file("shaders");
        Node materials = ModelDeclarations::file("materials");
        std::set<LitVariant> variants;
        for (const ModelMaterial& material : found_.materials) {
            if (material.name.empty()) continue;
            const LitVariant variant = variantOf(material, found_.textures);
            const String program = fmt::format("{}/{}", label_, variant.name());
            if (variants.insert(variant).second)
                ModelDeclarations::add(programs,
                                       ModelDeclarations::program(program, variant, shaderFolder));
            const String name = materialName(material.name);
            ModelDeclarations::add(
                    shaders,
                    ModelDeclarations::shader(
                            name, material, found_.textures, program, samplerName()));
            ModelDeclarations::add(materials,
                                   ModelDeclarations::material(name, material.transparent()));
        }
        for (const StringView source : {"vertexShader.hlsl", "pixelShader.hlsl"})
            files_.add(absolute(fmt::format("{}/{}", shaderFolder, source)), assets::asset(source));
        addFile(".vlpr", programs);
        addFile(".vlsh", shaders);
        addFile(".vlma", materials);
    }

    /// A camera, and how to see through it where the project does not say so yet.
    void addView() {
        vlMaths::BoundingBox box;
        for (const BuiltPart& part : built_)
            box.add(part.box);
        const String camera = project_.names().unique(label_ + "_CAMERA");
        Node cameras = ModelDeclarations::file("cameras");
        ModelDeclarations::add(cameras, ModelDeclarations::camera(camera, cameraFor(box)));
        addFile(".vlca", cameras);
        if (!project_.hasCamera()) project_.setCamera(camera);
        if (project_.hasCompositor()) return;

        const String compositor = project_.names().unique(label_ + "_COMPOSITOR");
        const ModelDeclarations::ViewStates states{project_.names().unique(label_ + "_BLEND"),
                                                   project_.names().unique(label_ + "_RASTER"),
                                                   project_.names().unique(label_ + "_DEPTH")};
        addOne(".vlbs", "blendStates", ModelDeclarations::blendState(states.blend));
        addOne(".vlrs", "rasterStates", ModelDeclarations::rasterState(states.raster));
        addOne(".vlds",
               "depthStencilStates",
               ModelDeclarations::depthStencilState(states.depthStencil));
        addOne(".vlco", "compositors", ModelDeclarations::compositor(compositor, states));
        project_.setCompositor(compositor);
    }

    /// A declaration file with one resource.
    void addOne(StringView extension, StringView list, Node resource) {
        Node file = ModelDeclarations::file(list);
        ModelDeclarations::add(file, std::move(resource));
        addFile(extension, file);
    }

    String modelName_;
    ProjectEdit project_;
    std::size_t threads_;
    ObjFile file_;
    ModelMaterials found_;
    std::vector<ModelPart> parts_;
    std::vector<BuiltPart> built_;
    String label_;
    NameSet meshNames_;
    vlResources::FileBatch files_;
    ImportReport report_;
};

vlCommon::Result<> checkEndings(StringView model, StringView project) {
    if (!lowerCase(model).ends_with(".obj"))
        return vlCommon::fail(
                fmt::format("'{}': only Wavefront OBJ models can be imported", model));
    if (!project.ends_with(".vls"))
        return vlCommon::fail(fmt::format("'{}': a project's file ends in .vls", project));
    return {};
}

vlCommon::Result<ImportReport> import(StringView model, StringView project) {
    if (auto good = checkEndings(model, project); !good) return tl::unexpected(good.error());
    auto edit = ProjectEdit::open(project);
    if (!edit) return tl::unexpected(edit.error());
    try {
        return ModelImport(model, std::move(*edit)).run();
    } catch (const std::bad_alloc&) {
        return vlCommon::fail(fmt::format("'{}': there is not enough memory for it", model));
    } catch (const std::exception& error) {
        return vlCommon::fail(fmt::format("'{}': {}", model, error.what()));
    }
}

} // namespace

vlCommon::Result<ImportReport> importModel(StringView model, StringView project) {
    auto report = import(model, project);
    if (report) return report;
    return vlCommon::fail(vlMemory::printable(report.error().message));
}

} // namespace vlKestrion
