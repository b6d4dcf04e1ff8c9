#include "interfaces/InterfaceContainerManipulator.h"

#include "interfaces/InterfaceContainerCreator.h"

#include <vlWinUi/ComponentManager.h>

#include <algorithm>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;
using vlWinUi::GridLayout;
using vlWinUi::Window;

constexpr std::string_view splitPrefix = "SPLIT_";
constexpr unsigned border = 4;

/** One direction of a grid. */
struct Axis {
    bool columns = true;

    unsigned count(const GridLayout& grid) const {
        return columns ? grid.getColumnCount() : grid.getRowCount();
    }
    unsigned startOf(const GridLayout::Placement& place) const {
        return columns ? place.x : place.y;
    }
    GridLayout::Track track(const GridLayout& grid, unsigned index) const {
        return (columns ? grid.getColumns() : grid.getRows())[index];
    }
    void setTrack(GridLayout& grid, unsigned index, const GridLayout::Track& track) const {
        if (track.fixedSize) {
            columns ? grid.setFixedSizeColumn(index, *track.fixedSize)
                    : grid.setFixedSizeRow(index, *track.fixedSize);
        } else {
            columns ? grid.setWeightColumn(index, track.weight)
                    : grid.setWeightRow(index, track.weight);
        }
    }
    void insert(GridLayout& grid, unsigned index) const {
        columns ? grid.insertColumn(index) : grid.insertRow(index);
    }
    void remove(GridLayout& grid, unsigned index) const {
        columns ? grid.removeColumn(index) : grid.removeRow(index);
    }
    void place(GridLayout& grid, const vlWinUi::Component& what, unsigned index) const {
        grid.addComponent(what, columns ? index : 0, columns ? 0 : index);
    }
    Axis other() const { return {!columns}; }
};

GridLayout* gridAround(const vlWinUi::Component& component) {
    vlWinUi::Component* parent = component.getParent();
    GridLayout* grid = parent == nullptr ? nullptr : parent->getLayout();
    return grid != nullptr && grid->getPlacement(component) != nullptr ? grid : nullptr;
}

Window& newContainer() {
    return InterfaceContainerCreator::getInstance().createContainer();
}

/// Puts `inner` where `outer` holds it now into a panel that takes its place. It goes over directly
/// from the one to the other, so that a viewport in it is never without a window around it.
GridLayout& wrap(GridLayout& outer, const vlWinUi::Component& inner) {
    const GridLayout::Placement place = *outer.getPlacement(inner);
    Window& split = InterfaceContainerManipulator::createSplit();
    GridLayout& grid = split.setLayout(InterfaceContainerManipulator::emptyLayout(1, 1));
    outer.addComponent(split, place.x, place.y, place.width, place.height);
    outer.update();
    grid.addComponent(inner, 0, 0);
    if (InterfaceContainerManipulator::isSplit(inner)) grid.ignoreInternalBorder(0, 0);
    grid.update();
    outer.removeComponent(inner);
    outer.ignoreInternalBorder(place.x, place.y);
    outer.update();
    return grid;
}

/// The last part of a panel takes the panel's place.
void unwrap(Window& split) {
    GridLayout* outer = gridAround(split);
    GridLayout& grid = *split.getLayout();
    if (outer == nullptr || grid.getPlacements().size() != 1) return;
    const GridLayout::Placement place = *outer->getPlacement(split);
    vlWinUi::Component* inner = ComponentManager::get(grid.getPlacements().front().component);
    if (inner == nullptr) return;
    outer->addComponent(*inner, place.x, place.y, place.width, place.height);
    outer->update();
    grid.removeComponent(*inner);
    outer->removeComponent(split);
    outer->ignoreInternalBorder(place.x, place.y, InterfaceContainerManipulator::isSplit(*inner));
    outer->update();
    ComponentManager::erase(split.getComponentName());
}

/// Takes a column or row out and leaves its room to the neighbour; one that stays alone takes all.
void removeTrack(GridLayout& grid, Axis axis, unsigned index) {
    const GridLayout::Track gone = axis.track(grid, index);
    axis.remove(grid, index);
    const unsigned neighbour = index > 0 ? index - 1 : 0;
    GridLayout::Track heir = axis.track(grid, neighbour);
    bool shared = false;
    for (unsigned i = 0; i < axis.count(grid); ++i)
        shared = shared || !axis.track(grid, i).fixedSize;
    if (!shared)
        heir = {std::nullopt, 1.0F};
    else if (!gone.fixedSize && !heir.fixedSize)
        heir.weight += gone.weight;
    else if (gone.fixedSize && heir.fixedSize)
        heir.fixedSize = *heir.fixedSize + *gone.fixedSize;
    axis.setTrack(grid, neighbour, heir);
}

