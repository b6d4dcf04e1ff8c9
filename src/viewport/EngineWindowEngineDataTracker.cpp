#include "viewport/EngineWindowEngineDataTracker.h"

#include "viewport/DefaultView.h"

#include <vlCommon/ThreadBorder.h>
#include <vlGraphics/Camera.h>

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
