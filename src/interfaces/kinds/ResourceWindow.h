#pragma once
#include "interfaces/kinds/ResourceCommands.h"

#include <vlWinUi/ListBox.h>
#include <vlWinUi/Window.h>

#include <functional>
#include <string>
#include <vector>

namespace vlEditor {

/** What the windows of all kinds have in common: the list of resources with its filter, menu and
 *  keys, the name box, and the buttons around them. Their components exist. Part of the window's
 *  interface. UI thread only. */
class ResourceWindow {
public:
    /// `refresh` shows what is selected; it is called when that changes.
    ResourceWindow(const ResourceCommands& commands,
                   std::string base,
                   std::function<void()> refresh);
    ResourceWindow(const ResourceWindow&) = delete;
    ResourceWindow& operator=(const ResourceWindow&) = delete;

    /// Makes what a layout text does not say, and attaches the handlers.
    void bindCallbacks();

    void setEntries(std::vector<vlWinUi::ListEntry> entries);
    /// A resource that a person has just asked for in this window is selected.
    void addEntry(const std::string& name, std::any record);
    void eraseEntry(const std::string& name);
    /// Another entry that bears the new name goes; if it alone was selected, this one is then.
    void renameEntry(const std::string& oldName, const std::string& newName);
    void clearEntries();
    /// Marks a resource that no file holds as it is now.
    void setChanged(const std::string& name, bool isChanged);
    /// Has a resource stand out that something is wrong with; empty: nothing is.
    void setFault(const std::string& name, const std::string& fault);

    std::vector<std::string> getSelectedNames() const;
    bool isSelected(const std::string& name) const;
    bool areSeveralSelected() const;
    /// Shows the name of the selected resource in the name box.
    void showName();

    // What the buttons of the window named so do.
    static void onAddButton(const ResourceCommands& commands, const std::string& base);
    static void onDelButton(const ResourceCommands& commands, const std::string& base);
    static void onNameButton(const ResourceCommands& commands, const std::string& base);
    static void onSaveButton(const ResourceCommands& commands, const std::string& base);

private:
    static void onSaveAs(const ResourceCommands& commands, const std::string& base);
    vlWinUi::ListBox& list() const;
    void bindList();
    void bindMenu();
    void createFilter();
    void clearFilter();
    bool handleListKey(const vlWinUi::KeyEvent& key);
    void handleWindowKey(const vlWinUi::KeyEvent& key);
    void startRename();
    void duplicate();
    void copy();
    void paste();

    const ResourceCommands& commands_;
    std::string base_;
    std::function<void()> refresh_;
};

} // namespace vlEditor
