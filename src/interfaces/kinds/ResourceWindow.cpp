#include "interfaces/kinds/ResourceWindow.h"

#include "core/EditorLogger.h"
#include "interfaces/history/History.h"
#include "interfaces/kinds/CreationWindow.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/Clipboard.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/Notificator.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlWinUi::Button;
using vlWinUi::ComponentManager;
using vlWinUi::EditBox;
using vlWinUi::ListBox;

constexpr unsigned filterHeight = 29;
constexpr std::uint32_t enterKey = 13;
constexpr std::uint32_t escapeKey = 27;
constexpr std::uint32_t deleteKey = 46;
constexpr std::uint32_t f2Key = 113;
constexpr std::size_t mostNamed = 10;
constexpr const char* changedReason = "Changed since it was last saved to a file";

template <class Widget> Widget& widget(const std::string& name) {
    return *ComponentManager::createOrRetrieve<Widget>(name);
}

ListBox& listOf(const std::string& base) {
    return widget<ListBox>(base + "_LIST");
}

std::vector<std::string> selectedIn(const std::string& base) {
    const ListBox& list = listOf(base);
    std::vector<std::string> names;
    for (const std::size_t index : list.getSelectedIndices())
        names.push_back(list.getEntry(index).label);
    return names;
}

/// The one that is meant where only one can be. An entry that the filter hides stays selected for
/// when it shows again, but nobody means it.
const vlWinUi::ListEntry* selectedEntry(const std::string& base) {
    const ListBox& list = listOf(base);
    const auto index = list.getSelectedIndex();
    if (index && list.isSelected(*index)) return &list.getEntry(*index);
    const std::vector<std::size_t> shown = list.getSelectedIndices();
    return shown.empty() ? nullptr : &list.getEntry(shown.front());
}

/// Several names stand where one would, as far as a person reads them.
std::string enumerate(const std::vector<std::string>& names, std::string_view between) {
    std::string text = names.front();
    for (std::size_t i = 1; i < names.size() && i < mostNamed; ++i)
        text.append(between).append(names[i]);
    if (names.size() > mostNamed)
        text.append(between).append(std::to_string(names.size() - mostNamed) + " more");
    return text;
}

/// In the folder of the other file; no name leads out of it.
std::string ownFile(const KindTexts& texts, const std::string& other, std::string name) {
    std::ranges::replace(name, '/', '_');
    const std::size_t folderEnd = other.find_last_of('/');
    const std::string folder =
            folderEnd == std::string::npos ? std::string() : other.substr(0, folderEnd + 1);
    return folder + name + "." + std::string(texts.extension);
}

std::string askAboutDeleting(const KindTexts& texts, const std::vector<std::string>& names) {
    const bool isQuoted = texts.deleteEnd.starts_with('\'');
    return deleteQuestion(texts, enumerate(names, isQuoted ? "', '" : ", "));
}

} // namespace

ResourceWindow::ResourceWindow(const ResourceCommands& commands,
                               std::string base,
                               std::function<void()> refresh)
    : commands_(commands), base_(std::move(base)), refresh_(std::move(refresh)) {
}

void ResourceWindow::bindCallbacks() {
    const std::string& base = base_;
    const ResourceCommands& commands = commands_;
    const KindTexts& texts = commands.texts();
    bindList();
    bindMenu();
    createFilter();
    const auto bind = [&](std::string_view suffix, auto act) {
        widget<Button>(base + std::string(suffix)).setButtonClickCallback([&commands, base, act] {
            act(commands, base);
        });
    };
    bind("_ADD", onAddButton);
    bind("_DEL", onDelButton);
    bind(texts.renameButton, onNameButton);
    bind(texts.saveButton, onSaveButton);
    widget<EditBox>(base + "_NAME_EDIT").setKeyDownCallback([&commands, base](std::uint32_t key) {
        if (key == enterKey) onNameButton(commands, base);
    });
    if (auto* root = ComponentManager::get<vlWinUi::Window>(base))
        root->setKeyCallback([this](const vlWinUi::KeyEvent& key) { handleWindowKey(key); });
}

void ResourceWindow::setEntries(std::vector<vlWinUi::ListEntry> entries) {
    list().setEntries(std::move(entries));
}

