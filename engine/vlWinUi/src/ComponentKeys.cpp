#include "ComponentKeys.h"

#include "WindowNative.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/GroupBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/MultiLineEdit.h>
#include <vlWinUi/Slider.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/TreeView.h>
#include <vlWinUi/Window.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace vlWinUi {
namespace {

using vlExport::Node;

/** A member of a component's object, and what it does to the component. */
struct Key {
    vlMemory::StringView name;
    void (*apply)(LayoutText&, const Node&, vlMemory::StringView name, Component&);
};

template <class T, auto setter> constexpr Key text(vlMemory::StringView name) {
    return {name, [](LayoutText& text, const Node& object, auto member, Component& component) {
                vlMemory::String value;
                if (text.read(object, member, value)) (static_cast<T&>(component).*setter)(value);
            }};
}

template <class T, auto act> constexpr Key flag(vlMemory::StringView name) {
    return {name, [](LayoutText& text, const Node& object, auto member, Component& component) {
                bool value = false;
                if (text.read(object, member, value)) act(static_cast<T&>(component), value);
            }};
}

template <auto axis> constexpr Key windowSize(vlMemory::StringView name) {
    return {name, [](LayoutText& text, const Node& object, auto member, Component& component) {
                unsigned pixels = 0;
                if (text.readWhole(object, member, pixels, 1, LayoutText::LARGEST_SIZE))
                    nativeAs<WindowNative>(component).rectangle.*axis = static_cast<int>(pixels);
            }};
}

template <auto setter> constexpr Key limit(vlMemory::StringView name) {
    return {name, [](LayoutText& text, const Node& object, auto member, Component& component) {
                const Node& size = *object.find(member);
                if (!size.isObject()) return text.fault(size, "'{}' expected an object", member);
                text.checkMembers(size, {"x", "y"});
                unsigned x = 0;
                unsigned y = 0;
                text.readWhole(size, "x", x, 0, LayoutText::LARGEST_SIZE);
                text.readWhole(size, "y", y, 0, LayoutText::LARGEST_SIZE);
                (component.*setter)(x, y);
            }};
}

/// `set` gives back what the slider took.
template <auto set> constexpr Key slider(vlMemory::StringView name) {
    return {name, [](LayoutText& text, const Node& object, auto member, Component& component) {
                constexpr double most = 1e9;
                double value = 0;
                if (!text.read(object, member, value, -most, most)) return;
                const int wanted = static_cast<int>(std::lround(value));
                const int taken = set(static_cast<Slider&>(component), wanted);
                if (taken != wanted)
                    text.fault(*object.find(member), "'{}' is outside the range", member);
            }};
}

int setMin(Slider& slider, int value) {
    slider.setRange(value, std::max(value, slider.getMax()));
    return slider.getMin();
}
int setMax(Slider& slider, int value) {
    slider.setRange(slider.getMin(), value);
    return slider.getMax();
}
int setCurrent(Slider& slider, int value) {
    slider.setCurrent(value);
    return slider.getCurrent();
}

void setOnlyNumbers(EditBox& edit, bool only) {
    edit.setNumbers(only ? EditBox::Numbers::Digits : EditBox::Numbers::Any);
}
void setEnabled(Component& component, bool enabled) {
    component.setEnabled(enabled);
}
/// What was never hidden shows itself once its surroundings do.
void setVisibleOnLoad(Component& component, bool visible) {
    if (!visible) component.setVisible(false);
}
void setWindowVisibleOnLoad(Window& window, bool visible) {
    window.setVisibleOnLoad(visible);
}

void setAlignment(LayoutText& text, const Node& object, vlMemory::StringView name, Component& to) {
    using Alignment = Static::Alignment;
    static constexpr vlExport::EnumText<Alignment> ALIGNMENTS[] = {
            {Alignment::TopLeft, "TOP_LEFT"},
            {Alignment::Top, "TOP"},
            {Alignment::TopRight, "TOP_RIGHT"},
            {Alignment::Left, "LEFT"},
            {Alignment::Centre, "CENTER"},
            {Alignment::Right, "RIGHT"},
            {Alignment::BottomLeft, "BOTTOM_LEFT"},
            {Alignment::Bottom, "BOTTOM"},
            {Alignment::BottomRight, "BOTTOM_RIGHT"},
    };
    auto value = Alignment::Left;
    if (text.read(object, name, value, ALIGNMENTS)) static_cast<Static&>(to).setAlignment(value);
}

void setLanguage(LayoutText& text, const Node& object, vlMemory::StringView name, Component& to) {
    using Language = CodeEdit::Language;
    static constexpr vlExport::EnumText<Language> LANGUAGES[] = {
            {Language::None, "NONE"}, {Language::Lua, "LUA"}, {Language::Hlsl, "HLSL"}};
    auto value = Language::None;
    if (text.read(object, name, value, LANGUAGES)) static_cast<CodeEdit&>(to).setLanguage(value);
}

void addTabs(LayoutText& text, const Node& object, vlMemory::StringView name, Component& to) {
    const auto tabs = text.elements(object, name);
    // What is on its pages is the text's, so they are not the person's to move or close.
    static_cast<TabWindow&>(to).setArrangeable(false);
    if (tabs.size() > LayoutText::MOST_TABS)
        text.fault(*object.find(name), "'{}' has more than {}", name, LayoutText::MOST_TABS);
    for (const Node& tab : tabs.first(std::min(tabs.size(), LayoutText::MOST_TABS))) {
        if (!text.takePart(tab)) return;
        if (!tab.isObject()) {
            text.fault(tab, "'{}' expected objects", name);
            continue;
        }
        text.checkMembers(tab, {"label"});
        vlMemory::String label;
        if (text.readRequired(tab, "label", label)) static_cast<TabWindow&>(to).addTab(label);
    }
}

constexpr Key LABEL = text<Component, &Component::setText>("label");
/// Of what shows no label: what screen readers call it.
constexpr Key ACCESSIBLE_LABEL = text<Component, &Component::setAccessibleName>("label");

constexpr Key EVERY[] = {
        {"name", nullptr},
        {"type", nullptr},
        flag<Component, setEnabled>("enabled"),
        flag<Component, setVisibleOnLoad>("visibleOnLoad"),
        limit<&Component::setMinSize>("minSize"),
        limit<&Component::setMaxSize>("maxSize"),
        text<Component, &Component::setToolTip>("toolTip"),
        text<Component, &Component::setAccessibleName>("accessibleName"),
};
constexpr Key WINDOW[] = {
        LABEL,
        windowSize<&Rectangle::width>("width"),
        windowSize<&Rectangle::height>("height"),
        flag<Window, setWindowVisibleOnLoad>("visibleOnLoad"),
};
constexpr Key LABELLED[] = {LABEL};
constexpr Key BUTTON[] = {LABEL, text<Button, &Button::setShortcut>("shortcut")};
constexpr Key UNLABELLED[] = {ACCESSIBLE_LABEL};
constexpr Key STATIC[] = {LABEL, {"alignHorizontal", setAlignment}};
constexpr Key EDIT_BOX[] = {
        LABEL,
        text<EditBox, &EditBox::setPlaceHolder>("placeHolder"),
        flag<EditBox, setOnlyNumbers>("onlyNumbers"),
};
constexpr Key MULTI_LINE_EDIT[] = {
        LABEL,
        text<MultiLineEdit, &MultiLineEdit::setPlaceHolder>("placeHolder"),
};
constexpr Key CODE_EDIT[] = {
        ACCESSIBLE_LABEL,
        text<CodeEdit, &CodeEdit::setPlaceHolder>("placeHolder"),
        {"language", setLanguage},
};
constexpr Key LIST_BOX[] = {
        ACCESSIBLE_LABEL,
        text<ListBox, &ListBox::setPlaceHolder>("placeHolder"),
};
constexpr Key TREE_VIEW[] = {
        ACCESSIBLE_LABEL,
        text<TreeView, &TreeView::setPlaceHolder>("placeHolder"),
};
/// In the order in which they are taken: the value last, so that it meets its range.
constexpr Key SLIDER[] = {
        ACCESSIBLE_LABEL,
        slider<setMin>("min"),
        slider<setMax>("max"),
        slider<setCurrent>("current"),
};
constexpr Key TAB_WIN[] = {ACCESSIBLE_LABEL, {"tabs", addTabs}};

struct Type {
    ComponentType type;
    std::span<const Key> keys;
    bool isContainer = false;
};

/// Context menus and file dialogs stand in no layout.
constexpr Type TYPES[] = {
        {ComponentType::Window, WINDOW, true},
        {ComponentType::GroupBox, LABELLED, true},
        {ComponentType::Static, STATIC},
        {ComponentType::Button, BUTTON},
        {ComponentType::EditBox, EDIT_BOX},
        {ComponentType::MultiLineEdit, MULTI_LINE_EDIT},
        {ComponentType::CodeEdit, CODE_EDIT},
        {ComponentType::CheckBox, LABELLED},
        {ComponentType::ComboBox, UNLABELLED},
        {ComponentType::ListBox, LIST_BOX},
        {ComponentType::TreeView, TREE_VIEW},
        {ComponentType::Slider, SLIDER},
        {ComponentType::TabWindow, TAB_WIN},
        {ComponentType::ToolBar, UNLABELLED},
        {ComponentType::Surface, UNLABELLED},
        {ComponentType::Picture, LABELLED},
};

const Type* find(ComponentType type) {
    const auto* found = std::ranges::find(TYPES, type, &Type::type);
    return found == std::end(TYPES) ? nullptr : found;
}

} // namespace

