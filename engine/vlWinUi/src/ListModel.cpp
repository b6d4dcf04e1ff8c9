#include "ListModel.h"

#include "Text.h"

namespace vlWinUi {

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    const bool shows = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    return shows ? QVariant(toQt(entries_[static_cast<std::size_t>(index.row())].label))
                 : QVariant();
}

void ListModel::append(ListEntry entry) {
    const int row = rowCount();
    beginInsertRows({}, row, row);
    entries_.push_back(std::move(entry));
    endInsertRows();
}

void ListModel::remove(std::size_t row) {
    beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(row));
    endRemoveRows();
}

void ListModel::rename(std::size_t row, std::string label) {
    entries_[row].label = std::move(label);
    const QModelIndex changed = index(static_cast<int>(row));
    emit dataChanged(changed, changed);
}

void ListModel::reset(std::vector<ListEntry> entries) {
    beginResetModel();
    entries_ = std::move(entries);
    endResetModel();
}

} // namespace vlWinUi
