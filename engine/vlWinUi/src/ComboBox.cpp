#include "Call.h"
#include "MixedValues.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComboBox.h>

#include <QComboBox>
#include <QEvent>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int LEAST_ROOM = 7; ///< above and below the text together, pixels

struct ComboBoxNative final : Native {
    ComboBoxNative() : Native(new QComboBox) {
        QComboBox& combo = box();
        combo.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo.setMinimumContentsLength(3);
        combo.setMaxVisibleItems(24);
        // Where many stand below each other, each gives a little of its height.
        combo.setMinimumHeight(combo.fontMetrics().height() + LEAST_ROOM);
        combo.setFocusPolicy(Qt::StrongFocus);
        connect(&combo, &QComboBox::currentIndexChanged, this, [this](int index) {
            if (quiet > 0 || index < 0) return;
            setMixed(false);
            call(selected, static_cast<std::size_t>(index));
        });
    }
    QComboBox& box() const { return *static_cast<QComboBox*>(widget); }

    /// Turning the wheel to scroll a panel must not change the values it passes over.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Wheel && !widget->hasFocus()) {
            event->ignore();
            return true;
        }
        return Native::eventFilter(watched, event);
    }

    /// Adding to an empty box, or taking its entry away, would choose another entry unasked.
    template <class F> void changeEntries(F change) {
        const Quiet guard(quiet);
        const bool none = box().currentIndex() < 0;
        change();
        if (none) box().setCurrentIndex(-1);
    }

    void setMixed(bool now) {
        if (mixed == now) return;
        mixed = now;
        box().setPlaceholderText(mixed ? MIXED_VALUES : QString());
        describeAsMixed(box(), mixed);
    }

    std::vector<ListEntry> entries;
    bool mixed = false;
    std::function<void(std::size_t)> selected;
};

} // namespace

ComboBox::ComboBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ComboBoxNative>()) {
}

void ComboBox::setText(vlMemory::StringView text) {
    selectByLabel(text);
}

std::string ComboBox::getText() const {
    const ListEntry* entry = getSelectedEntry();
    return entry == nullptr ? std::string() : entry->label;
}

void ComboBox::addEntry(vlMemory::StringView label, std::any data) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ComboBoxNative>(*this);
    native.entries.push_back({std::string(label), std::move(data)});
    native.changeEntries([&] { native.box().addItem(toQt(label)); });
}

bool ComboBox::removeEntry(vlMemory::StringView label) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (!index) return false;
    auto& native = nativeAs<ComboBoxNative>(*this);
    const bool wasSelected = getSelectedIndex() == index;
    native.entries.erase(native.entries.begin() + static_cast<std::ptrdiff_t>(*index));
    native.changeEntries([&] {
        native.box().removeItem(static_cast<int>(*index));
        if (wasSelected) native.box().setCurrentIndex(-1);
    });
    return true;
}

bool ComboBox::renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (!index) return false;
    auto& native = nativeAs<ComboBoxNative>(*this);
    native.entries[*index].label = newLabel;
    native.box().setItemText(static_cast<int>(*index), toQt(newLabel));
    return true;
}

void ComboBox::setEntries(std::vector<ListEntry> entries) {
    vlCommon::assertUiThread();
    const std::string before = getText();
    clear();
    auto& native = nativeAs<ComboBoxNative>(*this);
    native.entries = std::move(entries);
    QStringList labels;
    for (const ListEntry& entry : native.entries)
        labels.append(toQt(entry.label));
    native.changeEntries([&] { native.box().addItems(labels); });
    selectByLabel(before);
}

void ComboBox::clear() {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ComboBoxNative>(*this);
    native.entries.clear();
    native.changeEntries([&] { native.box().clear(); });
}

std::size_t ComboBox::getEntryCount() const {
    return nativeAs<ComboBoxNative>(*this).entries.size();
}

const ListEntry& ComboBox::getEntry(std::size_t index) const {
    return nativeAs<ComboBoxNative>(*this).entries.at(index);
}

std::optional<std::size_t> ComboBox::find(vlMemory::StringView label) const {
    const auto& entries = nativeAs<ComboBoxNative>(*this).entries;
    const auto found = std::ranges::find(entries, label, &ListEntry::label);
    if (found == entries.end()) return std::nullopt;
    return static_cast<std::size_t>(found - entries.begin());
}

std::optional<std::size_t> ComboBox::getSelectedIndex() const {
    const int index = nativeAs<ComboBoxNative>(*this).box().currentIndex();
    if (index < 0) return std::nullopt;
    return static_cast<std::size_t>(index);
}

const ListEntry* ComboBox::getSelectedEntry() const {
    const auto index = getSelectedIndex();
    return index ? &getEntry(*index) : nullptr;
}

void ComboBox::select(std::optional<std::size_t> index) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<ComboBoxNative>(*this);
    const Quiet guard(native.quiet);
    const bool inside = index && *index < native.entries.size();
    native.setMixed(false);
    native.box().setCurrentIndex(inside ? static_cast<int>(*index) : -1);
}

bool ComboBox::selectByLabel(vlMemory::StringView label) {
    const auto index = find(label);
    if (index) select(index);
    return index.has_value();
}

void ComboBox::setMixed() {
    select(std::nullopt);
    nativeAs<ComboBoxNative>(*this).setMixed(true);
}

bool ComboBox::isMixed() const {
    return nativeAs<ComboBoxNative>(*this).mixed;
}

void ComboBox::setSelectionCallback(std::function<void(std::size_t)> callback) {
    nativeAs<ComboBoxNative>(*this).selected = std::move(callback);
}

} // namespace vlWinUi
