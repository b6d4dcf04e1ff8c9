#include "interfaces/RenameDialog.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/Window.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

constexpr std::string_view dialogName = "EDITOR_RENAME_DIALOG";
constexpr std::uint32_t escapeKey = 27;
constexpr std::uint32_t enterKey = 13;

vlWinUi::Window& createDialog(vlWinUi::EditBox& edit, vlWinUi::Button& accept) {
    auto& dialog = *ComponentManager::createOrRetrieve<vlWinUi::Window>(dialogName);
    dialog.setText("Rename");
    dialog.setRectangle({0, 0, 320, 44});
    vlWinUi::GridLayout layout(2, 1);
    layout.setInternalBorders(4, 8);
    layout.setFixedSizeColumn(1, 72);
    layout.addComponent(edit, 0, 0);
    layout.addComponent(accept, 1, 0);
    dialog.setLayout(std::move(layout));
    return dialog;
}

} // namespace

void RenameDialog::open(vlMemory::StringView name,
                        const vlWinUi::Component& anchor,
                        std::function<void(const std::string&)> accepted) {
    const std::string base(dialogName);
    auto& edit = *ComponentManager::createOrRetrieve<vlWinUi::EditBox>(base + "_EDIT");
    auto& button = *ComponentManager::createOrRetrieve<vlWinUi::Button>(base + "_OK");
    auto* dialog = ComponentManager::get<vlWinUi::Window>(dialogName);
    if (dialog == nullptr) dialog = &createDialog(edit, button);

    const auto accept = [dialog, &edit, accepted = std::move(accepted)] {
        const std::string entered = edit.getText();
        dialog->setVisible(false);
        if (!entered.empty()) accepted(entered);
    };
    edit.setText(name);
    edit.selectAll();
    edit.setAccessibleName("New name");
    edit.setKeyDownCallback([dialog, accept](std::uint32_t key) {
        if (key == escapeKey) dialog->setVisible(false);
        if (key == enterKey) accept();
    });
    button.setText("Rename");
    button.setToolTip("Takes the name entered (Enter)");
    button.setButtonClickCallback(accept);
    for (vlWinUi::Component* at = anchor.getParent(); at != nullptr; at = at->getParent()) {
        auto* window = ComponentManager::get<vlWinUi::Window>(at->getComponentName());
        if (window != nullptr && at->getParent() == nullptr) dialog->setOwnerWindow(*window);
    }
    dialog->load();
    dialog->setVisible(true);
    edit.focusWindow();
}

} // namespace vlEditor
