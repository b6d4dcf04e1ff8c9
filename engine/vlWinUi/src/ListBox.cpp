#include "Call.h"
#include "ListModel.h"
#include "ListView.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ListBox.h>

#include <algorithm>

namespace vlWinUi {
namespace {

struct ListBoxNative final : Native {
    ListBoxNative();
    ListView& view() const { return *static_cast<ListView*>(widget); }
    /// With all that was appended.
    ListModel& model() {
        flush();
        return *model_;
    }

    void append(ListEntry entry);
    void select(std::optional<std::size_t> entry);
    void showSelection();
    void noteSelection();
    std::vector<std::size_t> selectedEntries() const;

    std::optional<std::size_t> selection; ///< of the entries, so that it outlives a filter
    std::size_t mostEntries = 0;
    std::function<void(std::optional<std::size_t>)> selected;
    std::function<void(std::size_t)> activated;

private:
    void flush();
    /// Makes room for what is waiting.
    void dropOldest();

    ListModel* model_ = nullptr;
    // Appended, and not in the model yet.
    std::deque<ListEntry> waiting_;
    unsigned repetitions_ = 0; ///< of the model's last entry
    bool flushQueued_ = false;
};

ListBoxNative::ListBoxNative() : Native(new ListView) {
    model_ = new ListModel(&view());
    view().setModel(model_);
    listenTo(view().viewport());
    connect(view().selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (quiet == 0) noteSelection();
    });
    connect(&view(), &QListView::activated, this, [this](const QModelIndex& index) {
        if (const auto entry = model_->entryOf(index)) call(activated, *entry);
    });
}

void ListBoxNative::append(ListEntry entry) {
    const auto same = [&](const ListEntry& last) {
        return last.label == entry.label && last.emphasis == entry.emphasis;
    };
    const auto& shown = model_->entries();
    if (waiting_.empty() && !shown.empty() && same(shown.back())) {
        repetitions_ += entry.count;
    } else if (!waiting_.empty() && same(waiting_.back())) {
        waiting_.back().count += entry.count;
    } else {
        waiting_.push_back(std::move(entry));
        if (mostEntries > 0 && waiting_.size() > mostEntries) waiting_.pop_front();
    }
    if (std::exchange(flushQueued_, true)) return;
    QMetaObject::invokeMethod(
            this, [this] { flush(); }, Qt::QueuedConnection);
}

void ListBoxNative::flush() {
    if (!std::exchange(flushQueued_, false)) return;
    const Quiet guard(quiet);
    const auto& entries = model_->entries();
    if (repetitions_ > 0) {
        const std::size_t last = entries.size() - 1;
        model_->setCount(last, entries[last].count + std::exchange(repetitions_, 0));
    }
    if (waiting_.empty()) return;
    const bool full = mostEntries > 0 && entries.size() + waiting_.size() > mostEntries;
    if (full && !view().isFollowing())
        view().keepPlace([this] { dropOldest(); });
    else if (full)
        dropOldest();
    model_->append(std::exchange(waiting_, {}));
}

void ListBoxNative::dropOldest() {
    const std::size_t count = model_->entries().size() + waiting_.size() - mostEntries;
    model_->removeFirst(count);
    if (selection)
        selection = *selection < count ? std::nullopt : std::optional(*selection - count);
}

void ListBoxNative::noteSelection() {
    const auto entries = selectedEntries();
    selection = entries.empty() ? std::nullopt : std::optional(entries.front());
    call(selected, selection);
}

std::vector<std::size_t> ListBoxNative::selectedEntries() const {
    std::vector<std::size_t> entries;
    for (const QModelIndex& row : view().selectionModel()->selectedIndexes())
        entries.push_back(*model_->entryOf(row));
    std::ranges::sort(entries);
    entries.erase(std::ranges::unique(entries).begin(), entries.end());
    return entries;
}

void ListBoxNative::select(std::optional<std::size_t> entry) {
    selection = entry && *entry < model().entries().size() ? entry : std::nullopt;
    showSelection();
}

void ListBoxNative::showSelection() {
    const Quiet guard(quiet);
    const QModelIndex at = selection ? model_->rowOf(*selection) : QModelIndex();
    QItemSelectionModel& marked = *view().selectionModel();
    if (!at.isValid()) {
        marked.clear();
        return;
    }
    marked.setCurrentIndex(at, QItemSelectionModel::ClearAndSelect);
    view().scrollTo(at);
}

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
    auto& native = listOf(*this);
    const Quiet guard(native.quiet);
    native.model().remove(*index);
    if (native.selection == index) native.selection.reset();
    if (native.selection && *native.selection > *index) --*native.selection;
    native.showSelection();
    return true;
}

bool ListBox::renameEntry(vlMemory::StringView label, vlMemory::StringView newLabel) {
    vlCommon::assertUiThread();
    const auto index = find(label);
    if (!index) return false;
    auto& native = listOf(*this);
    const Quiet guard(native.quiet);
    native.model().rename(*index, std::string(newLabel));
    native.showSelection();
    return true;
}

void ListBox::setEntries(std::vector<ListEntry> entries) {
    vlCommon::assertUiThread();
    auto& native = listOf(*this);
    const std::string before = getText();
    {
        const Quiet guard(native.quiet);
        native.model().reset(
                {std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end())});
        native.selection.reset();
    }
    if (!before.empty()) selectByLabel(before);
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
    return listOf(*this).model().entries().size();
}

const ListEntry& ListBox::getEntry(std::size_t index) const {
    return listOf(*this).model().entries().at(index);
}

std::optional<std::size_t> ListBox::find(vlMemory::StringView label) const {
    const auto& entries = listOf(*this).model().entries();
    const auto found = std::ranges::find(entries, label, &ListEntry::label);
    if (found == entries.end()) return std::nullopt;
    return static_cast<std::size_t>(found - entries.begin());
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

void ListBox::selectAll() {
    vlCommon::assertUiThread();
    auto& native = listOf(*this);
    static_cast<void>(native.model());
    const Quiet guard(native.quiet);
    native.view().selectAll();
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
    const Quiet guard(native.quiet);
    native.model().setFilter(toQt(text));
    native.showSelection();
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
