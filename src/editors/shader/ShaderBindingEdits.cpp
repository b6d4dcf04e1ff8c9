#include "editors/shader/ShaderBindingEdits.h"

#include "editors/AllKinds.h"

#include <vlGraphics/DefaultNames.h>
#include <vlGraphics/RenderQueue.h>

#include <fmt/format.h>

namespace vlEditor {
namespace {

namespace Names = vlGraphics::DefaultNames;
using vlGraphics::Handle;
using vlGraphics::Shader;

template <class Manager>
auto existing(const Shader& shader, std::string_view kind, const std::string& name)
        -> vlCommon::Result<decltype(Manager::getInstance()->handleOf(name))> {
    if (Manager::getInstance()->get(name) == nullptr)
        return refuseShader(shader, fmt::format("there is no {} '{}'", kind, name));
    return Manager::getInstance()->handleOf(name);
}

/// `kind` is what the editor calls the resource's own kind.
template <class Manager>
auto existingOrMade(std::string_view kind, const std::string& name)
        -> vlCommon::Result<decltype(Manager::getInstance()->handleOf(name))> {
    Manager& manager = *Manager::getInstance();
    if (manager.get(name) == nullptr) {
        auto* made = manager.createOrRetrieve(name);
        const AnyKind* of = findKind(kind);
        if (made == nullptr) return vlCommon::fail(couldNotCreateLine(of->texts(), name));
        if constexpr (requires { made->setShaderResource(true); }) {
            made->setShaderResource(true);
            made->setUnorderedAccess(true);
        }
        logFailure(made->load());
        vlGraphics::DeclarationLoadResult news;
        news.add(made);
        of->adopt(news);
    }
    return manager.handleOf(name);
}

struct SourceText {
    std::string_view kind;
    std::string name;
};

/// "B. name" is the kind "B" and the name; a text without a kind is the name of a texture.
SourceText partsOf(std::string_view source) {
    const std::size_t dot = source.find('.');
    const std::size_t blank = source.find(' ');
    if (dot == std::string_view::npos || blank == std::string_view::npos || blank < dot)
        return {"T", std::string(source)};
    return {source.substr(0, dot), std::string(source.substr(blank + 1))};
}

template <class Resource, class From>
vlCommon::Result<Resource> widened(const vlCommon::Result<From>& from) {
    if (!from) return vlCommon::fail(from.error().message);
    return Resource(*from);
}

} // namespace

vlCommon::Result<ShaderTextures::Resource> ShaderTextures::resolve(const Shader& shader,
                                                                   const std::string& source) {
    if (source.empty())
        return Resource(vlGraphics::TextureManager::getInstance()->handleOf(Names::texture));
    const SourceText parts = partsOf(source);
    if (parts.kind == "B")
        return widened<Resource>(existingOrMade<vlGraphics::BufferManager>("Buffer", parts.name));
    if (parts.kind == "T")
        return widened<Resource>(
                existing<vlGraphics::TextureManager>(shader, "texture", parts.name));
    return widened<Resource>(
            existing<vlGraphics::RenderQueueManager>(shader, "render queue", parts.name));
}

vlCommon::Result<ShaderSamplers::Resource> ShaderSamplers::resolve(const Shader&,
                                                                   const std::string& source) {
    if (source.empty()) return vlGraphics::SamplerManager::getInstance()->handleOf(Names::sampler);
    return existingOrMade<vlGraphics::SamplerManager>("Sampler", source);
}

vlCommon::Result<ShaderUavs::Resource> ShaderUavs::resolve(const Shader& shader,
                                                           const std::string& source) {
    return existing<vlGraphics::BufferManager>(shader, "buffer", source);
}

vlCommon::Result<> ChangeShaderTextureSource::applyTo(Shader& shader) const {
    const auto isThere = [&](const vlGraphics::TextureBinding* binding) {
        return binding != nullptr && binding->slot == slot && binding->space == space;
    };
    ChangeBindingSource<ShaderTextures> found = *this;
    if (!isThere(shader.getTexturePerIndex(index))) {
        for (std::uint32_t i = 0; const auto* binding = shader.getTexturePerIndex(i); ++i)
            if (isThere(binding)) found.index = i;
    }
    return found.applyTo(shader);
}

vlCommon::Result<Handle<vlGraphics::Camera>> cameraNamed(const std::string& name) {
    return existingOrMade<vlGraphics::CameraManager>("Camera", name);
}

} // namespace vlEditor
