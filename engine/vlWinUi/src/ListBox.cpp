#include "Call.h"
#include "ListModel.h"
#include "ListView.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ListBox.h>

#include <QSignalBlocker>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr qsizetype FEW_RANGES = 32;

struct ListBoxNative final : Native {
    ListBoxNative();
    ListView& view() const { return *static_cast<ListView*>(widget); }
    /// With all that was appended.
    ListModel& model() {
        flush();
        return *model_;
    }

    void append(ListEntry entry);
    void remove(std::size_t entry);
    void rename(std::size_t entry, const std::string& label);
    void select(std::optional<std::size_t> entry);
    void selectSeveral(const std::vector<std::size_t>& entries);
    void showSelection();
    void noteSelection();
    bool takesSeveral() const {
        return view().selectionMode() == QAbstractItemView::ExtendedSelection;
    }
    std::vector<std::size_t> selectedEntries() const;
    /// The current row if it is selected, else the first that is.
    std::optional<std::size_t> firstSelected() const;

    /// The one that counts among the selected entries; it outlives a filter.
    std::optional<std::size_t> selection;
    std::size_t mostEntries = 0;
    std::function<void(std::optional<std::size_t>)> selected;
    std::function<void(std::size_t)> activated;

private:
    /// Qt would make a neighbour the current row, and scroll there, for each one that goes.
    void leaveRow(std::size_t entry);
    /// Qt cuts a range of selected rows in two where one of them goes, and slows down with each.
    void mergeRanges();
    void flush();
    /// Makes room for what is waiting.
    void dropOldest();

    ListModel* model_ = nullptr;
    qsizetype rangesToMerge_ = FEW_RANGES;
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
    connect(view().selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        const auto now = quiet == 0 ? firstSelected() : std::nullopt;
        if (now && now != selection) noteSelection();
    });
    connect(&view(), &QListView::activated, this, [this](const QModelIndex& index) {
        if (const auto entry = model_->entryOf(index)) call(activated, *entry);
    });
}

void ListBoxNative::append(ListEntry entry) {
    const auto same = [&](const ListEntry& last) {
        return last.label == entry.label && last.emphasis == entry.emphasis;
    };
    const std::size_t shown = model_->entryCount();
    if (waiting_.empty() && shown > 0 && same(model_->entry(shown - 1))) {
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
    const std::size_t count = model_->entryCount();
    if (repetitions_ > 0)
        model_->setCount(count - 1,
                         model_->entry(count - 1).count + std::exchange(repetitions_, 0));
    if (waiting_.empty()) return;
    const bool full = mostEntries > 0 && count + waiting_.size() > mostEntries;
    if (full && !view().isFollowing())
        view().keepPlace([this] { dropOldest(); });
    else if (full)
        dropOldest();
    model_->append(std::exchange(waiting_, {}));
}

void ListBoxNative::dropOldest() {
    const std::size_t count = model_->entryCount() + waiting_.size() - mostEntries;
    model_->removeFirst(count);
    if (selection)
        selection = *selection < count ? std::nullopt : std::optional(*selection - count);
}

void ListBoxNative::noteSelection() {
    selection = firstSelected();
    call(selected, selection);
}

std::optional<std::size_t> ListBoxNative::firstSelected() const {
    const QItemSelectionModel& marked = *view().selectionModel();
    const QModelIndex current = marked.currentIndex();
    if (current.isValid() && marked.isSelected(current)) return model_->entryOf(current);
    int first = model_->rowCount();
    for (const QItemSelectionRange& range : marked.selection())
        first = std::min(first, range.top());
    return model_->entryOf(model_->index(first));
}

void ListBoxNative::leaveRow(std::size_t entry) {
    QItemSelectionModel& marked = *view().selectionModel();
    if (model_->entryOf(marked.currentIndex()) != entry) return;
    // Nor does it need to hear that there is none: it would look for the row that was.
    const QSignalBlocker unheard(&marked);
    marked.clearCurrentIndex();
}

void ListBoxNative::mergeRanges() {
    QItemSelectionModel& marked = *view().selectionModel();
    const QItemSelection ranges = marked.selection();
    if (ranges.size() < rangesToMerge_) return;
    std::vector<std::pair<int, int>> rows;
    for (const QItemSelectionRange& range : ranges)
        rows.emplace_back(range.top(), range.bottom());
    std::ranges::sort(rows);
    QItemSelection merged;
    for (std::size_t begin = 0; begin < rows.size();) {
        std::size_t end = begin + 1;
        while (end < rows.size() && rows[end].first == rows[end - 1].second + 1)
            ++end;
        merged.append({model_->index(rows[begin].first), model_->index(rows[end - 1].second)});
        begin = end;
    }
    rangesToMerge_ = std::max(FEW_RANGES, 2 * merged.size());
    const QSignalBlocker unheard(&marked);
    marked.select(merged, QItemSelectionModel::ClearAndSelect);
}

void ListBoxNative::remove(std::size_t entry) {
    const Quiet guard(quiet);
    leaveRow(entry);
    model().remove(entry);
    mergeRanges();
    if (selection == entry)
        selection = firstSelected();
    else if (selection && *selection > entry)
        --*selection;
}

void ListBoxNative::rename(std::size_t entry, const std::string& label) {
    const Quiet guard(quiet);
    QItemSelectionModel& marked = *view().selectionModel();
    const bool wasSelected = selection == entry || marked.isSelected(model().rowOf(entry));
    const bool wasCurrent = model_->entryOf(marked.currentIndex()) == entry;
    leaveRow(entry);
    const bool moved = model_->rename(entry, label);
    const QModelIndex row = model_->rowOf(entry);
    if (!row.isValid()) return;
    if (wasCurrent) marked.setCurrentIndex(row, QItemSelectionModel::NoUpdate);
    if (moved && wasSelected) view().goTo(row, QItemSelectionModel::Select);
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
    selection = entry && *entry < model().entryCount() ? entry : std::nullopt;
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
    view().goTo(at, QItemSelectionModel::ClearAndSelect);
}

void ListBoxNative::selectSeveral(const std::vector<std::size_t>& entries) {
    std::vector<int> rows;
    std::optional<std::size_t> first;
    for (const std::size_t entry : entries) {
        if (entry >= model().entryCount()) continue;
        if (!first) first = entry;
        if (const QModelIndex row = model_->rowOf(entry); row.isValid()) rows.push_back(row.row());
    }
    select(first);
    if (!takesSeveral()) return;
    std::ranges::sort(rows);
    // Neighbours make one range, of which there should not be thousands.
    QItemSelection ranges;
    for (std::size_t begin = 0; begin < rows.size();) {
        std::size_t end = begin + 1;
        while (end < rows.size() && rows[end] <= rows[end - 1] + 1)
            ++end;
        ranges.append({model_->index(rows[begin]), model_->index(rows[end - 1])});
        begin = end;
    }
    const Quiet guard(quiet);
    view().selectionModel()->select(ranges, QItemSelectionModel::ClearAndSelect);
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
