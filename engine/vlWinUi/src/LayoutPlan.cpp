#include "LayoutPlan.h"

#include "ComponentKeys.h"
#include "PixelLayout.h"

#include <vlWinUi/ComponentManager.h>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

using vlExport::Node;

/** A list of a grid's columns or rows that are not like the others. */
struct TrackList {
    vlMemory::StringView member;
    vlMemory::StringView value;
    double least;
    double most;
    void (GridLayout::*set)(unsigned index, float value);
    unsigned (GridLayout::*count)() const;
};

constexpr double LARGEST_SIZE = LayoutText::LARGEST_SIZE;
constexpr double LARGEST_WEIGHT = LayoutText::LARGEST_WEIGHT;
constexpr TrackList TRACK_LISTS[] = {
        {"weightCols",
         "weight",
         0,
         LARGEST_WEIGHT,
         &GridLayout::setWeightColumn,
         &GridLayout::getColumnCount},
        {"weightRows",
         "weight",
         0,
         LARGEST_WEIGHT,
         &GridLayout::setWeightRow,
         &GridLayout::getRowCount},
        {"fixedSizeCols",
         "size",
         0,
         LARGEST_SIZE,
         &GridLayout::setFixedSizeColumn,
         &GridLayout::getColumnCount},
        {"fixedSizeRows",
         "size",
         0,
         LARGEST_SIZE,
         &GridLayout::setFixedSizeRow,
         &GridLayout::getRowCount},
};

void readTracks(LayoutText& text, const Node& object, const TrackList& list, GridLayout& grid) {
    for (const Node& track : text.elements(object, list.member)) {
        if (!text.takePart(track)) return;
        if (!track.isObject()) {
            text.fault(track, "'{}' expected objects", list.member);
            continue;
        }
        text.checkMembers(track, {"index", list.value});
        std::uint32_t index = 0;
        double value = 0;
        if (!text.readRequired(track, "index", index)) continue;
        if (!text.readRequired(track, list.value, value, list.least, list.most)) continue;
        if (index >= (grid.*list.count)())
            text.fault(track, "'{}' of index {} is outside the grid", list.member, index);
        else
            (grid.*list.set)(index, static_cast<float>(value));
    }
}

/// As many columns or rows as the placements of a layout reach over, for a grid that does not say.
unsigned tracksNeeded(const Node& object, vlMemory::StringView from, vlMemory::StringView span) {
    constexpr double most = LayoutText::MOST_TRACKS;
    double needed = 1;
    const Node* components = object.find("components");
    if (components == nullptr) return 1;
    for (const Node& placement : components->elements()) {
        const Node* start = placement.find(from);
        const Node* length = placement.find(span);
        const double end = (start == nullptr ? 0 : start->asDouble().value_or(0)) +
                           (length == nullptr ? 1 : length->asDouble().value_or(1));
        if (end <= most) needed = std::max(needed, end);
    }
    return static_cast<unsigned>(std::lround(needed));
}

bool readRectangle(LayoutText& text, const Node& object, Rectangle& area) {
    constexpr int most = LayoutText::LARGEST_SIZE;
    const Node* found = object.find("area");
    if (found == nullptr) return true;
    if (!found->isObject()) {
        text.fault(*found, "'area' expected an object");
        return false;
    }
    text.checkMembers(*found, {"x", "y", "width", "height"});
    const auto pixels = [&](vlMemory::StringView member, int& value, int least) {
        double number = value;
        text.read(*found, member, number, double(least), double(most));
        value = static_cast<int>(std::lround(number));
    };
    pixels("x", area.x, -most);
    pixels("y", area.y, -most);
    pixels("width", area.width, 0);
    pixels("height", area.height, 0);
    return true;
}

} // namespace

void LayoutPlan::add(const Node& object) {
    static constexpr struct {
        vlMemory::StringView type;
        void (LayoutPlan::*add)(const Reading&);
    } TYPES[] = {{"GRID", &LayoutPlan::addGrid}, {"RELATIVE", &LayoutPlan::addRelative}};
    if (!object.isObject()) return text_.fault(object, "'layouts' expected objects");
    if (!text_.takePart(object)) return;
    vlMemory::String type;
    if (!text_.readRequired(object, "type", type)) return;
    const auto* found =
            std::ranges::find(TYPES, type, [](const auto& known) { return known.type; });
    if (found == std::end(TYPES))
        return text_.fault(*object.find("type"), "unknown layout type '{}'", shown(type));
    if (Component* parent = readParent(object)) (this->*found->add)({object, *parent});
}

Component* LayoutPlan::readParent(const Node& object) {
    vlMemory::String name;
    if (!text_.readRequired(object, "parent", name)) return nullptr;
    Component* parent = ComponentManager::get(name);
    const Node& at = *object.find("parent");
    if (parent == nullptr) {
        text_.fault(at, "parent '{}' does not exist", shown(name));
        return nullptr;
    }
    if (ComponentKeys::isContainer(parent->getType())) return parent;
    text_.fault(at,
                "parent '{}' is a {}, which holds no components",
                shown(name),
                nameOf(parent->getType()));
    return nullptr;
}

