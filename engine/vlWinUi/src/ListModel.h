#pragma once
#include <vlWinUi/ListEntry.h>

#include <QAbstractListModel>

#include <vector>

namespace vlWinUi {

/** The entries of a ListBox as its view reads them. */
class ListModel final : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const std::vector<ListEntry>& entries() const { return entries_; }
    void append(ListEntry entry);
    void remove(std::size_t row);
    void rename(std::size_t row, std::string label);
    void reset(std::vector<ListEntry> entries);

private:
    std::vector<ListEntry> entries_;
};

} // namespace vlWinUi
