#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/Window.h>

#include <optional>

namespace vlWinUi {

/** Pages behind tabs; one is in view. A page is a Window that the tab window makes (its name, then
 *  "_TAB_" and a number that is never used again). UI thread only. */
class TabWindow final : public Component {
public:
    static constexpr ComponentType TYPE = ComponentType::TabWindow;

    /// The label of the selected tab; setting it renames that tab.
    void setText(vlMemory::StringView text) override;
    std::string getText() const override;

    /// The first tab is selected at once, without a callback.
    Window* addTab(vlMemory::StringView label);
    /// Before the tab of that index, or last when there is none.
    Window* insertTab(std::size_t index, vlMemory::StringView label);
    /// The page and all in it is erased; see ComponentManager::erase() for surfaces.
    void removeTab(std::size_t index);
    /// The page leaves the view, hidden, and lives on until it is erased by its name.
    Window* detachTab(std::size_t index);
    void renameTab(std::size_t index, vlMemory::StringView label);
    void setTabToolTip(std::size_t index, vlMemory::StringView text);

    std::size_t getTabCount() const;
    std::string getTabLabel(std::size_t index) const;
    Window* getPage(std::size_t index) const;
    std::optional<std::size_t> indexOf(const Window& page) const;
    std::optional<std::size_t> indexOf(vlMemory::StringView label) const;

    /// Without a callback.
    void select(std::size_t index);
    std::optional<std::size_t> getSelected() const;

    /// Asked before a person's switch takes place, with the two tabs' indices; false refuses it. It
    /// may add, select and remove tabs itself.
    void setTabSwitchCallback(std::function<bool(std::size_t from, std::size_t to)> callback);
    /// Any button, on a tab; nothing when beside the tabs.
    void setTabClickCallback(
            std::function<void(std::optional<std::size_t> index, const ClickEvent&)> callback);

private:
    friend class ComponentFactory;
    explicit TabWindow(std::string name);
};

} // namespace vlWinUi
