#pragma once
#include <vlCommon/Result.h>
#include <vlMemory/String.h>
#include <vlWinUi/Geometry.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vlEditor {

/** What a person has made of the main window: its place, the tabs, their containers and what these
 *  show. A plain value. */
struct WindowLayout {
    /// A container, or a panel divided into parts.
    struct Part {
        bool fixed = false;
        float size = 1;          ///< pixels where fixed, otherwise the weight among its neighbours
        std::string view;        ///< of a container: the label in the "View" menu; empty: nothing
        bool rows = false;       ///< the parts lie one above the other, not side by side
        std::vector<Part> parts; ///< none: a container
    };
    struct Tab {
        std::string label;
        Part content; ///< divided, if only into one part
    };

    static constexpr std::uint32_t formatVersion = 1;
    static constexpr std::size_t mostTabs = 64;
    static constexpr std::size_t mostParts = 256; ///< of a tab
    static constexpr int deepest = 32;

    std::optional<vlWinUi::Rectangle> rectangle;
    bool maximized = false;
    std::uint32_t selectedTab = 0;
    std::vector<Tab> tabs;

    vlMemory::String toText() const;
    /// Refuses what is broken, newer or beyond the bounds; the error starts with the name and the
    /// line.
    static vlCommon::Result<WindowLayout> fromText(vlMemory::StringView text,
                                                   vlMemory::StringView nameForErrors);
};

} // namespace vlEditor
