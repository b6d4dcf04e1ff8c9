#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/Menu.h>

namespace vlWinUi {

/** A menu that opens where it is asked for. UI thread only. */
class ContextMenu final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::ContextMenu;

    /// A context menu has no text of its own: what is set is what screen readers call it.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    Menu& getMenu();
    MenuItem& addItem(vlMemory::StringView label, std::function<void()> callback);
    /// Returns at once; the menu closes by a choice or a click beside it.
    void open(Point screen);
    /// Likewise, with its lower left corner there, where the screen has room for it.
    void openAbove(Point screen);
    void close();

private:
    friend class ComponentFactory;
    explicit ContextMenu(std::string name);
};

} // namespace vlWinUi
