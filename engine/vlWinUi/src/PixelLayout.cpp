#include "PixelLayout.h"

#include "Log.h"

#include <algorithm>
#include <unordered_map>

namespace vlWinUi {
namespace {

constexpr int FARTHEST = 1'000'000; ///< pixels from the parent's corner

QSize sizeOf(const RelativeLayout::Placement& placement, const QLayoutItem& item) {
    const QSize natural = item.isEmpty() ? QSize(0, 0) : item.sizeHint();
    QSize size(placement.area.width, placement.area.height);
    if (size.width() <= 0) size.setWidth(natural.width());
    if (size.height() <= 0) size.setHeight(natural.height());
    const QWidget& widget = *item.widget();
    return size.boundedTo(widget.maximumSize()).expandedTo(widget.minimumSize());
}

/// Where the corner is when it touches the other one.
QPoint cornerAt(const QRect& other, RelativeLayout::Position position, const QSize& size) {
    using Position = RelativeLayout::Position;
    switch (position) {
    case Position::Left:
        return {other.left() - size.width(), other.top()};
    case Position::Above:
        return {other.left(), other.top() - size.height()};
    case Position::Under:
        return {other.left(), other.top() + other.height()};
    default:
        return {other.left() + other.width(), other.top()};
    }
}

} // namespace

std::vector<RelativeLayout::Placement>
inOrder(const std::vector<RelativeLayout::Placement>& placements,
        const std::function<void(const RelativeLayout::Placement&, bool)>& report) {
    std::unordered_map<std::string_view, std::size_t> indices;
    for (std::size_t i = 0; i < placements.size(); ++i)
        indices.emplace(placements[i].component, i);
    enum class State { Waiting, Underway, Placed };
    std::vector<State> states(placements.size(), State::Waiting);
    std::vector<RelativeLayout::Placement> ordered;
    std::vector<std::size_t> chain; // each beside the one behind it
    for (std::size_t i = 0; i < placements.size(); ++i) {
        for (std::size_t at = i; states[at] == State::Waiting;) {
            states[at] = State::Underway;
            chain.push_back(at);
            const auto other = indices.find(placements[at].relativeTo);
            if (other != indices.end()) at = other->second;
        }
        for (; !chain.empty(); chain.pop_back()) {
            RelativeLayout::Placement& placed = ordered.emplace_back(placements[chain.back()]);
            const auto other = indices.find(placed.relativeTo);
            const bool isThere = other != indices.end();
            const bool isBefore = isThere && states[other->second] == State::Placed;
            states[chain.back()] = State::Placed;
            if (placed.relativeTo.empty() || isBefore) continue;
            report(placed, isThere);
            placed.relativeTo.clear();
        }
    }
    return ordered;
}

void PixelLayout::show(const RelativeLayout& layout) {
    place(inOrder(layout.getPlacements(), [](const auto& placement, bool isThere) {
        logLine("relative layout: '{}' cannot stand beside '{}', which {}",
                placement.component,
                placement.relativeTo,
                isThere ? "follows it" : "is not placed in the same layout");
    }));
}

std::vector<QRect> PixelLayout::places() const {
    std::unordered_map<std::string_view, std::size_t> indices;
    std::vector<QRect> rectangles;
    for (const Cell& cell : cells_) {
        const Rectangle& area = cell.placement.area;
        const QSize size = sizeOf(cell.placement, *cell.item);
        QPoint corner(area.x, area.y);
        const auto other = indices.find(cell.placement.relativeTo);
        if (other != indices.end())
            corner += cornerAt(rectangles[other->second], cell.placement.position, size);
        corner.setX(std::clamp(corner.x(), -FARTHEST, FARTHEST));
        corner.setY(std::clamp(corner.y(), -FARTHEST, FARTHEST));
        indices.emplace(cell.placement.component, rectangles.size());
        rectangles.emplace_back(corner, size);
    }
    return rectangles;
}

void PixelLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    const std::vector<QRect> rectangles = places();
    for (std::size_t i = 0; i < cells_.size(); ++i)
        cells_[i].item->widget()->setGeometry(rectangles[i].translated(area.topLeft()));
}

QSize PixelLayout::minimumSize() const {
    QSize size(0, 0);
    for (const QRect& rectangle : places())
        size = size.expandedTo({rectangle.right() + 1, rectangle.bottom() + 1});
    return size.grownBy(contentsMargins());
}

} // namespace vlWinUi