void ResourceWindow::addEntry(const std::string& name, std::any record) {
    list().addEntry(name, std::move(record));
    if (!CreationWindow::takeAwaited(base_, name)) return;
    list().selectByLabel(name);
    // Who has asked for it wants to see it.
    if (!isSelected(name)) clearFilter();
    refresh_();
}

void ResourceWindow::eraseEntry(const std::string& name) {
    list().removeEntry(name);
}

void ResourceWindow::renameEntry(const std::string& oldName, const std::string& newName) {
    if (oldName == newName) return;
    const bool wasNewSelected = isSelected(newName);
    list().removeEntry(newName);
    list().renameEntry(oldName, newName);
    // The name that was looked at stays the one that is looked at.
    if (wasNewSelected && list().getSelectedLineCount() == 0) list().selectByLabel(newName);
}

void ResourceWindow::clearEntries() {
    list().clear();
}

void ResourceWindow::setChanged(const std::string& name, bool isChanged) {
    list().setEntryMark(name, isChanged, changedReason);
}

void ResourceWindow::setFault(const std::string& name, const std::string& fault) {
    const auto emphasis = fault.empty() ? vlWinUi::Emphasis::None : vlWinUi::Emphasis::Error;
    list().setEntryEmphasis(name, emphasis, fault);
}

std::vector<std::string> ResourceWindow::getSelectedNames() const {
    return selectedIn(base_);
}

bool ResourceWindow::isSelected(const std::string& name) const {
    const auto index = list().find(name);
    return index && list().isSelected(*index);
}

bool ResourceWindow::areSeveralSelected() const {
    return list().getSelectedLineCount() > 1;
}

void ResourceWindow::showName() {
    const vlWinUi::ListEntry* selected = selectedEntry(base_);
    widget<EditBox>(base_ + "_NAME_EDIT").setText(selected == nullptr ? "" : selected->label);
}

void ResourceWindow::onAddButton(const ResourceCommands& commands, const std::string& base) {
    CreationWindow::show(commands.texts(), widget<Button>(base + "_ADD"), base);
}

void ResourceWindow::onDelButton(const ResourceCommands& commands, const std::string& base) {
    const std::vector<std::string> names = selectedIn(base);
    if (names.empty()) return;
    const std::string question = askAboutDeleting(commands.texts(), names);
    commands.findUsers(names, question);
    vlWinUi::Notificator::confirm(question, widget<Button>(base + "_DEL"), [&commands, names] {
        const History::Scope gesture;
        for (const std::string& name : names)
            commands.erase(name);
    });
}

void ResourceWindow::onNameButton(const ResourceCommands& commands, const std::string& base) {
    const vlWinUi::ListEntry* selected = selectedEntry(base);
    if (selected == nullptr) return;
    commands.rename(selected->label, widget<EditBox>(base + "_NAME_EDIT").getText());
}

void ResourceWindow::onSaveButton(const ResourceCommands& commands, const std::string& base) {
    const vlWinUi::ListEntry* selected = selectedEntry(base);
    if (selected == nullptr || !commands.hasFiles()) return;
    std::string path = CreationWindow::explorer(commands.texts()).getCurrentSelection();
    if (path.empty()) {
        onSaveAs(commands, base);
        return;
    }
    if (commands.texts().savesUnderOwnName) path = ownFile(commands.texts(), path, selected->label);
    commands.save(selected->label, path);
}

void ResourceWindow::onSaveAs(const ResourceCommands& commands, const std::string& base) {
    const vlWinUi::ListEntry* selected = selectedEntry(base);
    if (selected == nullptr || !commands.hasFiles()) return;
    const std::string name = selected->label;
    CreationWindow::askForFile(commands.texts(), name, [&commands, name](const std::string& path) {
        if (path.empty()) return;
        if (commands.isKnown(name)) {
            commands.save(name, path);
            return;
        }
        // It has gone while the file was being chosen; saving would make it anew.
        const std::string line = couldNotSaveLine(commands.texts(), name, path);
        EditorLogger::getInstance().log(line, "Editor");
    });
}

vlWinUi::ListBox& ResourceWindow::list() const {
    return listOf(base_);
}

void ResourceWindow::bindList() {
    ListBox& entries = list();
    entries.setMultiSelection(true);
    entries.setAccessibleName(commands_.texts().title);
    entries.setPlaceHolder("Nothing here yet: \"+\" creates or loads");
    entries.setSelectionCallback([this](std::optional<std::size_t>) { refresh_(); });
    entries.setActivationCallback([this](std::size_t) { startRename(); });
    entries.setKeyFilter([this](const vlWinUi::KeyEvent& key) { return handleListKey(key); });
}