std::optional<ComponentType> ComponentKeys::typeOf(vlMemory::StringView word) {
    for (const Type& type : TYPES)
        if (nameOf(type.type) == word) return type.type;
    return std::nullopt;
}

bool ComponentKeys::isContainer(ComponentType type) {
    const Type* found = find(type);
    return found != nullptr && found->isContainer;
}

void ComponentKeys::apply(LayoutText& text, const Node& object, Component& component) {
    const Type* type = find(component.getType());
    assert(type != nullptr);
    std::vector<bool> known(object.size());
    for (const std::span<const Key> keys : {type->keys, std::span<const Key>(EVERY)}) {
        for (const Key& key : keys) {
            const auto members = object.members();
            const auto found = std::ranges::find(members, key.name, &vlExport::Member::name);
            if (found == members.end()) continue;
            known[static_cast<std::size_t>(found - members.begin())] = true;
            if (key.apply != nullptr) key.apply(text, object, key.name, component);
        }
    }
    for (std::size_t i = 0; i < known.size(); ++i)
        if (!known[i])
            text.fault(object.members()[i].value,
                       "unknown member '{}' of {} '{}'",
                       shown(object.members()[i].name),
                       nameOf(component.getType()),
                       shown(component.getComponentName()));
}

} // namespace vlWinUi
