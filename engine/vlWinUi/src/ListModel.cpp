#include "ListModel.h"

#include "Text.h"

#include <algorithm>

namespace vlWinUi {

QString ListModel::Item::reasons() const {
    const char* between = reason.empty() || emphasisReason.empty() ? "" : "\n";
    return toQt(emphasisReason + between + reason);
}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const auto at = entryOf(index);
    if (!at) return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const Item& item = this->item(*at);
    const ListEntry& entry = item.entry;
    const auto line = [&] {
        return toQt(std::string_view(entry.label).substr(row.begin, row.length));
    };
    switch (role) {
    case Qt::DisplayRole:
        return line();
    case Qt::AccessibleTextRole:
        return entry.count < 2 ? line()
                               : QStringLiteral("%1, %2 times").arg(line()).arg(entry.count);
    case Qt::AccessibleDescriptionRole:
        if (!item.reasons().isEmpty()) return item.reasons();
        return item.marked ? QVariant(QStringLiteral("Marked")) : QVariant();
    case LabelRole:
        return toQt(entry.label);
    case EmphasisRole:
        return static_cast<int>(entry.emphasis);
    case CountRole:
        return row.begin == 0 ? entry.count : 1U;
    case MarkRole:
        return item.marked && row.begin == 0;
    case ReasonRole:
        return item.reasons();
    default:
        return {};
    }
}

std::optional<std::size_t> ListModel::find(std::string_view label) const {
    if (!labels_) {
        labels_.emplace();
        for (const auto& [serial, item] : items_)
            labels_->add(item.entry.label, serial);
    }
    const auto serial = labels_->first(label);
    return serial ? std::optional(placeOf(*serial)) : std::nullopt;
}

void ListModel::add(ListEntry entry) {
    const std::uint64_t serial = nextSerial_++;
    if (labels_) labels_->add(entry.label, serial);
    serials_.push_back(serial);
    items_.try_emplace(serial, Item{std::move(entry), false, {}, {}});
}

void ListModel::append(std::deque<ListEntry> entries) {
    std::vector<Row> rows;
    rows.reserve(entries.size());
    for (ListEntry& entry : entries) {
        add(std::move(entry));
        appendRows(rows, serials_.size() - 1);
    }
    insertRows(rows_.end(), rows);
}

void ListModel::removeFirst(std::size_t count) {
    removeRows(rows_.begin(), lowerBound(count));
    const auto end = serials_.begin() + static_cast<std::ptrdiff_t>(count);
    std::for_each(serials_.begin(), end, [this](std::uint64_t serial) { forget(serial); });
    serials_.erase(serials_.begin(), end);
}

void ListModel::remove(std::size_t entry) {
    removeRows(lowerBound(entry), lowerBound(entry + 1));
    forget(serials_[entry]);
    serials_.erase(serials_.begin() + static_cast<std::ptrdiff_t>(entry));
}

void ListModel::forget(std::uint64_t serial) {
    const auto found = items_.find(serial);
    if (labels_) labels_->remove(found->second.entry.label, serial);
    items_.erase(found);
}

bool ListModel::rename(std::size_t entry, std::string label) {
    Item& renamed = item(entry);
    if (labels_) {
        labels_->remove(renamed.entry.label, serials_[entry]);
        labels_->add(label, serials_[entry]);
    }
    renamed.entry.label = std::move(label);
    std::vector<Row> rows;
    appendRows(rows, entry);
    const auto first = lowerBound(entry);
    const auto last = lowerBound(entry + 1);
    if (last - first != static_cast<std::ptrdiff_t>(rows.size())) {
        removeRows(first, last);
        insertRows(lowerBound(entry), rows);
        return true;
    }
    std::ranges::copy(rows, rows_.begin() + (first - rows_.cbegin()));
    tellChange(entry);
    return false;
}

void ListModel::setCount(std::size_t entry, unsigned count) {
    item(entry).entry.count = count;
    tellChange(entry);
}

void ListModel::setMark(std::size_t entry, bool marked, std::string reason) {
    Item& changed = item(entry);
    changed.marked = marked;
    changed.reason = marked ? std::move(reason) : std::string();
    tellChange(entry);
}

