#include "viewport/EngineWindowInterfaceCreator.h"

#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "viewport/EngineSurfaceTable.h"
#include "viewport/EngineWindowChangeCompositorMessage.h"
#include "viewport/EngineWindowChangeUpdateMessage.h"
#include "viewport/EngineWindowDetachMessage.h"
#include "viewport/EngineWindowInterface.h"
#include "viewport/EngineWindowResizeMessage.h"
#include "viewport/EngineWindowTakeScreenMessage.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/Window.h>

#include <chrono>
#include <thread>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr float barHeight = 27;
constexpr std::chrono::milliseconds longestDetach{500};

// The native window goes when this returns, so the graphics thread must have let go of it.
void letGoOf(EngineSurfaceState& state) {
    state.setExposed(false);
    if (!EngineHandler::hasInstance() || !EngineHandler::getInstance().isRunning()) return;
    postToGraphics(EngineWindowDetachMessage(state.getName()));
    const auto deadline = std::chrono::steady_clock::now() + longestDetach;
    while (!state.isDetached() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

vlWinUi::Surface& createSurface(const std::string& name) {
    auto& surface = *ComponentManager::createOrRetrieve<vlWinUi::Surface>(name);
    surface.setText("Picture of the scene");
    const auto state = EngineSurfaceTable::getInstance().create(name);
    state->setNativeHandle(surface.nativeHandle());
    state->setSize(surface.getWidth(), surface.getHeight());
    surface.setResizeCallback([state](unsigned width, unsigned height) {
        state->setSize(width, height);
        EngineWindowResizeMessage::post(state->getName());
    });
    surface.setExposeCallback([state](bool exposed) { state->setExposed(exposed); });
    surface.setFocusCallback([state](bool focused) {
        if (focused) state->setFocused();
    });
    surface.setLossCallback([state] { letGoOf(*state); });
    return surface;
}

vlWinUi::CheckBox& createUpdateBox(const std::string& base, const std::string& surface) {
    auto& box = *ComponentManager::createOrRetrieve<vlWinUi::CheckBox>(base + "_UPDATE");
    box.setText("Continuously render");
    box.setToolTip("Draws this view all the time, not only when something has changed");
    box.setCheckCallback([surface](bool checked) {
        postToGraphics(EngineWindowChangeUpdateMessage(surface, checked));
    });
    return box;
}

vlWinUi::Button& createScreenButton(const std::string& base, const std::string& surface) {
    auto& button = *ComponentManager::createOrRetrieve<vlWinUi::Button>(base + "_SCREEN");
    button.setText("Take screen");
    button.setToolTip("Saves the picture of this view as a JPEG file");
    button.setButtonClickCallback(
            [surface] { postToGraphics(EngineWindowTakeScreenMessage(surface)); });
    return button;
}

vlWinUi::ComboBox& createCompositorBox(const std::string& base, const std::string& surface) {
    auto& combo = *ComponentManager::createOrRetrieve<vlWinUi::ComboBox>(base + "_COMPOSITOR");
    combo.setAccessibleName("Compositor");
    combo.setToolTip("The compositor that this view is seen through");
    combo.setSelectionCallback([&combo, base, surface](std::size_t index) {
        postToGraphics(
                EngineWindowChangeCompositorMessage(surface, combo.getEntry(index).label, base));
    });
    return combo;
}

} // namespace

std::unique_ptr<Interface> EngineWindowInterfaceCreator::create() {
    static unsigned number = 0;
    const std::string base = "ENGINE_WINDOW_" + std::to_string(number++);
    const std::string surface = base + "_ENGINE";
    auto& root = *ComponentManager::createOrRetrieve<vlWinUi::Window>(base);
    vlWinUi::GridLayout layout(3, 2);
    layout.setFixedSizeRow(1, barHeight);
    layout.ignoreInternalBorder(0, 0);
    layout.addComponent(createSurface(surface), 0, 0, 3, 1);
    layout.addComponent(createUpdateBox(base, surface), 0, 1);
    layout.addComponent(createScreenButton(base, surface), 1, 1);
    layout.addComponent(createCompositorBox(base, surface), 2, 1);
    root.setLayout(std::move(layout));
    // A native window is not clipped by what scrolls it.
    root.setScrolling(false);
    return std::make_unique<EngineWindowInterface>(root);
}

} // namespace vlEditor
