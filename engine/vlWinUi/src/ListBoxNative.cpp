#include "ListBoxNative.h"

#include "Call.h"

#include <QSignalBlocker>

#include <algorithm>

namespace vlWinUi {

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

bool ListBoxNative::isSelected(std::size_t entry) const {
    const QModelIndex row = model_->rowOf(entry);
    return row.isValid() && view().selectionModel()->isSelected(row);
}

std::size_t ListBoxNative::selectedLineCount() const {
    std::size_t count = 0;
    for (const QItemSelectionRange& range : view().selectionModel()->selection())
        count += static_cast<std::size_t>(range.height());
    return count;
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

} // namespace vlWinUi
