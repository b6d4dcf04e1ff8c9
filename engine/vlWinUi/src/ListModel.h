#pragma once
#include <vlWinUi/ListEntry.h>

#include <QAbstractListModel>
#include <QString>

#include <deque>
#include <optional>
#include <vector>

namespace vlWinUi {

/** The entries of a ListBox, and the rows that its view reads: those of the entries that the filter
 * leaves, one for each line of text in a label. */
class ListModel final : public QAbstractListModel {
public:
    enum Role { EmphasisRole = Qt::UserRole, CountRole, LabelRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    const std::deque<ListEntry>& entries() const { return entries_; }
    void append(std::deque<ListEntry> entries);
    void removeFirst(std::size_t count);
    void remove(std::size_t entry);
    void rename(std::size_t entry, std::string label);
    void setCount(std::size_t entry, unsigned count);
    void reset(std::deque<ListEntry> entries);
    /// Only entries that contain it, whatever the case; an empty text leaves all.
    void setFilter(const QString& text);

    /// The entries that the filter leaves.
    std::size_t shownCount() const;
    /// Nothing for an index that is not valid.
    std::optional<std::size_t> entryOf(const QModelIndex& row) const;
    /// Of the entry's first line; not valid when the filter hides it.
    QModelIndex rowOf(std::size_t entry) const;

private:
    struct Row {
        std::uint64_t serial; ///< of the entry
        std::uint32_t begin;  ///< of the line in the label
        std::uint32_t length;
    };

    bool passes(const ListEntry& entry) const;
    void appendRows(std::vector<Row>& rows, std::size_t entry) const;
    void appendRows(std::size_t firstEntry);
    void resetRows();
    /// The first row of the entry or of one behind it.
    std::deque<Row>::const_iterator lowerBound(std::size_t entry) const;
    void removeRows(std::deque<Row>::const_iterator first, std::deque<Row>::const_iterator last);

    std::deque<ListEntry> entries_;
    std::uint64_t firstSerial_ = 0; ///< so that the rows stay as they are when the oldest go
    std::deque<Row> rows_;
    QString filter_;
};

} // namespace vlWinUi
