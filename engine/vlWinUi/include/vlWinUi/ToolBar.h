#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/Menu.h>

namespace vlWinUi {

/** A bar of menus and plain items. UI thread only. */
class ToolBar final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::ToolBar;

    /// A tool bar has no text of its own: what is set is what screen readers call it.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    /// Fold-out lines; `width`: pixels at least, 0 for what the labels need. Lives as long as the
    /// bar.
    Menu& addMenu(vlMemory::StringView label, unsigned width = 0);
    /// Chosen by a single click on the bar itself.
    MenuItem& addItem(vlMemory::StringView label, std::function<void()> callback);
    /// Null when no menu has that label.
    Menu* findMenu(vlMemory::StringView label);

private:
    friend class ComponentFactory;
    explicit ToolBar(std::string name);
};

} // namespace vlWinUi
