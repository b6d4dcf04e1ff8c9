#pragma once
#include <cstdint>
#include <string>

namespace vlWinUi {

/** A line of a TreeView. */
struct TreeItem {
    static constexpr std::uint64_t ROOT = 0;

    std::uint64_t id = 0;        ///< unique in its tree, never 0
    std::uint64_t parent = ROOT; ///< ROOT for the first level
    std::string label;
};

} // namespace vlWinUi
