#include "script/KindBuilder.h"
#include "script/Kinds.h"

#include <vlGraphics/Buffer.h>
#include <vlGraphics/RenderContext.h>
#include <vlGraphics/RenderQueue.h>

#include <charconv>

namespace vlKestrion {
namespace {

using vlGraphics::Compositor;
using vlGraphics::Mesh;
using vlGraphics::Program;
using vlGraphics::RenderContext;
using vlGraphics::RenderContextManager;
using vlGraphics::RenderQueue;
using vlGraphics::Shader;
using vlGraphics::Texture;

std::vector<vlGraphics::Handle<Texture>> texturesOf(const Shader& shader) {
    std::vector<vlGraphics::Handle<Texture>> textures;
    for (std::uint32_t i = 0; const auto* binding = shader.getTexturePerIndex(i); ++i)
        if (const auto* texture = std::get_if<vlGraphics::Handle<Texture>>(&binding->resource))
            textures.push_back(*texture);
    return textures;
}

std::vector<vlGraphics::Handle<vlGraphics::Sampler>> samplersOf(const Shader& shader) {
    std::vector<vlGraphics::Handle<vlGraphics::Sampler>> samplers;
    for (std::uint32_t i = 0; const auto* binding = shader.getSamplerPerIndex(i); ++i)
        samplers.push_back(binding->resource);
    return samplers;
}

/// Which one a method means: counted from 1, as scripts do.
Result<std::uint32_t> placeFrom(std::span<const Value> given) {
    const auto place = given.empty() ? std::nullopt : given[0].asInteger();
    if (!place || *place < 1 || *place > 0xFFFF)
        return vlCommon::fail("expected a place, counted from 1");
    return static_cast<std::uint32_t>(*place - 1);
}

Result<> setTexture(Shader& shader, std::span<const Value> given) {
    const auto place = placeFrom(given);
    if (!place) return tl::unexpected(place.error());
    const auto texture =
            Conversion<vlGraphics::Handle<Texture>>::read(given.size() < 2 ? Value() : given[1]);
    if (!texture) return tl::unexpected(texture.error());
    if (!shader.setTexture(*place, *texture))
        return vlCommon::fail("there is no such texture slot");
    return {};
}

std::vector<String> nodesOf(const Compositor& compositor) {
    std::vector<String> names;
    for (std::uint32_t i = 0; i < compositor.getNodeCount(); ++i)
        names.push_back(compositor.getNode(i)->getName());
    return names;
}

Result<> setNodeActive(Compositor& compositor, std::span<const Value> given) {
    const String* name = given.empty() ? nullptr : given[0].asText();
    const auto active = given.size() < 2 ? std::nullopt : given[1].asBool();
    if (name == nullptr || !active)
        return vlCommon::fail("expected the name of a node, and true or false");
    bool found = false;
    for (std::uint32_t i = 0; i < compositor.getNodeCount(); ++i) {
        if (compositor.getNode(i)->getName() != *name) continue;
        compositor.getNode(i)->setActive(*active);
        found = true;
    }
    if (!found) return vlCommon::fail("it has no node '" + *name + "'");
    return {};
}

/// A change of a material reaches the entities that wear it only when it is passed on.
template <class V> auto passedOn(void (Material::*set)(V)) {
    return [set](Material& material, V value) {
        (material.*set)(value);
        MaterialManager::getInstance()->refresh(material);
        return true;
    };
}

/// Contexts have no names: "1" is the first.
RenderContext* findContext(const String& name) {
    RenderContextManager* contexts = RenderContextManager::getInstance();
    std::size_t place = 0;
    const char* end = name.data() + name.size();
    const auto read = std::from_chars(name.data(), end, place);
    if (contexts == nullptr || read.ec != std::errc() || read.ptr != end || place == 0)
        return nullptr;
    return contexts->getByIndex(place - 1);
}

template <class T> auto asHandle(void (RenderContext::*set)(vlGraphics::Handle<T>)) {
    return [set](RenderContext& context, T* resource) {
        auto* manager = Referred<T>::Manager::getInstance();
        (context.*set)(resource == nullptr ? vlGraphics::Handle<T>{} : manager->handleOf(resource));
        return true;
    };
}

template <class T> void addLoad(KindBuilder<T>& builder) {
    builder.method("load",
                   "",
                   "makes the device's side anew, from what the fields say now",
                   [](T& resource, std::span<const Value>) -> Result<> {
                       resource.unload();
                       return resource.load();
                   });
}

} // namespace

EngineKind materialKind() {
    auto builder = resourceKind<MaterialManager>("material");
    builder.field("shader",
                  "what its entities are drawn with",
                  &Material::getShader,
                  passedOn(&Material::setShader))
            .field("transparent",
                   "its entities let light through",
                   &Material::getTransparent,
                   passedOn(&Material::setTransparent));
    return finish<MaterialManager>(builder, "materials");
}

EngineKind shaderKind() {
    auto builder = resourceKind<vlGraphics::ShaderManager>("shader");
    builder.field("program",
                  "",
                  &Shader::getProgramHandle,
                  [](Shader& shader, vlGraphics::Handle<Program> program) {
                      shader.setProgram(program);
                  })
            .field("textures", "in the order of binding", texturesOf)
            .field("samplers", "in the order of binding", samplersOf)
            .field("maxInstances",
                   "entities drawn by one call at most, 1 to 65536",
                   &Shader::getMaxInstancePerBuffer,
                   &Shader::setMaxInstancePerBuffer)
            .field("usable", "its program can draw entities", &Shader::isUsableScene);
    builder.method("setTexture", "place, texture", "binds another texture at a place", setTexture);
    return finish<vlGraphics::ShaderManager>(builder, "shaders");
}

EngineKind programKind() {
    auto builder = resourceKind<vlGraphics::ProgramManager>("program");
    builder.field("type", "", &Program::getType)
            .field("folder", "of its sources; empty for those in memory", &Program::getFolder)
            .field("compiling", "a compilation is under way", &Program::isCompiling)
            .field("usable", "there is a good result to draw with", &Program::isUsable)
            .field("error",
                   "of the last compilation; empty on success",
                   [](const Program& program) {
                       return program.getLastCompilationResult().getErrorMessage();
                   });
    return finish<vlGraphics::ProgramManager>(builder, "programs");
}

EngineKind meshKind() {
    auto builder = resourceKind<vlGraphics::MeshManager>("mesh");
    builder.field("source", "the file it came from; empty for memory", &Mesh::getSourcePath)
            .field("vertexCount", "", &Mesh::getVertexCount)
            .field("indexCount", "", &Mesh::getIndexCount)
            .field("vertexStride", "bytes", &Mesh::getVertexStride)
            .field("topology", "", &Mesh::getTopology)
            .field("lowest",
                   "corner of the box around it",
                   [](const Mesh& mesh) { return Triple{mesh.getBoundingBox().lowest}; })
            .field("highest",
                   "corner of the box around it",
                   [](const Mesh& mesh) { return Triple{mesh.getBoundingBox().highest}; })
            .field("radius",
                   "of the ball around it; below 0 for a mesh without vertices",
                   [](const Mesh& mesh) { return mesh.getBoundingSphere().radius; });
    return finish<vlGraphics::MeshManager>(builder, "meshes");
}

EngineKind textureKind() {
    using T = Texture;
    auto builder = resourceKind<vlGraphics::TextureManager>("texture");
    builder.field("source", "the file it came from; empty for targets", &T::getSourcePath)
            .field("width", "pixels, 1 to 16384; see load()", &T::getWidth, &T::setWidth)
            .field("height", "pixels, 1 to 16384; see load()", &T::getHeight, &T::setHeight)
            .field("mipCount", "0: the whole chain; see load()", &T::getMipCount, &T::setMipCount)
            .field("format", "see load()", &T::getFormat, &T::setFormat)
            .field("renderFlag", "see load()", &T::getRenderFlag, &T::setRenderFlag)
            .field("gammaCorrected",
                   "holds sRGB colours; see load()",
                   &T::isGammaCorrected,
                   &T::setGammaCorrected);
    addLoad(builder);
    return finish<vlGraphics::TextureManager>(builder, "textures");
}

EngineKind bufferKind() {
    using B = vlGraphics::Buffer;
    auto builder = resourceKind<vlGraphics::BufferManager>("buffer");
    builder.field("elementByteSize",
                  "bytes; see load()",
                  &B::getElementByteSize,
                  &B::setElementByteSize)
            .field("elementCount", "see load()", &B::getElementCount, &B::setElementCount)
            .field("unorderedAccess",
                   "offered where shaders write",
                   &B::getUnorderedAccess,
                   &B::setUnorderedAccess)
            .field("shaderResource",
                   "offered where shaders read",
                   &B::getShaderResource,
                   &B::setShaderResource);
    addLoad(builder);
    return finish<vlGraphics::BufferManager>(builder, "buffers");
}

EngineKind renderQueueKind() {
    using Strategy = vlGraphics::DefaultRenderStrategy;
    const auto get = [](auto member) {
        return [member](const RenderQueue& queue) { return (queue.getRenderStrategy().*member)(); };
    };
    const auto set = [](auto member) {
        return [member](RenderQueue& queue, const auto& value) {
            (queue.getRenderStrategy().*member)(value);
        };
    };
    auto builder = resourceKind<vlGraphics::RenderQueueManager>("renderQueue");
    builder.field("entityCount",
                  "",
                  [](const RenderQueue& queue) {
                      return static_cast<std::uint32_t>(queue.getEntityCount());
                  })
            .field("raytraced", "", &RenderQueue::getRaytraced, &RenderQueue::setRaytraced)
            .field("ordered",
                   "sorted by shader and mesh; off: in the order of joining",
                   get(&Strategy::getOrderQueue),
                   set(&Strategy::setOrderQueue))
            .field("frustumCull",
                   "what lies outside the view is passed over",
                   get(&Strategy::getFrustumCull),
                   set(&Strategy::setFrustumCull))
            .field("useLod", "", get(&Strategy::getUseLodSystem), set(&Strategy::setUseLodSystem))
            .field("lodQuality",
                   "",
                   get(&Strategy::getLodQualityFactor),
                   set(&Strategy::setLodQualityFactor));
    return finish<vlGraphics::RenderQueueManager>(builder, "renderQueues");
}

EngineKind compositorKind() {
    auto builder = resourceKind<vlGraphics::CompositorManager>("compositor");
    builder.field("nodes", "the names of its nodes, in order", nodesOf);
    builder.method("setActive", "node, active", "switches the nodes of that name", setNodeActive);
    return finish<vlGraphics::CompositorManager>(builder, "compositors");
}

EngineKind renderContextKind() {
    KindBuilder<RenderContext> builder("renderContext", findContext);
    builder.field("width", "pixels", &RenderContext::getWidth)
            .field("height", "pixels", &RenderContext::getHeight)
            .field("compositor",
                   "nil: the default one",
                   &RenderContext::getCompositor,
                   [](RenderContext& context, vlGraphics::Handle<Compositor> compositor) {
                       context.setCompositor(compositor);
                   })
            .field("renderCamera",
                   "that its picture is taken from; nil: the default one",
                   &RenderContext::getRenderCamera,
                   asHandle(&RenderContext::setRenderCamera))
            .field("cullingCamera",
                   "that decides what lies in view; nil: the default one",
                   &RenderContext::getCullingCamera,
                   asHandle(&RenderContext::setCullingCamera))
            .field("lodCamera",
                   "that decides how much detail is drawn; nil: the default one",
                   &RenderContext::getLodCamera,
                   asHandle(&RenderContext::setLodCamera));
    return {builder.take(),
            "renderContexts",
            [] {
                std::vector<String> names;
                while (findContext(std::to_string(names.size() + 1)) != nullptr)
                    names.push_back(std::to_string(names.size() + 1));
                return names;
            },
            [](const String& name) { return findContext(name) != nullptr; }};
}

} // namespace vlKestrion
