#include "interfaces/PickListDialog.h"

#include "core/EditorLogger.h"
#include "interfaces/DialogOwner.h"
#include "interfaces/PickLists.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>

#include <algorithm>
#include <memory>

namespace vlEditor {
namespace {

using vlWinUi::Button;
using vlWinUi::ComponentManager;
using vlWinUi::ListBox;
using vlWinUi::Window;

constexpr std::uint32_t backspaceKey = 8;
constexpr unsigned buttonHeight = 24;

ListBox& listBoxOf(const std::string& name) {
    return *ComponentManager::createOrRetrieve<ListBox>(name + "LISTBOX");
}

Button& okOf(const std::string& name) {
    return *ComponentManager::createOrRetrieve<Button>(name + "OK_BUTTON");
}

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Whatever the case of Latin letters; all others count as they are.
bool contains(const std::string& text, const std::string& part) {
    const auto same = [](char a, char b) { return lower(a) == lower(b); };
    return !std::ranges::search(text, part, same).empty() || part.empty();
}

/// Without the last character, which may have several bytes.
std::string shortened(std::string text) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U)
        text.pop_back();
    if (!text.empty()) text.pop_back();
    return text;
}

} // namespace

void PickListDialog::createAll() {
    for (const auto& list : PickLists::getInstance().all()) {
        if (ComponentManager::get(list->getName()) != nullptr) continue;
        auto* window = ComponentManager::createOrRetrieve<Window>(list->getName());
        window->setData(std::make_shared<PickListDialog>(*list));
    }
}

PickListDialog* PickListDialog::find(vlMemory::StringView name) {
    const auto* window = ComponentManager::get<Window>(name);
    if (window == nullptr) return nullptr;
    const auto* held = window->getDataAs<std::shared_ptr<PickListDialog>>();
    return held == nullptr ? nullptr : held->get();
}

bool PickListDialog::open(vlMemory::StringView name,
                          const vlWinUi::Component& anchor,
                          Chosen chosen,
                          vlMemory::StringView selected,
                          Offers offers) {
    PickListDialog* dialog = find(name);
    if (dialog == nullptr) {
        EditorLogger::getInstance().log("There is no list '" + std::string(name) + "'.", "Editor");
        return false;
    }
    dialog->chosen_ = std::move(chosen);
    dialog->offers_ = std::move(offers);
    dialog->show(anchor, selected);
    return true;
}

PickListDialog::PickListDialog(PickList& list) : name_(list.getName()), label_(list.getLabel()) {
    createWindow();
    list.addListener(*this);
    refresh();
}

PickListDialog::~PickListDialog() {
    if (!PickLists::hasInstance()) return;
    if (PickList* list = PickLists::getInstance().find(name_)) list->removeListener(*this);
}

void PickListDialog::createWindow() {
    auto& window = *ComponentManager::createOrRetrieve<Window>(name_);
    ListBox& entries = listBoxOf(name_);
    Button& ok = okOf(name_);
    auto& cancelButton = *ComponentManager::createOrRetrieve<Button>(name_ + "CANCEL_BUTTON");
    window.setText(label_);
    window.setRectangle({0, 0, 200, 400});
    entries.setAccessibleName(label_);
    entries.setToolTip("Type to narrow the list");
    entries.setSelectionCallback([this](std::optional<std::size_t>) { updateOk(); });
    entries.setActivationCallback([this](std::size_t) { accept(); });
    entries.setKeyFilter([this](const vlWinUi::KeyEvent& key) { return handleKey(key); });
    ok.setText("Ok");
    ok.setDefault(true);
    ok.setMaxSize(0, buttonHeight);
    ok.setToolTip("Takes the selected entry (Enter)");
    ok.setButtonClickCallback([this] { accept(); });
    cancelButton.setText("Cancel");
    cancelButton.setMaxSize(0, buttonHeight);
    cancelButton.setToolTip("Closes without a choice (Escape)");
    cancelButton.setButtonClickCallback([this] { cancel(); });

    vlWinUi::GridLayout layout(100, 100);
    layout.setInternalBorders(3, 3);
    layout.addComponent(entries, 0, 0, 100, 93);
    layout.addComponent(ok, 14, 93, 36, 6);
    layout.addComponent(cancelButton, 54, 93, 36, 6);
    window.setLayout(std::move(layout));
}

void PickListDialog::show(const vlWinUi::Component& anchor, vlMemory::StringView selected) {
    auto& window = *ComponentManager::get<Window>(name_);
    ListBox& entries = listBoxOf(name_);
    setFilter({});
    entries.select(std::nullopt);
    entries.selectByLabel(selected);
    updateOk();
    DialogOwner::set(window, anchor);
    window.setVisible(true);
    entries.focusWindow();
}

void PickListDialog::accept() {
    auto* window = ComponentManager::get<Window>(name_);
    refreshIfDue();
    const std::string entry = listBoxOf(name_).getText();
    if (entry.empty() || window == nullptr || !window->isVisible()) return;
    window->setVisible(false);
    // It may open this very list again.
    const Chosen chosen = std::exchange(chosen_, nullptr);
    if (chosen) chosen(entry);
}

void PickListDialog::cancel() {
    chosen_ = nullptr;
    if (auto* window = ComponentManager::get<Window>(name_)) window->setVisible(false);
}

bool PickListDialog::handleKey(const vlWinUi::KeyEvent& key) {
    if (key.control || key.alt) return false;
    if (key.virtualKey == backspaceKey) {
        if (!filter_.empty()) setFilter(shortened(filter_));
        return true;
    }
    if (key.text.empty() || (filter_.empty() && key.text == " ")) return false;
    setFilter(filter_ + key.text);
    return true;
}

void PickListDialog::setFilter(std::string filter) {
    filter_ = std::move(filter);
    auto& window = *ComponentManager::get<Window>(name_);
    window.setText(filter_.empty() ? label_ : label_ + ": " + filter_);
    refresh();
    // The best guess stands ready for Enter.
    ListBox& entries = listBoxOf(name_);
    if (!filter_.empty() && !entries.getSelectedIndex() && entries.getEntryCount() > 0)
        entries.select(0);
    updateOk();
}

void PickListDialog::entriesChanged() {
    refreshDue_ = true;
    const auto* window = ComponentManager::get<Window>(name_);
    if (window == nullptr || !window->isVisible() || std::exchange(refreshQueued_, true)) return;
    vlWinUi::System::runLater([weak = std::weak_ptr(self_)] {
        const auto self = weak.lock();
        if (self == nullptr) return;
        (*self)->refreshQueued_ = false;
        (*self)->refreshIfDue();
    });
}

void PickListDialog::refreshIfDue() {
    if (refreshDue_) refresh();
}

void PickListDialog::refresh() {
    refreshDue_ = false;
    const PickList* list = PickLists::getInstance().find(name_);
    if (list == nullptr || ComponentManager::get(name_) == nullptr) return;
    std::vector<vlWinUi::ListEntry> shown;
    const auto isOffered = [this](const std::string& entry) { return !offers_ || offers_(entry); };
    for (const std::string& entry : list->getEntries())
        if (contains(entry, filter_) && isOffered(entry)) shown.push_back({entry, {}});
    ListBox& entries = listBoxOf(name_);
    entries.setPlaceHolder(filter_.empty() ? "There is nothing to choose from."
                                           : "No entry contains this.");
    entries.setEntries(std::move(shown));
    updateOk();
}

void PickListDialog::updateOk() {
    const bool any = listBoxOf(name_).getSelectedIndex().has_value();
    okOf(name_).setEnabled(any, "Select an entry first.");
}

} // namespace vlEditor