template <class Layout, class IsSame>
Layout*
LayoutPlan::layoutFor(const Reading& reading, Layout fresh, const Layout* live, IsSame isSame) {
    const auto [entry, isNew] = byParent_.try_emplace(&reading.parent, arranged_.size());
    if (isNew) {
        if (live != nullptr && isSame(*live)) fresh = *live;
        arranged_.push_back({&reading.parent, std::move(fresh), reading.object.line()});
    }
    Arranged& arranged = arranged_[entry->second];
    auto* layout = std::get_if<Layout>(&arranged.layout);
    if (layout != nullptr && isSame(*layout)) return layout;
    text_.fault(reading.object,
                "'{}' is arranged otherwise in line {}",
                shown(reading.parent.getComponentName()),
                arranged.line);
    return nullptr;
}

void LayoutPlan::addGrid(const Reading& reading) {
    const Node& object = reading.object;
    text_.checkMembers(object,
                       {"parent",
                        "type",
                        "width",
                        "height",
                        "internalBorderWidth",
                        "internalBorderHeight",
                        "fixedSizeCols",
                        "fixedSizeRows",
                        "weightCols",
                        "weightRows",
                        "components"});
    unsigned columns = tracksNeeded(object, "x", "width");
    unsigned rows = tracksNeeded(object, "y", "height");
    text_.readWhole(object, "width", columns, 1, LayoutText::MOST_TRACKS);
    text_.readWhole(object, "height", rows, 1, LayoutText::MOST_TRACKS);
    GridLayout* grid = layoutFor<GridLayout>(
            reading, {columns, rows}, reading.parent.getLayout(), [&](const GridLayout& other) {
                return other.getColumnCount() == columns && other.getRowCount() == rows;
            });
    if (grid == nullptr) return;
    unsigned width = grid->getInternalBorderWidth();
    unsigned height = grid->getInternalBorderHeight();
    text_.readWhole(object, "internalBorderWidth", width, 0, LayoutText::LARGEST_SIZE);
    text_.readWhole(object, "internalBorderHeight", height, 0, LayoutText::LARGEST_SIZE);
    grid->setInternalBorders(width, height);
    for (const TrackList& list : TRACK_LISTS)
        readTracks(text_, object, list, *grid);
    for (const Node& placement : text_.elements(object, "components"))
        placeInGrid(placement, reading.parent, *grid);
}

void LayoutPlan::addRelative(const Reading& reading) {
    text_.checkMembers(reading.object, {"parent", "type", "components"});
    RelativeLayout* layout = layoutFor<RelativeLayout>(
            reading, {}, reading.parent.getRelativeLayout(), [](const auto&) { return true; });
    if (layout == nullptr) return;
    for (const Node& placement : text_.elements(reading.object, "components"))
        placeRelative(placement, reading.parent, *layout);
}

void LayoutPlan::placeInGrid(const Node& object, Component& parent, GridLayout& grid) {
    if (!object.isObject()) return text_.fault(object, "'components' expected objects");
    text_.checkMembers(object, {"name", "x", "y", "width", "height"});
    GridLayout::Placement place;
    const auto read = [&](vlMemory::StringView member, unsigned& value, unsigned least) {
        return object.find(member) == nullptr ||
               text_.readWhole(object, member, value, least, LayoutText::MOST_TRACKS);
    };
    if (!read("x", place.x, 0) || !read("y", place.y, 0) || !read("width", place.width, 1) ||
        !read("height", place.height, 1))
        return;
    if (place.x + place.width > grid.getColumnCount() ||
        place.y + place.height > grid.getRowCount())
        return text_.fault(object,
                           "cell ({}, {}) spanning {} by {} is outside the grid of {} by {}",
                           place.x,
                           place.y,
                           place.width,
                           place.height,
                           grid.getColumnCount(),
                           grid.getRowCount());
    if (const Component* component = takeComponent(object, parent))
        grid.addComponent(*component, place.x, place.y, place.width, place.height);
}

void LayoutPlan::placeRelative(const Node& object, Component& parent, RelativeLayout& layout) {
    using Position = RelativeLayout::Position;
    static constexpr vlExport::EnumText<Position> POSITIONS[] = {
            {Position::Right, "RIGHT"},
            {Position::Left, "LEFT"},
            {Position::Above, "ABOVE"},
            {Position::Under, "UNDER"},
    };
    if (!object.isObject()) return text_.fault(object, "'components' expected objects");
    text_.checkMembers(object, {"name", "area", "relativeTo", "position"});
    Rectangle area;
    if (!readRectangle(text_, object, area)) return;
    const Component* component = takeComponent(object, parent);
    if (component == nullptr) return;
    layout.addComponent(*component, area);
    vlMemory::String otherName;
    auto position = Position::Right;
    text_.read(object, "position", position, POSITIONS);
    if (!text_.read(object, "relativeTo", otherName)) return;
    if (const Component* other = ComponentManager::get(otherName))
        layout.addComponent(*component, area, *other, position);
    else
        text_.fault(object, "'relativeTo' names '{}', which does not exist", shown(otherName));
}

