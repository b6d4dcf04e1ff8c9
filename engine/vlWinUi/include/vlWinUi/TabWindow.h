#pragma once
#include <vlWinUi/Component.h>
#include <vlWinUi/ListEntry.h>
#include <vlWinUi/Window.h>

#include <optional>

namespace vlWinUi {

/** Pages behind tabs; one is in view. A page is a Window that the tab window makes (its name, then
 *  "_TAB_" and a number that is never used again). The person may move tabs by dragging, rename
 * them in place by a double click or F2 (the edit is the EditBox of the tab window's name, then
 * "_RENAME") and ask for their end by their cross or the middle button, unless the tabs are fixed
 * as those of a layout text. UI thread only. */
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
    /// Paints a dot beside the tab's label, in the colour of the emphasis.
    void setTabMark(std::size_t index, bool marked, Emphasis emphasis = Emphasis::None);
    bool isTabMarked(std::size_t index) const;
    /// Whether the person may move, rename and close tabs, or only choose among them. They may at
    /// first.
    void setArrangeable(bool arrangeable);
    /// Whether the pages take room, or the tabs alone are shown, for something beside them that
    /// they choose. They do at first.
    void setPagesShown(bool shown);
    /// The person can neither move, rename nor close it, has no other tab pass it, and the keyboard
    /// and the wheel step over it.
    void setTabFixed(std::size_t index);
    bool isTabFixed(std::size_t index) const;
    /// Before the tab that is at `to` now, or behind it when it comes from the left.
    void moveTab(std::size_t from, std::size_t to);
    /// Starts renaming in the tab itself: Enter and leaving accept, Escape refuses. Nothing for a
    /// fixed tab.
    void editTab(std::size_t index);
    bool isEditing() const;

    std::size_t getTabCount() const;
    std::string getTabLabel(std::size_t index) const;
    Window* getPage(std::size_t index) const;
    std::optional<std::size_t> indexOf(const Window& page) const;
    std::optional<std::size_t> indexOf(vlMemory::StringView label) const;

    /// Without a callback.
    void select(std::size_t index);
    std::optional<std::size_t> getSelected() const;
    /// To the next tab that is not fixed, from the last one to the first, as a person does.
    void cycle(bool forward);
    /// Where the tab itself is on the screen, for menus and automation.
    Rectangle getTabRectangle(std::size_t index) const;

    /// Asked before a person's switch takes place, with the two tabs' indices; false refuses it. It
    /// may add, select and remove tabs itself.
    void setTabSwitchCallback(std::function<bool(std::size_t from, std::size_t to)> callback);
    /// Any button, on a tab; nothing when beside the tabs.
    void setTabClickCallback(
            std::function<void(std::optional<std::size_t> index, const ClickEvent&)> callback);
    /// Asked before the person's new label is taken; false refuses it. An empty one is refused
    /// without asking.
    void
    setTabRenameCallback(std::function<bool(std::size_t index, const std::string& label)> callback);
    /// The cross or the middle button. The tab is still there; without a callback it stays.
    void setTabCloseCallback(std::function<void(std::size_t index)> callback);

private:
    friend class ComponentFactory;
    explicit TabWindow(std::string name);
};

} // namespace vlWinUi
