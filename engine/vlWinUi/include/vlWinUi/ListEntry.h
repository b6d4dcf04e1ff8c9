#pragma once
#include <any>
#include <cstdint>
#include <string>

namespace vlWinUi {

/// How much a line stands out among the others.
enum class Emphasis : std::uint8_t { None, Warning, Error };

/** A line of a ListBox or ComboBox. Labels need not be unique; where a label is looked up, the
 * first counts. */
struct ListEntry {
    std::string label;
    std::any data;                      ///< what the line stands for
    Emphasis emphasis = Emphasis::None; ///< seen in a ListBox only
    unsigned count = 1; ///< how often the line came; more than once is shown in a ListBox

    /// Null when the data is of another type.
    template <class T> const T* dataAs() const { return std::any_cast<T>(&data); }
};

} // namespace vlWinUi
