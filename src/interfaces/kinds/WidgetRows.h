#pragma once
#include "interfaces/kinds/Choices.h"

#include <functional>
#include <optional>
#include <string>

namespace vlEditor {

// How a row of Bindings puts a value into its widget. Nothing means that no resource is selected;
// `isMixed` that several are, with different values. A component that is missing from the layout is
// a fault of the program: it is logged and passed over. UI thread only.

using WidgetCallback = std::function<void()>;

void bindCheck(const std::string& component, std::function<void(bool)> changed);
void showCheck(const std::string& component, std::optional<bool> value, bool isMixed);

/// `chosen` gets the entry's label and value.
void bindCombo(const std::string& component,
               const std::vector<Choice>& choices,
               std::function<void(const std::string& label, std::uint32_t value)> chosen);
void showCombo(const std::string& component, std::optional<std::uint32_t> value, bool isMixed);
void showComboLabel(const std::string& component, const std::string* label, bool isMixed);

void bindButton(const std::string& component, WidgetCallback pressed);
/// Enter in the box does what its button does.
void bindEdit(const std::string& component, WidgetCallback entered);
/// Nothing while the box shows that values differ and nobody has typed over it.
std::optional<std::string> editText(const std::string& component);
void showEdit(const std::string& component, const std::optional<std::string>& text, bool isMixed);

/// Enables a component, or says why it can do nothing; the reason is empty where it can.
void showAble(const std::string& component, const std::string& reason);
void showLabel(const std::string& component, const std::string& text);

} // namespace vlEditor
