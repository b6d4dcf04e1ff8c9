#pragma once
#include "ListModel.h"
#include "ListView.h"
#include "Native.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vlWinUi {

/** The view of a ListBox with its entries and what is selected of them. */
struct ListBoxNative final : Native {
    static constexpr qsizetype FEW_RANGES = 6;

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
    bool isSelected(std::size_t entry) const;
    std::size_t selectedLineCount() const;
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

} // namespace vlWinUi
