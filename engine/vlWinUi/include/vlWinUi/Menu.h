#pragma once
#include <vlMemory/String.h>
#include <vlWinUi/Geometry.h>
#include <vlWinUi/MenuItem.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace vlWinUi {

/** Lines to choose from, of a ToolBar or a ContextMenu, which owns it. UI thread only. */
class Menu {
public:
    struct State;

    explicit Menu(std::unique_ptr<State> state);
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;
    ~Menu();

    std::string getLabel() const;
    /// The item lives as long as the menu, or until clear().
    MenuItem& addItem(vlMemory::StringView label, std::function<void()> callback);
    /// `width`: pixels at least; 0 for what the labels need.
    Menu& addMenu(vlMemory::StringView label, unsigned width = 0);
    void addSeparator();
    void clear();
    std::size_t getItemCount() const;
    /// In the order of addItem(), separators and menus not counted.
    MenuItem& getItem(std::size_t index);
    /// Null when no item of this menu has that label.
    MenuItem* find(vlMemory::StringView label);
    /// Returns at once; the menu closes by a choice or a click beside it.
    void open(Point screen);
    bool isOpen() const;
    /// Before each opening: to enable, disable and rename items.
    void setOpenCallback(std::function<void()> callback);

private:
    std::unique_ptr<State> state_;
};

} // namespace vlWinUi
