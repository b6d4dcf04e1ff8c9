#pragma once
#include "LabelIndex.h"

#include <vlWinUi/ListEntry.h>

#include <QAbstractListModel>
#include <QString>

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vlWinUi {

/** The entries of a ListBox, and the rows that its view reads: those of the entries that the filter
 * leaves, one for each line of text in a label. Adding, removing and finding one of many entries
 * costs next to nothing. */
class ListModel final : public QAbstractListModel {
public:
    enum Role { EmphasisRole = Qt::UserRole, CountRole, LabelRole, MarkRole, ReasonRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    std::size_t entryCount() const { return serials_.size(); }
    const ListEntry& entry(std::size_t at) const { return item(at).entry; }
    /// The first entry of that label.
    std::optional<std::size_t> find(std::string_view label) const;
    void append(std::deque<ListEntry> entries);
    void removeFirst(std::size_t count);
    void remove(std::size_t entry);
    /// True when rows came or went by it, and with them what was selected in the view.
    bool rename(std::size_t entry, std::string label);
    void setCount(std::size_t entry, unsigned count);
    void setMark(std::size_t entry, bool marked, std::string reason);
    void setEmphasis(std::size_t entry, Emphasis emphasis, std::string reason);
    bool isMarked(std::size_t entry) const { return item(entry).marked; }
    void reset(std::vector<ListEntry> entries);
    /// Only entries that contain it, whatever the case; an empty text leaves all.
    void setFilter(const QString& text);

    /// The entries that the filter leaves.
    std::size_t shownCount() const { return shown_; }
    /// Nothing for an index that is not valid.
    std::optional<std::size_t> entryOf(const QModelIndex& row) const;
    /// Of the entry's first line; not valid when the filter hides it.
    QModelIndex rowOf(std::size_t entry) const;

private:
    struct Item {
        ListEntry entry;
        bool marked = false;
        std::string reason;         ///< of the mark
        std::string emphasisReason; ///< of the emphasis
        QString reasons() const;
    };
    struct Row {
        std::uint64_t serial; ///< of the entry
        std::uint32_t begin;  ///< of the line in the label
        std::uint32_t length;
    };
    using Rows = std::vector<Row>;

    void add(ListEntry entry);
    /// Throws where there is none.
    const Item& item(std::size_t entry) const { return items_.at(serials_.at(entry)); }
    Item& item(std::size_t entry) { return items_.at(serials_.at(entry)); }
    void forget(std::uint64_t serial);
    std::size_t placeOf(std::uint64_t serial) const;
    bool passes(const ListEntry& entry) const;
    void appendRows(std::vector<Row>& rows, std::size_t entry) const;
    void resetRows();
    /// The first row of the entry or of one behind it.
    Rows::const_iterator lowerBound(std::size_t entry) const;
    void insertRows(Rows::const_iterator at, const std::vector<Row>& rows);
    void removeRows(Rows::const_iterator first, Rows::const_iterator last);
    void tellChange(std::size_t entry);

    /// Serials rise from entry to entry and stay while others go: what is moved then is small.
    std::vector<std::uint64_t> serials_;
    std::unordered_map<std::uint64_t, Item> items_; ///< by serial
    std::uint64_t nextSerial_ = 0;
    /// Made when a label is looked up for the first time: logs never do.
    mutable std::optional<LabelIndex> labels_;
    Rows rows_;
    std::size_t shown_ = 0;
    QString filter_;
};

} // namespace vlWinUi
