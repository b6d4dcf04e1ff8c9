#pragma once
#include "LayoutText.h"

#include <vlWinUi/Component.h>

#include <unordered_map>
#include <variant>
#include <vector>

namespace vlWinUi {

/** The layouts of one text, gathered first and shown at once: a parent is arranged a single time
 * however many layouts speak of it. */
class LayoutPlan {
public:
    explicit LayoutPlan(LayoutText& text) : text_(text) {}

    /// Takes in an object of "layouts".
    void add(const vlExport::Node& object);
    /// Arranges all of them. Once, at the end.
    void show();

private:
    struct Arranged {
        Component* parent = nullptr;
        std::variant<GridLayout, RelativeLayout> layout;
        std::uint32_t line = 0; ///< of the first object that spoke of it
    };
    /// Where a component of the text goes.
    struct Place {
        std::size_t arranged = 0; ///< index
        std::uint32_t line = 0;
    };
    /// A layout object being read, and what it arranges.
    struct Reading {
        const vlExport::Node& object;
        Component& parent;
    };

    Component* readParent(const vlExport::Node& object);
    void addGrid(const Reading& reading);
    void addRelative(const Reading& reading);
    /// What the parent's layout in the plan is, or becomes: a copy of the live one if that is of
    /// the same kind and size. Null, with a line, when the text has arranged the parent otherwise.
    template <class Layout, class IsSame>
    Layout* layoutFor(const Reading& reading, Layout fresh, const Layout* live, IsSame isSame);
    void placeInGrid(const vlExport::Node& object, Component& parent, GridLayout& grid);
    void placeRelative(const vlExport::Node& object, Component& parent, RelativeLayout& layout);
    /// The component that a placement names, out of where it was; null, with a line, when it
    /// cannot go into the parent.
    Component* takeComponent(const vlExport::Node& placement, const Component& parent);
    bool
    mayGoInto(const vlExport::Node& placement, const Component& component, const Component& parent);
    /// The one that a component is in, or will be.
    const Component* futureParentOf(const Component& component) const;
    void leaveFormerPlace(const Component& component, const Component& parent);
    void dropTooDeep();
    void checkNeighbours(RelativeLayout& layout);

    LayoutText& text_;
    std::vector<Arranged> arranged_;
    std::unordered_map<const Component*, std::size_t> byParent_;
    std::unordered_map<const Component*, Place> places_;
};

} // namespace vlWinUi
