#include "viewport/EngineWindowEngineDataTracker.h"

#include "core/EngineHandler.h"
#include "viewport/DefaultView.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/Camera.h>
#include <vlGraphics/RenderContext.h>

namespace vlEditor {

void EngineWindowEngineDataTracker::insert(std::unique_ptr<EngineWindowEngineData> data) {
    vlCommon::assertGraphicsThread();
    aim(*data);
    std::string name = data->getName();
    windows_[std::move(name)] = std::move(data);
}

EngineWindowEngineData* EngineWindowEngineDataTracker::find(vlMemory::StringView surface) const {
    vlCommon::assertGraphicsThread();
    const auto found = windows_.find(surface);
    return found == windows_.end() ? nullptr : found->second.get();
}

bool EngineWindowEngineDataTracker::erase(vlMemory::StringView surface) {
    vlCommon::assertGraphicsThread();
    const auto found = windows_.find(surface);
    if (found == windows_.end()) return false;
    windows_.erase(found);
    return true;
}

void EngineWindowEngineDataTracker::lookThrough(vlMemory::StringView camera) {
    viewCamera_ = camera;
    for (const auto& [name, data] : windows_)
        aim(*data);
}

EngineWindowEngineData* EngineWindowEngineDataTracker::findFocused() const {
    vlCommon::assertGraphicsThread();
    EngineWindowEngineData* newest = nullptr;
    // The handler knows in which order they came.
    for (const auto& window : EngineHandler::getInstance().getWindows()) {
        const auto& surface = static_cast<const EngineSurfaceState&>(*window.window);
        EngineWindowEngineData* data = find(surface.getName());
        const bool isNewer =
                newest == nullptr || surface.getFocusOrder() > newest->getSurface().getFocusOrder();
        if (data != nullptr && isNewer) newest = data;
    }
    return newest;
}

vlGraphics::Camera* EngineWindowEngineDataTracker::getCamera() {
    EngineWindowEngineData* data = findFocused();
    if (data == nullptr) return nullptr;
    data->updateCamera();
    return data->getContext().getRenderCamera();
}

vlCommon::Result<> EngineWindowEngineDataTracker::follow(vlMemory::StringView camera) {
    EngineWindowEngineData* data = findFocused();
    if (data == nullptr) return vlCommon::fail("No viewport is open.");
    const auto* wanted = vlGraphics::CameraManager::getInstance()->get(camera);
    if (!camera.empty() && (wanted == nullptr || wanted->isHidden()))
        return vlCommon::fail("There is no camera '" + std::string(camera) + "' to look through.");
    data->follow(camera);
    return {};
}

void EngineWindowEngineDataTracker::aim(EngineWindowEngineData& data) const {
    vlGraphics::Camera* camera = data.getCamera();
    if (camera == nullptr) return;
    const auto* source = vlGraphics::CameraManager::getInstance()->get(viewCamera_);
    if (source != nullptr)
        camera->setSettings(source->getSettings());
    else
        DefaultView::apply(*camera);
}

} // namespace vlEditor