void ResourceWindow::bindMenu() {
    auto& menu = widget<vlWinUi::ContextMenu>(base_ + "_MENU");
    menu.setText(commands_.texts().title);
    std::vector<vlWinUi::MenuItem*> items;
    const auto add = [&](std::string_view label, std::string_view keys, std::function<void()> act) {
        vlWinUi::MenuItem& item = menu.addItem(label, std::move(act));
        item.setShortcut(keys);
        items.push_back(&item);
    };
    add("Duplicate", "Ctrl+D", [this] { duplicate(); });
    add("Copy Settings", "Ctrl+C", [this] { copy(); });
    add("Paste Settings", "Ctrl+V", [this] { paste(); });
    menu.getMenu().addSeparator();
    add("Rename", "F2", [this] { startRename(); });
    if (commands_.hasFiles()) {
        add("Save", "Ctrl+S", [this] { onSaveButton(commands_, base_); });
        add("Save As...", "Ctrl+Shift+S", [this] { onSaveAs(commands_, base_); });
    }
    add("Delete", "Del", [this] { onDelButton(commands_, base_); });
    menu.getMenu().setOpenCallback([this, items] {
        const bool isAny = selectedEntry(base_) != nullptr;
        for (vlWinUi::MenuItem* item : items)
            item->setEnabled(isAny, "Nothing is selected.");
    });
    list().setMenuCallback([&menu](vlWinUi::Point screen) { menu.open(screen); });
}

void ResourceWindow::clearFilter() {
    widget<EditBox>(base_ + "_FILTER").setText("");
    list().setFilter("");
}

void ResourceWindow::createFilter() {
    auto& filter = widget<EditBox>(base_ + "_FILTER");
    filter.setPlaceHolder("Filter");
    filter.setAccessibleName("Filter of the list");
    filter.setToolTip("Shows only the names that contain this text (Ctrl+F; Escape shows all)");
    const auto apply = [this, &filter] {
        list().setFilter(filter.getText());
        refresh_();
    };
    filter.setChangeCallback(apply);
    filter.setKeyDownCallback([this](std::uint32_t key) {
        if (key != escapeKey) return;
        clearFilter();
        refresh_();
    });
    list().setHeader(filter, filterHeight);
}

bool ResourceWindow::handleListKey(const vlWinUi::KeyEvent& key) {
    if (!key.pressed || key.alt) return false;
    if (!key.control) {
        if (key.virtualKey == deleteKey) onDelButton(commands_, base_);
        if (key.virtualKey == f2Key) startRename();
        return key.virtualKey == deleteKey || key.virtualKey == f2Key;
    }
    switch (key.virtualKey) {
    case 'D':
        duplicate();
        return true;
    case 'C':
        copy();
        return true;
    case 'V':
        paste();
        return true;
    default:
        return false;
    }
}

void ResourceWindow::handleWindowKey(const vlWinUi::KeyEvent& key) {
    if (!key.pressed || key.alt) return;
    if (key.virtualKey == f2Key) startRename();
    if (!key.control) return;
    if (key.virtualKey == 'S')
        key.shift ? onSaveAs(commands_, base_) : onSaveButton(commands_, base_);
    if (key.virtualKey == 'F') widget<EditBox>(base_ + "_FILTER").focusWindow();
}

void ResourceWindow::startRename() {
    if (selectedEntry(base_) == nullptr) return;
    auto& edit = widget<EditBox>(base_ + "_NAME_EDIT");
    edit.focusWindow();
    edit.selectAll();
}

void ResourceWindow::duplicate() {
    const History::Scope gesture;
    for (const std::string& name : getSelectedNames())
        commands_.duplicate(name);
}

void ResourceWindow::copy() {
    const vlWinUi::ListEntry* selected = selectedEntry(base_);
    if (selected != nullptr) commands_.copy(selected->label);
}

void ResourceWindow::paste() {
    const std::string text = vlWinUi::Clipboard::getText();
    const History::Scope gesture;
    for (const std::string& name : getSelectedNames())
        commands_.paste(name, text);
}

} // namespace vlEditor
