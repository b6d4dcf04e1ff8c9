#pragma once
#include <any>
#include <string>

namespace vlWinUi {

/** A line of a ListBox or ComboBox. Labels need not be unique; where a label is looked up, the
 * first counts. */
struct ListEntry {
    std::string label;
    std::any data; ///< what the line stands for

    /// Null when the data is of another type.
    template <class T> const T* dataAs() const { return std::any_cast<T>(&data); }
};

} // namespace vlWinUi
