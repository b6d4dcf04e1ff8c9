#include "ListModel.h"

#include "Text.h"

#include <algorithm>

namespace vlWinUi {

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const auto at = entryOf(index);
    if (!at) return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const ListEntry& entry = entries_[*at];
    const auto line = [&] {
        return toQt(std::string_view(entry.label).substr(row.begin, row.length));
    };
    switch (role) {
    case Qt::DisplayRole:
        return line();
    case Qt::AccessibleTextRole:
        return entry.count < 2 ? line()
                               : QStringLiteral("%1, %2 times").arg(line()).arg(entry.count);
    case LabelRole:
        return toQt(entry.label);
    case EmphasisRole:
        return static_cast<int>(entry.emphasis);
    case CountRole:
        return row.begin == 0 ? entry.count : 1U;
    default:
        return {};
    }
}

void ListModel::append(std::deque<ListEntry> entries) {
    const std::size_t first = entries_.size();
    std::ranges::move(entries, std::back_inserter(entries_));
    appendRows(first);
}

void ListModel::removeFirst(std::size_t count) {
    removeRows(rows_.begin(), lowerBound(count));
    entries_.erase(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(count));
    firstSerial_ += count;
}

void ListModel::remove(std::size_t entry) {
    const auto last = lowerBound(entry + 1);
    const auto behind = last - rows_.cbegin();
    const auto first = lowerBound(entry);
    const auto removed = last - first;
    removeRows(first, last);
    for (auto row = rows_.begin() + (behind - removed); row != rows_.end(); ++row)
        --row->serial;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(entry));
}

void ListModel::rename(std::size_t entry, std::string label) {
    entries_[entry].label = std::move(label);
    std::vector<Row> rows;
    appendRows(rows, entry);
    const auto first = lowerBound(entry);
    if (lowerBound(entry + 1) - first != static_cast<std::ptrdiff_t>(rows.size())) {
        resetRows();
        return;
    }
    if (rows.empty()) return;
    std::ranges::copy(rows, rows_.begin() + (first - rows_.cbegin()));
    const QModelIndex changed = rowOf(entry);
    emit dataChanged(changed, index(changed.row() + static_cast<int>(rows.size()) - 1));
}

void ListModel::setCount(std::size_t entry, unsigned count) {
    entries_[entry].count = count;
    const QModelIndex changed = rowOf(entry);
    if (changed.isValid()) emit dataChanged(changed, changed);
}

void ListModel::reset(std::deque<ListEntry> entries) {
    entries_ = std::move(entries);
    resetRows();
}

void ListModel::setFilter(const QString& text) {
    if (text == filter_) return;
    filter_ = text;
    resetRows();
}

std::size_t ListModel::shownCount() const {
    return static_cast<std::size_t>(std::ranges::count(rows_, 0U, &Row::begin));
}

std::optional<std::size_t> ListModel::entryOf(const QModelIndex& row) const {
    if (!row.isValid()) return std::nullopt;
    return rows_[static_cast<std::size_t>(row.row())].serial - firstSerial_;
}

QModelIndex ListModel::rowOf(std::size_t entry) const {
    const auto found = lowerBound(entry);
    if (found == rows_.end() || found->serial != firstSerial_ + entry) return {};
    return index(static_cast<int>(found - rows_.begin()));
}

bool ListModel::passes(const ListEntry& entry) const {
    return filter_.isEmpty() || toQt(entry.label).contains(filter_, Qt::CaseInsensitive);
}

void ListModel::appendRows(std::vector<Row>& rows, std::size_t entry) const {
    const std::string& label = entries_[entry].label;
    if (!passes(entries_[entry])) return;
    for (std::size_t begin = 0; begin != std::string::npos;) {
        const std::size_t end = std::min(label.find('\n', begin), label.size());
        // A line feed at the very end ends the last line and does not begin another.
        const bool more = end + 1 < label.size();
        rows.push_back({firstSerial_ + entry,
                        static_cast<std::uint32_t>(begin),
                        static_cast<std::uint32_t>(end - begin)});
        begin = more ? end + 1 : std::string::npos;
    }
}

void ListModel::appendRows(std::size_t firstEntry) {
    std::vector<Row> rows;
    rows.reserve(entries_.size() - firstEntry);
    for (std::size_t entry = firstEntry; entry < entries_.size(); ++entry)
        appendRows(rows, entry);
    if (rows.empty()) return;
    const int before = rowCount();
    beginInsertRows({}, before, before + static_cast<int>(rows.size()) - 1);
    rows_.insert(rows_.end(), rows.begin(), rows.end());
    endInsertRows();
}

void ListModel::resetRows() {
    beginResetModel();
    std::vector<Row> rows;
    for (std::size_t entry = 0; entry < entries_.size(); ++entry)
        appendRows(rows, entry);
    rows_.assign(rows.begin(), rows.end());
    endResetModel();
}

std::deque<ListModel::Row>::const_iterator ListModel::lowerBound(std::size_t entry) const {
    return std::ranges::lower_bound(rows_, firstSerial_ + entry, {}, &Row::serial);
}

void ListModel::removeRows(std::deque<Row>::const_iterator first,
                           std::deque<Row>::const_iterator last) {
    if (first == last) return;
    beginRemoveRows({},
                    static_cast<int>(first - rows_.cbegin()),
                    static_cast<int>(last - rows_.cbegin()) - 1);
    rows_.erase(first, last);
    endRemoveRows();
}

} // namespace vlWinUi
