#include "viewport/EngineWindowEngineData.h"

#include "scene/TextureReplacements.h"

#include <vlGraphics/Camera.h>
#include <vlGraphics/Compositor.h>
#include <vlGraphics/RenderContext.h>

namespace vlEditor {
namespace {

std::string cameraName(const std::string& surface) {
    return surface + "_CAMERA";
}

std::string compositorName(const std::string& surface) {
    return surface + "_COMPOSITOR";
}

} // namespace

vlCommon::Result<std::unique_ptr<EngineWindowEngineData>>
EngineWindowEngineData::create(std::shared_ptr<EngineSurfaceState> surface) {
    auto context = vlGraphics::RenderContextManager::getInstance()->createRenderContext(
            vlGraphics::RenderContextDescriptor(*surface));
    if (!context) return tl::unexpected(std::move(context.error()));
    return std::unique_ptr<EngineWindowEngineData>(
            new EngineWindowEngineData(std::move(surface), **context));
}

EngineWindowEngineData::EngineWindowEngineData(std::shared_ptr<EngineSurfaceState> surface,
                                               vlGraphics::RenderContext& context)
    : surface_(std::move(surface)), context_(context) {
    auto& cameras = *vlGraphics::CameraManager::getInstance();
    vlGraphics::Camera& camera = *cameras.createOrRetrieve(cameraName(getName()));
    camera.prepareForContext(context_);
    camera.setHidden(true);
    own_ = cameras.handleOf(&camera);
    updateCamera();

    auto& compositors = *vlGraphics::CompositorManager::getInstance();
    vlGraphics::Compositor& copy = *compositors.createOrRetrieve(compositorName(getName()));
    copy.setHidden(true);
}

EngineWindowEngineData::~EngineWindowEngineData() {
    // Another context may come to lie where this one was.
    if (TextureReplacements::hasInstance()) TextureReplacements::getInstance().forget(context_);
    vlGraphics::RenderContextManager::getInstance()->eraseFor(*surface_);
    vlGraphics::CameraManager::getInstance()->erase(cameraName(getName()));
    vlGraphics::CompositorManager::getInstance()->erase(compositorName(getName()));
}

std::string EngineWindowEngineData::getBaseName() const {
    constexpr std::string_view ending = "_ENGINE";
    const std::string& name = getName();
    return name.ends_with(ending) ? name.substr(0, name.size() - ending.size()) : name;
}

vlGraphics::Camera* EngineWindowEngineData::getCamera() const {
    return vlGraphics::CameraManager::getInstance()->get(cameraName(getName()));
}

void EngineWindowEngineData::follow(vlMemory::StringView camera) {
    followed_ = vlGraphics::CameraManager::getInstance()->handleOf(camera);
    updateCamera();
}

void EngineWindowEngineData::updateCamera() {
    const bool follows = vlGraphics::CameraManager::getInstance()->resolve(followed_) != nullptr;
    const auto wanted = follows ? followed_ : own_;
    if (wanted == used_) return;
    used_ = wanted;
    context_.setRenderCamera(wanted);
    context_.setCullingCamera(wanted);
    context_.setLodCamera(wanted);
}

vlGraphics::Compositor* EngineWindowEngineData::getSource() const {
    return vlGraphics::CompositorManager::getInstance()->resolve(source_);
}

bool EngineWindowEngineData::showThrough(vlMemory::StringView compositor) {
    auto& compositors = *vlGraphics::CompositorManager::getInstance();
    const vlGraphics::Compositor* wanted = compositors.get(compositor);
    if (wanted == nullptr) return false;
    if (wanted == getSource() && wanted->getRevision() == sourceRevision_) return false;
    vlGraphics::Compositor& copy = *compositors.createOrRetrieve(compositorName(getName()));
    copy.copyStructure(*wanted);
    source_ = compositors.handleOf(wanted);
    sourceRevision_ = wanted->getRevision();
    context_.setCompositor(compositors.handleOf(&copy));
    return true;
}

vlCommon::Result<> EngineWindowEngineData::resizeToSurface() {
    const auto size = surface_->getSize();
    if (size.width == context_.getWidth() && size.height == context_.getHeight()) return {};
    context_.resize(0, 0);
    if (auto applied = context_.apply(); !applied) return applied;
    if (vlGraphics::Camera* camera = getCamera()) camera->prepareForContext(context_);
    return {};
}

} // namespace vlEditor
