#include "Call.h"
#include "ListBoxNative.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ListBox.h>

#include <algorithm>

namespace vlWinUi {
namespace {

ListBoxNative& listOf(const ListBox& list) {
    return nativeAs<ListBoxNative>(const_cast<ListBox&>(list));
}

} // namespace

ListBox::ListBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<ListBoxNative>()) {
}

void ListBox::setText(vlMemory::StringView text) {
    selectByLabel(text);
}

std::string ListBox::getText() const {
    const ListEntry* entry = getSelectedEntry();
    return entry == nullptr ? std::string() : entry->label;
}

void ListBox::addEntry(vlMemory::StringView label, std::any data) {
    vlCommon::assertUiThread();
    const Quiet guard(native().quiet);
    std::deque<ListEntry> entries;
    entries.push_back({std::string(label), std::move(data)});
    listOf(*this).model().append(std::move(entries));
}

bool ListBox::removeEntry(vlMemory::StringView label) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (!index) return false;
    listOf(*this).remove(*index);
    return true;
}

bool ListBox::renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (!index) return false;
    listOf(*this).rename(*index, std::string(newLabel));
    return true;
}

bool ListBox::setEntryMark(vlMemory::StringView label, bool marked, vlMemory::StringView reason) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (index) listOf(*this).model().setMark(*index, marked, std::string(reason));
    return index.has_value();
}

bool ListBox::setEntryEmphasis(vlMemory::StringView label,
                               Emphasis emphasis,
                               vlMemory::StringView reason) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (index) listOf(*this).model().setEmphasis(*index, emphasis, std::string(reason));
    return index.has_value();
}

bool ListBox::isEntryMarked(vlMemory::StringView label) const {
    const auto index = find(label);
    return index && listOf(*this).model().isMarked(*index);
}

void ListBox::setEntries(std::vector<ListEntry> entries) {
    vlCommon::assertUiThread();
    auto& native = listOf(*this);
    std::vector<std::string> labels;
    if (const ListEntry* first = getSelectedEntry()) labels.push_back(first->label);
    for (const std::size_t index : native.selectedEntries())
        labels.push_back(getEntry(index).label);
    {
        const Quiet guard(native.quiet);
        native.model().reset(std::move(entries));
        native.selection.reset();
    }
    std::vector<std::size_t> found;
    for (const std::string& label : labels)
        if (const auto index = find(label)) found.push_back(*index);
    if (!found.empty()) native.selectSeveral(found);
}

void ListBox::append(ListEntry entry) {
    vlCommon::assertUiThread();
    listOf(*this).append(std::move(entry));
}

void ListBox::setMostEntries(std::size_t count) {
    listOf(*this).mostEntries = count;
}

void ListBox::clear() {
    setEntries({});
}

std::size_t ListBox::getEntryCount() const {
    return listOf(*this).model().entryCount();
}

const ListEntry& ListBox::getEntry(std::size_t index) const {
    return listOf(*this).model().entry(index);
}

std::optional<std::size_t> ListBox::find(vlMemory::StringView label) const {
    return listOf(*this).model().find(label);
}

std::optional<std::size_t> ListBox::getSelectedIndex() const {
    // What was appended may have dropped the entry that is selected.
    static_cast<void>(listOf(*this).model());
    return listOf(*this).selection;
}

const ListEntry* ListBox::getSelectedEntry() const {
    const auto index = getSelectedIndex();
    return index ? &getEntry(*index) : nullptr;
}

void ListBox::select(std::optional<std::size_t> index) {
    vlCommon::assertUiThread();
    listOf(*this).select(index);
}

bool ListBox::selectByLabel(vlMemory::StringView label) {
    const auto index = find(label);
    if (index) select(index);
    return index.has_value();
}

void ListBox::setMultiSelection(bool several) {
    listOf(*this).view().setSelectionMode(several ? QAbstractItemView::ExtendedSelection
                                                  : QAbstractItemView::SingleSelection);
}

std::vector<std::size_t> ListBox::getSelectedIndices() const {
    static_cast<void>(listOf(*this).model());
    return listOf(*this).selectedEntries();
}

bool ListBox::isSelected(std::size_t index) const {
    return index < getEntryCount() && listOf(*this).isSelected(index);
}

std::size_t ListBox::getSelectedLineCount() const {
    static_cast<void>(listOf(*this).model());
    return listOf(*this).selectedLineCount();
}

void ListBox::setSelectedIndices(std::vector<std::size_t> indices) {
    vlCommon::assertUiThread();
    listOf(*this).selectSeveral(indices);
}

void ListBox::selectAll() {
    vlCommon::assertUiThread();
    auto& native = listOf(*this);
    static_cast<void>(native.model());
    const Quiet guard(native.quiet);
    native.view().selectAll();
    native.selection = native.firstSelected();
}

std::string ListBox::getSelectedText() const {
    static_cast<void>(listOf(*this).model());
    return fromQt(listOf(*this).view().selectedText());
}

void ListBox::copySelection() {
    vlCommon::assertUiThread();
    listOf(*this).view().copySelection();
}

void ListBox::setSelectionCallback(std::function<void(std::optional<std::size_t>)> callback) {
    listOf(*this).selected = std::move(callback);
}

void ListBox::setActivationCallback(std::function<void(std::size_t)> callback) {
    listOf(*this).activated = std::move(callback);
}

void ListBox::setFilter(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    auto& native = listOf(*this);
    std::vector<std::size_t> selected;
    if (native.selection) selected.push_back(*native.selection);
    std::ranges::copy(native.selectedEntries(), std::back_inserter(selected));
    const Quiet guard(native.quiet);
    native.model().setFilter(toQt(text));
    native.selectSeveral(selected);
}

std::size_t ListBox::getShownCount() const {
    return listOf(*this).model().shownCount();
}

void ListBox::setCompact(bool compact) {
    listOf(*this).view().setCompact(compact);
}

void ListBox::setFollowEnd(bool follow) {
    listOf(*this).view().setFollowEnd(follow);
}

bool ListBox::isFollowingEnd() const {
    return listOf(*this).view().isFollowing();
}

void ListBox::setHeader(Component& header, unsigned height) {
    vlCommon::assertUiThread();
    listOf(*this).view().setHeader(*header.native().widget, static_cast<int>(height));
}

void ListBox::setMenuCallback(std::function<void(Point)> callback) {
    listOf(*this).view().menuWanted = [callback = std::move(callback)](QPoint at) {
        call(callback, Point{at.x(), at.y()});
    };
}

void ListBox::setPlaceHolder(vlMemory::StringView text) {
    listOf(*this).view().setPlaceHolder(toQt(text));
}

} // namespace vlWinUi
