#include "interfaces/ResizeContainerDialog.h"

#include "interfaces/DialogOwner.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/EditBox.h>

#include <cstdlib>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;
using Manipulator = InterfaceContainerManipulator;

constexpr std::string_view dialogName = "EDITOR_RESIZE_CONTAINER";
constexpr std::string_view editName = "EDITOR_RESIZE_CONTAINER_EDIT";
constexpr std::uint32_t enterKey = 13;
constexpr std::uint32_t escapeKey = 27;

vlWinUi::Window& createDialog(const vlWinUi::EditBox& edit) {
    auto& dialog = *ComponentManager::createOrRetrieve<vlWinUi::Window>(dialogName);
    dialog.setRectangle({0, 0, 250, 36});
    vlWinUi::GridLayout layout(1, 1);
    layout.setInternalBorders(6, 6);
    layout.addComponent(edit, 0, 0);
    dialog.setLayout(std::move(layout));
    return dialog;
}

} // namespace

long ResizeContainerDialog::pixelsFrom(vlMemory::StringView text) {
    return std::strtol(std::string(text).c_str(), nullptr, 10);
}

void ResizeContainerDialog::open(vlWinUi::Window& container, bool width) {
    auto& edit = *ComponentManager::createOrRetrieve<vlWinUi::EditBox>(editName);
    auto* dialog = ComponentManager::get<vlWinUi::Window>(dialogName);
    if (dialog == nullptr) dialog = &createDialog(edit);
    dialog->setText(width ? "Fixed width in pixels" : "Fixed height in pixels");
    edit.setAccessibleName(width ? "Width in pixels" : "Height in pixels");
    edit.setToolTip("Enter takes the number, Escape leaves the size as it is");
    edit.setText(std::to_string(width ? Manipulator::getColumnWidth(container)
                                      : Manipulator::getRowHeight(container)));
    edit.selectAll();
    edit.setKeyDownCallback(
            [dialog, &edit, width, name = container.getComponentName()](std::uint32_t key) {
                if (key != enterKey && key != escapeKey) return;
                dialog->setVisible(false);
                auto* resized = ComponentManager::get<vlWinUi::Window>(name);
                if (key == escapeKey || resized == nullptr) return;
                const long pixels = pixelsFrom(edit.getText());
                width ? Manipulator::setFixedWidth(*resized, pixels)
                      : Manipulator::setFixedHeight(*resized, pixels);
            });
    DialogOwner::set(*dialog, container);
    dialog->setVisible(true);
    edit.focusWindow();
}

} // namespace vlEditor
