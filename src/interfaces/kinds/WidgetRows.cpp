#include "interfaces/kinds/WidgetRows.h"

#include "core/EditorLogger.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/Static.h>

namespace vlEditor {
namespace {

constexpr std::uint32_t enterKey = 13;

template <class Widget> Widget* find(const std::string& name) {
    auto* widget = vlWinUi::ComponentManager::get<Widget>(name);
    if (widget == nullptr)
        EditorLogger::getInstance().log("The layout lacks '" + name + "'.", "Editor");
    return widget;
}

void selectEntry(vlWinUi::ComboBox& combo, std::optional<std::size_t> index, bool isMixed) {
    combo.select(index);
    if (isMixed) combo.setMixed();
}

} // namespace

void bindCheck(const std::string& component, std::function<void(bool)> changed) {
    if (auto* box = find<vlWinUi::CheckBox>(component)) box->setCheckCallback(std::move(changed));
}

void showCheck(const std::string& component, std::optional<bool> value, bool isMixed) {
    auto* box = find<vlWinUi::CheckBox>(component);
    if (box == nullptr) return;
    box->setChecked(value.value_or(false));
    if (isMixed) box->setMixed();
}

void bindCombo(const std::string& component,
               const std::vector<Choice>& choices,
               std::function<void(const std::string& label, std::uint32_t value)> chosen) {
    auto* combo = find<vlWinUi::ComboBox>(component);
    if (combo == nullptr) return;
    std::vector<vlWinUi::ListEntry> entries;
    for (const Choice& choice : choices)
        entries.push_back({choice.label, choice.value});
    combo->setEntries(std::move(entries));
    combo->setSelectionCallback([combo, chosen = std::move(chosen)](std::size_t index) {
        const vlWinUi::ListEntry entry = combo->getEntry(index);
        const auto* value = entry.dataAs<std::uint32_t>();
        if (value != nullptr) chosen(entry.label, *value);
    });
}

void showCombo(const std::string& component, std::optional<std::uint32_t> value, bool isMixed) {
    auto* combo = find<vlWinUi::ComboBox>(component);
    if (combo == nullptr) return;
    std::optional<std::size_t> index;
    for (std::size_t i = 0; value && i < combo->getEntryCount(); ++i) {
        const auto* held = combo->getEntry(i).dataAs<std::uint32_t>();
        if (held != nullptr && *held == *value) index = i;
    }
    selectEntry(*combo, index, isMixed);
}

void showComboLabel(const std::string& component, const std::string* label, bool isMixed) {
    auto* combo = find<vlWinUi::ComboBox>(component);
    if (combo == nullptr) return;
    selectEntry(*combo, label != nullptr ? combo->find(*label) : std::nullopt, isMixed);
}

void bindButton(const std::string& component, WidgetCallback pressed) {
    if (auto* button = find<vlWinUi::Button>(component))
        button->setButtonClickCallback(std::move(pressed));
}

void bindEdit(const std::string& component, WidgetCallback entered) {
    auto* box = find<vlWinUi::EditBox>(component);
    if (box == nullptr) return;
    box->setKeyDownCallback([entered = std::move(entered)](std::uint32_t key) {
        if (key == enterKey) entered();
    });
}

void showAble(const std::string& component, const std::string& reason) {
    auto* shown = vlWinUi::ComponentManager::get(component);
    if (shown == nullptr) return;
    if (!shown->isEnabled() || !reason.empty()) shown->setEnabled(reason.empty(), reason);
}

void showLabel(const std::string& component, const std::string& text) {
    if (auto* label = find<vlWinUi::Static>(component)) label->setText(text);
}

std::optional<std::string> editText(const std::string& component) {
    const auto* box = find<vlWinUi::EditBox>(component);
    if (box == nullptr || box->isMixed()) return {};
    return box->getText();
}

void showEdit(const std::string& component, const std::optional<std::string>& text, bool isMixed) {
    auto* box = find<vlWinUi::EditBox>(component);
    if (box == nullptr) return;
    box->setText(text.value_or(std::string()));
    if (isMixed) box->setMixed();
}

} // namespace vlEditor
