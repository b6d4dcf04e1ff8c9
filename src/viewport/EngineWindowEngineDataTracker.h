#pragma once
#include "interfaces/ViewedCamera.h"
#include "viewport/EngineWindowEngineData.h"

#include <vlCommon/SingletonClass.h>

#include <map>
#include <memory>
#include <string>

namespace vlEditor {

/** The engine's sides of all viewports by surface name. Graphics thread only; made and ended by the
 *  UI thread while it owns the engine. */
class EngineWindowEngineDataTracker final
    : public vlCommon::SingletonClass<EngineWindowEngineDataTracker>,
      public ViewedCamera {
public:
    using Windows = std::map<std::string, std::unique_ptr<EngineWindowEngineData>, std::less<>>;

    /// Its camera takes the view of all.
    void insert(std::unique_ptr<EngineWindowEngineData> data);
    /// Null when there is none.
    EngineWindowEngineData* find(vlMemory::StringView surface) const;
    bool erase(vlMemory::StringView surface);
    const Windows& all() const { return windows_; }

    /// The view that cameras of viewports start with: that of the named camera, or above and behind
    /// the origin while no camera bears the name. Those of open viewports take it at once.
    void lookThrough(vlMemory::StringView camera);

    /// The one that had the input focus last; the first where none ever had, null where there is
    /// none.
    EngineWindowEngineData* findFocused() const;
    vlGraphics::Camera* getCamera() override;
    vlCommon::Result<> follow(vlMemory::StringView camera) override;

private:
    void aim(EngineWindowEngineData& data) const;

    Windows windows_;
    std::string viewCamera_;
};

} // namespace vlEditor