void ListModel::setEmphasis(std::size_t entry, Emphasis emphasis, std::string reason) {
    Item& changed = item(entry);
    changed.entry.emphasis = emphasis;
    changed.emphasisReason = emphasis == Emphasis::None ? std::string() : std::move(reason);
    tellChange(entry);
}

void ListModel::reset(std::vector<ListEntry> entries) {
    labels_.reset();
    items_.clear();
    serials_.clear();
    for (ListEntry& entry : entries)
        add(std::move(entry));
    resetRows();
}

void ListModel::setFilter(const QString& text) {
    if (text == filter_) return;
    filter_ = text;
    resetRows();
}

std::optional<std::size_t> ListModel::entryOf(const QModelIndex& row) const {
    if (!row.isValid()) return std::nullopt;
    return placeOf(rows_[static_cast<std::size_t>(row.row())].serial);
}

QModelIndex ListModel::rowOf(std::size_t entry) const {
    const auto found = lowerBound(entry);
    if (found == rows_.end() || found->serial != serials_[entry]) return {};
    return index(static_cast<int>(found - rows_.begin()));
}

std::size_t ListModel::placeOf(std::uint64_t serial) const {
    return static_cast<std::size_t>(std::ranges::lower_bound(serials_, serial) - serials_.begin());
}

bool ListModel::passes(const ListEntry& entry) const {
    return filter_.isEmpty() || toQt(entry.label).contains(filter_, Qt::CaseInsensitive);
}

void ListModel::appendRows(std::vector<Row>& rows, std::size_t entry) const {
    const ListEntry& shown = this->entry(entry);
    const std::string& label = shown.label;
    if (!passes(shown)) return;
    for (std::size_t begin = 0; begin != std::string::npos;) {
        const std::size_t end = std::min(label.find('\n', begin), label.size());
        // A line feed at the very end ends the last line and does not begin another.
        const bool more = end + 1 < label.size();
        rows.push_back({serials_[entry],
                        static_cast<std::uint32_t>(begin),
                        static_cast<std::uint32_t>(end - begin)});
        begin = more ? end + 1 : std::string::npos;
    }
}

void ListModel::resetRows() {
    beginResetModel();
    std::vector<Row> rows;
    for (std::size_t entry = 0; entry < serials_.size(); ++entry)
        appendRows(rows, entry);
    rows_ = std::move(rows);
    shown_ = static_cast<std::size_t>(std::ranges::count(rows_, 0U, &Row::begin));
    endResetModel();
}

ListModel::Rows::const_iterator ListModel::lowerBound(std::size_t entry) const {
    if (entry >= serials_.size()) return rows_.end();
    return std::ranges::lower_bound(rows_, serials_[entry], {}, &Row::serial);
}

void ListModel::insertRows(Rows::const_iterator at, const std::vector<Row>& rows) {
    if (rows.empty()) return;
    const int first = static_cast<int>(at - rows_.cbegin());
    beginInsertRows({}, first, first + static_cast<int>(rows.size()) - 1);
    rows_.insert(at, rows.begin(), rows.end());
    shown_ += static_cast<std::size_t>(std::ranges::count(rows, 0U, &Row::begin));
    endInsertRows();
}

void ListModel::removeRows(Rows::const_iterator first, Rows::const_iterator last) {
    if (first == last) return;
    beginRemoveRows({},
                    static_cast<int>(first - rows_.cbegin()),
                    static_cast<int>(last - rows_.cbegin()) - 1);
    shown_ -= static_cast<std::size_t>(std::ranges::count(first, last, 0U, &Row::begin));
    rows_.erase(first, last);
    endRemoveRows();
}

void ListModel::tellChange(std::size_t entry) {
    const QModelIndex first = rowOf(entry);
    if (!first.isValid()) return;
    const auto rows = lowerBound(entry + 1) - lowerBound(entry);
    emit dataChanged(first, index(first.row() + static_cast<int>(rows) - 1));
}

} // namespace vlWinUi