/// All that is in a page divided into rows goes into a panel, so that there can be columns.
void makeOnePart(GridLayout& grid) {
    const GridLayout whole = grid;
    Window& split = InterfaceContainerManipulator::createSplit();
    grid.addComponent(split, 0, 0, 1, grid.getRowCount());
    grid.update();
    split.setLayout(whole);
    for (const GridLayout::Placement& place : whole.getPlacements()) {
        const auto* part = ComponentManager::get(place.component);
        if (part != nullptr) grid.removeComponent(*part);
    }
    while (grid.getRowCount() > 1)
        grid.removeRow(grid.getRowCount() - 1);
    grid.setWeightRow(0, 1);
    grid.ignoreInternalBorder(0, 0);
    grid.update();
}

float meanWeight(const GridLayout& grid, Axis axis) {
    float sum = 0;
    unsigned count = 0;
    for (unsigned i = 0; i < axis.count(grid); ++i) {
        const GridLayout::Track track = axis.track(grid, i);
        if (track.fixedSize) continue;
        sum += track.weight;
        ++count;
    }
    return count == 0 ? 1.0F : sum / static_cast<float>(count);
}

/// The part of a grid divided that way which the container is, or is in; in a page that is not
/// divided so, the page's own.
std::pair<GridLayout*, unsigned> trackOf(const Window& container, Axis axis) {
    const vlWinUi::Component* part = &container;
    while (GridLayout* grid = gridAround(*part)) {
        const vlWinUi::Component* parent = part->getParent();
        if (axis.count(*grid) > 1 || !InterfaceContainerManipulator::isSplit(*parent))
            return {grid, axis.startOf(*grid->getPlacement(*part))};
        part = parent;
    }
    return {nullptr, 0};
}

void setFixedSize(const Window& container, Axis axis, long pixels) {
    const auto [grid, index] = trackOf(container, axis);
    if (grid == nullptr) return;
    const long size = std::clamp(pixels, 0L, InterfaceContainerManipulator::largestFixedSize);
    axis.setTrack(*grid, index, {static_cast<float>(size), 1.0F});
    grid->update();
}

unsigned sizeOf(const Window& container, Axis axis) {
    const vlWinUi::Component* part = &container;
    while (const GridLayout* grid = gridAround(*part)) {
        const vlWinUi::Component* parent = part->getParent();
        if (axis.count(*grid) > 1 || !InterfaceContainerManipulator::isSplit(*parent)) break;
        part = parent;
    }
    // A panel fills its place, a container keeps the border free.
    const unsigned around = InterfaceContainerManipulator::isSplit(*part) ? 0 : 2 * border;
    return (axis.columns ? part->getWidth() : part->getHeight()) + around;
}

void collect(const GridLayout& grid, std::vector<Window*>& found) {
    std::vector<GridLayout::Placement> places = grid.getPlacements();
    std::ranges::stable_sort(
            places, {}, [](const auto& place) { return std::pair(place.x, place.y); });
    for (const auto& place : places) {
        auto* part = ComponentManager::get<Window>(place.component);
        if (part == nullptr) continue;
        if (InterfaceContainerManipulator::isSplit(*part))
            collect(*part->getLayout(), found);
        else
            found.push_back(part);
    }
}

} // namespace

GridLayout InterfaceContainerManipulator::emptyLayout(unsigned columns, unsigned rows) {
    GridLayout layout(columns, rows);
    layout.setInternalBorders(border, border);
    layout.setDraggable(true);
    return layout;
}

GridLayout InterfaceContainerManipulator::layoutWith(const vlWinUi::Component& content) {
    GridLayout layout = emptyLayout(1, 1);
    layout.addComponent(content, 0, 0);
    return layout;
}

