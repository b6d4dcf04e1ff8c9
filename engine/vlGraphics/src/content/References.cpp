#include <vlGraphics/Buffer.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/ComputePass.h>
#include <vlGraphics/References.h>
#include <vlGraphics/RenderScenePass.h>
#include <vlGraphics/Shader.h>
#include <vlGraphics/Viewport.h>
#include <vlScripts/Script.h>

#include <fmt/format.h>

#include <type_traits>

namespace vlGraphics {

namespace {

// Each kind of user says its references once: visit(handle, where), where `where` makes the place
// inside the user, empty for the user as a whole.

vlMemory::String wholeUser() {
    return {};
}

template <class Visit> void visitPass(const Pass& pass, Visit&& visit) {
    if (const auto* compute = dynamic_cast<const ComputePass*>(&pass)) visit(compute->getShader());
    const auto* scene = dynamic_cast<const RenderScenePass*>(&pass);
    if (scene == nullptr) return;
    visit(scene->getRenderQueue());
    visit(scene->getRenderCamera());
    visit(scene->getCullingCamera());
    visit(scene->getLodCamera());
    visit(scene->getBlendState());
    visit(scene->getRasterState());
    visit(scene->getDepthStencilState());
}

template <class Visit> void visitTargets(const TargetOperations& operations, Visit&& visit) {
    for (std::uint32_t i = 0; const auto* target = operations.getColorTarget(i); ++i)
        visit(target->texture);
    visit(operations.getDepthTarget());
    visit(operations.getOverloadedViewport());
}

template <class Visit> void visitReferences(const Compositor& compositor, Visit&& visit) {
    std::uint32_t operationNumber = 0;
    std::uint32_t passNumber = 0;
    for (std::uint32_t n = 0; const CompositorNode* node = compositor.getNode(n); ++n) {
        for (std::uint32_t o = 0; const auto* operations = node->getOperations(o); ++o) {
            ++operationNumber;
            visitTargets(*operations, [&](auto handle) {
                visit(handle, [&] { return fmt::format(", operation {}", operationNumber); });
            });
            for (std::uint32_t p = 0; p < operations->getPassCount(); ++p) {
                ++passNumber;
                // Null where it has no type yet.
                const Pass* pass = operations->getPass(p);
                if (pass == nullptr) continue;
                visitPass(*pass, [&](auto handle) {
                    visit(handle, [&] { return fmt::format(", pass {}", passNumber); });
                });
            }
        }
    }
}

template <class Visit> void visitReferences(const Shader& shader, Visit&& visit) {
    visit(shader.getProgramHandle(), wholeUser);
    for (std::uint32_t i = 0; const auto* binding = shader.getTexturePerIndex(i); ++i)
        std::visit([&](auto handle) { visit(handle, wholeUser); }, binding->resource);
    for (std::uint32_t i = 0; const auto* binding = shader.getSamplerPerIndex(i); ++i)
        visit(binding->resource, wholeUser);
    for (std::uint32_t i = 0; const auto* binding = shader.getUavBufferPerIndex(i); ++i)
        visit(binding->resource, wholeUser);
    for (std::uint32_t i = 0; const auto* buffer = shader.getConstantBufferPerIndex(i); ++i) {
        for (std::uint32_t s = 0; const auto* slot = buffer->getPassMemorySlotReadOnly(s); ++s) {
            visit(slot->getCamera(), wholeUser);
            visit(slot->getTexture(), wholeUser);
        }
    }
}

template <class T> struct ManagerOf;
template <> struct ManagerOf<BlendState> : std::type_identity<BlendStateManager> {};
template <> struct ManagerOf<DepthStencilState> : std::type_identity<DepthStencilStateManager> {};
template <> struct ManagerOf<RasterState> : std::type_identity<RasterStateManager> {};
template <> struct ManagerOf<Camera> : std::type_identity<CameraManager> {};
template <> struct ManagerOf<Viewport> : std::type_identity<ViewportManager> {};
template <> struct ManagerOf<RenderQueue> : std::type_identity<RenderQueueManager> {};
template <> struct ManagerOf<Texture> : std::type_identity<TextureManager> {};
template <> struct ManagerOf<Sampler> : std::type_identity<SamplerManager> {};
template <> struct ManagerOf<Buffer> : std::type_identity<BufferManager> {};
template <> struct ManagerOf<Program> : std::type_identity<ProgramManager> {};
template <> struct ManagerOf<Shader> : std::type_identity<ShaderManager> {};

template <class T> bool refersTo(Handle<T> handle, const T& resource) {
    return ManagerOf<T>::type::getInstance()->resolve(handle) == &resource;
}

/// The users of one kind, at the end of the lines; a place that refers twice is one line.
template <class Users, class T>
void addUsers(const T& resource, std::vector<vlMemory::String>& lines) {
    const auto* users = Users::getInstance();
    for (std::size_t i = 0; const auto* user = users->getByIndex(i); ++i) {
        if (user->isHidden()) continue;
        visitReferences(*user, [&](auto handle, const auto& where) {
            if constexpr (std::is_same_v<decltype(handle), Handle<T>>) {
                if (!refersTo(handle, resource)) return;
                auto line = fmt::format("{} '{}'{}", user->kindName, user->getName(), where());
                if (lines.empty() || lines.back() != line) lines.push_back(std::move(line));
            }
        });
    }
}

} // namespace

template <class T> std::vector<vlMemory::String> usersOf(const T& resource) {
    std::vector<vlMemory::String> lines;
    addUsers<CompositorManager>(resource, lines);
    addUsers<ShaderManager>(resource, lines);
    return lines;
}

template std::vector<vlMemory::String> usersOf(const BlendState&);
template std::vector<vlMemory::String> usersOf(const DepthStencilState&);
template std::vector<vlMemory::String> usersOf(const RasterState&);
template std::vector<vlMemory::String> usersOf(const Camera&);
template std::vector<vlMemory::String> usersOf(const Viewport&);
template std::vector<vlMemory::String> usersOf(const RenderQueue&);
template std::vector<vlMemory::String> usersOf(const Texture&);
template std::vector<vlMemory::String> usersOf(const Sampler&);
template std::vector<vlMemory::String> usersOf(const Buffer&);
template std::vector<vlMemory::String> usersOf(const Program&);
template std::vector<vlMemory::String> usersOf(const Shader&);
// Nothing refers to these: they are here for whoever asks for every kind alike.
template std::vector<vlMemory::String> usersOf(const vlScripts::Script&);

} // namespace vlGraphics