Component* LayoutPlan::takeComponent(const Node& placement, const Component& parent) {
    if (!text_.takePart(placement)) return nullptr;
    vlMemory::String name;
    if (!text_.readRequired(placement, "name", name)) return nullptr;
    Component* component = ComponentManager::get(name);
    if (component == nullptr) {
        text_.fault(placement, "component '{}' does not exist", shown(name));
        return nullptr;
    }
    if (!mayGoInto(placement, *component, parent)) return nullptr;
    leaveFormerPlace(*component, parent);
    places_[component] = {byParent_.at(&parent), placement.line()};
    return component;
}

bool LayoutPlan::mayGoInto(const Node& placement,
                           const Component& component,
                           const Component& parent) {
    const std::string name = shown(component.getComponentName());
    if (!ComponentKeys::typeOf(nameOf(component.getType()))) {
        text_.fault(
                placement, "'{}' is a {}, which is not placed", name, nameOf(component.getType()));
        return false;
    }
    std::size_t depth = 0;
    for (const Component* at = &parent; at != nullptr; at = futureParentOf(*at)) {
        if (at == &component) {
            text_.fault(placement,
                        "'{}' cannot be placed inside '{}', which is inside it",
                        name,
                        shown(parent.getComponentName()));
            return false;
        }
        if (++depth <= LayoutText::DEEPEST) continue;
        text_.fault(placement, "'{}' lies more than {} deep", name, LayoutText::DEEPEST);
        return false;
    }
    return true;
}

const Component* LayoutPlan::futureParentOf(const Component& component) const {
    const auto place = places_.find(&component);
    return place == places_.end() ? component.getParent()
                                  : arranged_[place->second.arranged].parent;
}

void LayoutPlan::leaveFormerPlace(const Component& component, const Component& parent) {
    const auto leave = [&](auto& layout) { layout.removeComponent(component); };
    const auto former = byParent_.find(futureParentOf(component));
    if (former != byParent_.end() && former->first != &parent)
        std::visit(leave, arranged_[former->second].layout);
    Component* live = component.getParent();
    if (live == nullptr || live == &parent) return;
    if (GridLayout* grid = live->getLayout()) leave(*grid);
    if (RelativeLayout* layout = live->getRelativeLayout()) leave(*layout);
}

/// A chain of placements may have been told from the inside out.
void LayoutPlan::dropTooDeep() {
    std::vector<std::pair<const Component*, Place>> dropped;
    for (const auto& [component, place] : places_) {
        std::size_t depth = 0;
        const Component* at = component;
        while (depth <= LayoutText::DEEPEST && (at = futureParentOf(*at)) != nullptr)
            ++depth;
        if (depth > LayoutText::DEEPEST) dropped.emplace_back(component, place);
    }
    std::ranges::sort(dropped, {}, [](const auto& entry) { return entry.second.line; });
    for (const auto& [component, place] : dropped) {
        text_.faultAt(place.line,
                      "'{}' lies more than {} deep",
                      shown(component->getComponentName()),
                      LayoutText::DEEPEST);
        std::visit([&](auto& layout) { layout.removeComponent(*component); },
                   arranged_[place.arranged].layout);
    }
}

void LayoutPlan::checkNeighbours(RelativeLayout& layout) {
    std::vector<RelativeLayout::Placement> alone;
    inOrder(layout.getPlacements(), [&](const auto& placement, bool isThere) {
        const auto place = places_.find(ComponentManager::get(placement.component));
        text_.faultAt(place == places_.end() ? 0 : place->second.line,
                      "'{}' cannot stand beside '{}', which {}",
                      shown(placement.component),
                      shown(placement.relativeTo),
                      isThere ? "follows it" : "is not placed in the same layout");
        alone.push_back(placement);
    });
    for (const RelativeLayout::Placement& placement : alone)
        if (const Component* component = ComponentManager::get(placement.component))
            layout.addComponent(*component, placement.area);
}

void LayoutPlan::show() {
    dropTooDeep();
    for (Arranged& arranged : arranged_) {
        if (auto* relative = std::get_if<RelativeLayout>(&arranged.layout))
            checkNeighbours(*relative);
        std::visit([&](auto& layout) { arranged.parent->setLayout(std::move(layout)); },
                   arranged.layout);
    }
}

} // namespace vlWinUi