Window& InterfaceContainerManipulator::createSplit() {
    static unsigned number = 0;
    std::string name;
    do
        name = std::string(splitPrefix) + std::to_string(number++);
    while (ComponentManager::get(name) != nullptr);
    auto& split = *ComponentManager::createOrRetrieve<Window>(name);
    split.setScrolling(false);
    return split;
}

bool InterfaceContainerManipulator::isSplit(const vlWinUi::Component& component) {
    return component.getComponentName().starts_with(splitPrefix);
}

Window& InterfaceContainerManipulator::addContainer(Window& container, ContainerSide side) {
    const bool beside = side == ContainerSide::left || side == ContainerSide::right;
    const bool before = side == ContainerSide::left || side == ContainerSide::above;
    const Axis axis{beside};
    Window& made = newContainer();
    GridLayout* grid = gridAround(container);
    if (grid == nullptr) return made;
    if (axis.other().count(*grid) > 1) grid = &wrap(*grid, container);
    const unsigned index = axis.startOf(*grid->getPlacement(container));
    GridLayout::Track half = axis.track(*grid, index);
    if (half.fixedSize) half.fixedSize = *half.fixedSize / 2;
    half.weight /= 2;
    axis.insert(*grid, before ? index : index + 1);
    axis.setTrack(*grid, index, half);
    axis.setTrack(*grid, index + 1, half);
    axis.place(*grid, made, before ? index : index + 1);
    grid->update();
    return made;
}

Window& InterfaceContainerManipulator::addContainerAtEnd(Window& page) {
    constexpr Axis axis{true};
    GridLayout& grid = *page.getLayout();
    if (grid.getRowCount() > 1) makeOnePart(grid);
    const unsigned index = grid.getColumnCount();
    const float weight = meanWeight(grid, axis);
    Window& made = newContainer();
    axis.insert(grid, index);
    axis.setTrack(grid, index, {std::nullopt, weight});
    axis.place(grid, made, index);
    grid.update();
    return made;
}

void InterfaceContainerManipulator::closeContainer(Window& container) {
    GridLayout* grid = gridAround(container);
    if (grid == nullptr) return;
    vlWinUi::Component& parent = *container.getParent();
    auto& creator = InterfaceContainerCreator::getInstance();
    if (grid->getPlacements().size() == 1) {
        const GridLayout::Placement place = *grid->getPlacement(container);
        creator.eraseContainer(container);
        grid->addComponent(newContainer(), place.x, place.y, place.width, place.height);
        Axis{true}.setTrack(*grid, place.x, {});
        Axis{false}.setTrack(*grid, place.y, {});
        grid->update();
        return;
    }
    const Axis axis{grid->getColumnCount() > 1};
    const unsigned index = axis.startOf(*grid->getPlacement(container));
    creator.eraseContainer(container);
    removeTrack(*grid, axis, index);
    grid->update();
    if (isSplit(parent)) unwrap(static_cast<Window&>(parent));
}

void InterfaceContainerManipulator::setFixedWidth(Window& container, long pixels) {
    setFixedSize(container, Axis{true}, pixels);
}

void InterfaceContainerManipulator::setFixedHeight(Window& container, long pixels) {
    setFixedSize(container, Axis{false}, pixels);
}

bool InterfaceContainerManipulator::hasFixedSize(const Window& container) {
    for (const Axis axis : {Axis{true}, Axis{false}}) {
        const auto [grid, index] = trackOf(container, axis);
        if (grid != nullptr && axis.track(*grid, index).fixedSize) return true;
    }
    return false;
}

void InterfaceContainerManipulator::freeSizes(Window& container) {
    for (const Axis axis : {Axis{true}, Axis{false}}) {
        const auto [grid, index] = trackOf(container, axis);
        if (grid == nullptr || !axis.track(*grid, index).fixedSize) continue;
        axis.setTrack(*grid, index, {std::nullopt, meanWeight(*grid, axis)});
        grid->update();
    }
}

unsigned InterfaceContainerManipulator::getColumnWidth(const Window& container) {
    return sizeOf(container, Axis{true});
}

unsigned InterfaceContainerManipulator::getRowHeight(const Window& container) {
    return sizeOf(container, Axis{false});
}

std::vector<Window*> InterfaceContainerManipulator::getContainers(Window& page) {
    std::vector<Window*> found;
    if (const GridLayout* grid = page.getLayout()) collect(*grid, found);
    return found;
}

} // namespace vlEditor
