#pragma once
#include <string_view>

namespace vlWinUi {

enum class ComponentType {
    Window,
    GroupBox,
    Static,
    Button,
    EditBox,
    MultiLineEdit,
    CodeEdit,
    CheckBox,
    ComboBox,
    ListBox,
    TreeView,
    Slider,
    TabWindow,
    ToolBar,
    ContextMenu,
    Surface,
    FileExplorer,
    ProgressBar,
    Picture,
};

/// The type's word in layout texts and log lines ("GROUP_BOX").
std::string_view nameOf(ComponentType type);

} // namespace vlWinUi
