#include "ComponentFactory.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/FileExplorer.h>
#include <vlWinUi/GroupBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/MultiLineEdit.h>
#include <vlWinUi/Picture.h>
#include <vlWinUi/ProgressBar.h>
#include <vlWinUi/Slider.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/TreeView.h>
#include <vlWinUi/Window.h>

#include <algorithm>
#include <cassert>

namespace vlWinUi {

const ComponentFactory::Entry& ComponentFactory::find(ComponentType type) {
    static constexpr Entry ENTRIES[] = {
            entry<Window>("WINDOW"),
            entry<GroupBox>("GROUP_BOX"),
            entry<Static>("STATIC"),
            entry<Button>("BUTTON"),
            entry<EditBox>("EDIT_BOX"),
            entry<MultiLineEdit>("MULTI_LINE_EDIT"),
            entry<CodeEdit>("CODE_EDIT"),
            entry<CheckBox>("CHECK_BOX"),
            entry<ComboBox>("COMBO_BOX"),
            entry<ListBox>("LIST_BOX"),
            entry<TreeView>("TREE_VIEW"),
            entry<Slider>("SLIDER"),
            entry<TabWindow>("TAB_WIN"),
            entry<ToolBar>("TOOL_BAR"),
            entry<ContextMenu>("CONTEXT_MENU"),
            entry<Surface>("SURFACE"),
            entry<FileExplorer>("FILE_EXPLORER"),
            entry<ProgressBar>("PROGRESS_BAR"),
            entry<Picture>("PICTURE"),
    };
    const auto* found = std::ranges::find(ENTRIES, type, &Entry::type);
    assert(found != std::end(ENTRIES));
    return *found;
}

std::unique_ptr<Component> ComponentFactory::make(ComponentType type, std::string name) {
    return find(type).make(std::move(name));
}

std::string_view nameOf(ComponentType type) {
    return ComponentFactory::find(type).word;
}

} // namespace vlWinUi
