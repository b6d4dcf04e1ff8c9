#pragma once
#include "interfaces/Interface.h"
#include "interfaces/PickList.h"
#include "viewport/EngineWindowUiDataTracker.h"

namespace vlEditor {

/** A viewport among the editor windows: the live picture of the scene and what belongs to it. Made
 *  by EngineWindowInterfaceCreator. Its end asks the graphics thread to let go of the surface,
 * whose native window lives until that has happened. UI thread only. */
class EngineWindowInterface final : public Interface,
                                    public PickListListener,
                                    public EngineWindowUiListener {
public:
    explicit EngineWindowInterface(const vlWinUi::Component& root);
    ~EngineWindowInterface() override;

    std::string title() const override { return "Engine"; }
    std::string getSurfaceName() const { return getRootName() + "_ENGINE"; }

    /// The compositors to choose from are others.
    void entriesChanged() override;
    void windowFinalized(const std::string& surface) override;

private:
    void setWidgetsEnabled(bool enabled, vlMemory::StringView reason = {});
};

} // namespace vlEditor
