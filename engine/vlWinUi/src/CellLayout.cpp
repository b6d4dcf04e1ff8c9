#include "CellLayout.h"

#include "Native.h"

#include <vlWinUi/ComponentManager.h>

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

constexpr int LINE_HEIGHT = 24; ///< pixels

/// Limits that a component sets itself count; beyond that, what its widget needs to be usable.
QSize usefulSize(const QLayoutItem& item) {
    return item.isEmpty() ? QSize(0, 0) : item.minimumSize();
}

/// A component that may not fill its cells stands at their left, in the middle of their height.
/// What is one line by nature (a button, an edit) gets no taller than looks right.
QRect within(const QRect& cells, QLayoutItem& item) {
    const QWidget& widget = *item.widget();
    QSize most = widget.maximumSize();
    if (widget.sizePolicy().verticalPolicy() == QSizePolicy::Fixed)
        most.setHeight(std::min(most.height(), std::max(item.sizeHint().height(), LINE_HEIGHT)));
    const QSize size = cells.size().boundedTo(most).expandedTo(QSize(0, 0));
    return {QPoint(cells.left(), cells.top() + (cells.height() - size.height()) / 2), size};
}

} // namespace

CellLayout::CellLayout(QWidget* parent) : QLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
    setSizeConstraint(SetNoConstraint);
}

CellLayout::~CellLayout() {
    dropBorders();
}

void CellLayout::show(const GridLayout& grid) {
    std::vector<QPointer<QWidget>> before;
    for (const Cell& cell : cells_)
        before.emplace_back(cell.item->widget());
    cells_.clear();
    grid_ = grid;
    QWidget* previous = nullptr;
    for (const GridLayout::Placement& placement : grid.getPlacements()) {
        Component* component = ComponentManager::get(placement.component);
        if (component == nullptr) continue;
        QWidget* widget = component->native().widget;
        addChildWidget(widget);
        cells_.push_back({std::make_unique<QWidgetItemV2>(widget), placement});
        if (previous != nullptr) QWidget::setTabOrder(previous, widget);
        previous = widget;
    }
    for (const auto& widget : before) {
        const bool kept = std::ranges::any_of(
                cells_, [&](const Cell& cell) { return cell.item->widget() == widget; });
        Component* component = Native::componentOf(widget);
        if (!kept && component != nullptr) component->native().takeOutOfView();
    }
    dropBorders();
    if (grid_.isDraggable()) makeBorders();
    invalidate();
}

bool CellLayout::take(QWidget* widget) {
    const auto removed =
            std::erase_if(cells_, [&](const Cell& cell) { return cell.item->widget() == widget; });
    if (removed != 0) invalidate();
    return removed != 0;
}

void CellLayout::addItem(QLayoutItem* item) {
    cells_.push_back({std::unique_ptr<QLayoutItem>(item), {}});
}

QLayoutItem* CellLayout::itemAt(int index) const {
    const auto at = static_cast<std::size_t>(index);
    return index >= 0 && at < cells_.size() ? cells_[at].item.get() : nullptr;
}

QLayoutItem* CellLayout::takeAt(int index) {
    if (itemAt(index) == nullptr) return nullptr;
    QLayoutItem* item = cells_[static_cast<std::size_t>(index)].item.release();
    cells_.erase(cells_.begin() + index);
    return item;
}

QSize CellLayout::border(const Cell& cell) const {
    if (grid_.isInternalBorderIgnored(cell.placement.x, cell.placement.y)) return {0, 0};
    return {static_cast<int>(grid_.getInternalBorderWidth()),
            static_cast<int>(grid_.getInternalBorderHeight())};
}

TrackSizes CellLayout::columns() const {
    std::vector<TrackSizes::Need> needs;
    for (const Cell& cell : cells_) {
        const int pixels = usefulSize(*cell.item).width() + 2 * border(cell).width();
        needs.push_back({cell.placement.x, cell.placement.width, static_cast<double>(pixels)});
    }
    return {grid_.getColumns(), std::move(needs)};
}

TrackSizes CellLayout::rows() const {
    std::vector<TrackSizes::Need> needs;
    for (const Cell& cell : cells_) {
        const int pixels = usefulSize(*cell.item).height() + 2 * border(cell).height();
        needs.push_back({cell.placement.y, cell.placement.height, static_cast<double>(pixels)});
    }
    return {grid_.getRows(), std::move(needs)};
}

void CellLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    const std::vector<int> x = columns().edges(area.width());
    const std::vector<int> y = rows().edges(area.height());
    for (const Cell& cell : cells_) {
        const auto& place = cell.placement;
        const QPoint from(x[place.x], y[place.y]);
        const QPoint to(x[place.x + place.width], y[place.y + place.height]);
        const QSize inset = border(cell);
        const QRect cells(area.topLeft() + from + QPoint(inset.width(), inset.height()),
                          area.topLeft() + to - QPoint(inset.width() + 1, inset.height() + 1));
        // Past the item, which would hold one-line widgets to their smallest height.
        cell.item->widget()->setGeometry(within(cells, *cell.item));
    }
    placeBorders(area, x, y);
}

QSize CellLayout::minimumSize() const {
    const QMargins margins = contentsMargins();
    return QSize(static_cast<int>(std::ceil(columns().minimum())),
                 static_cast<int>(std::ceil(rows().minimum())))
            .grownBy(margins);
}

QSize CellLayout::sizeHint() const {
    return minimumSize();
}

} // namespace vlWinUi
