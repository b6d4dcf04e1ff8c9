#pragma once
#include "Native.h"

#include <vlWinUi/ComponentManager.h>

#include <QLayout>
#include <QSet>
#include <QWidget>

#include <memory>
#include <vector>

namespace vlWinUi {

/** What arranges the components placed in another one. Owned by the widget that they are in. */
class ComponentLayout : public QLayout {
public:
    explicit ComponentLayout(QWidget* parent) : QLayout(parent) {
        setContentsMargins(0, 0, 0, 0);
        setSizeConstraint(SetNoConstraint);
    }

    /// True when it was placed here.
    virtual bool take(QWidget* widget) = 0;
    /// All that is placed here leaves the view.
    virtual void clear() = 0;

    QSize sizeHint() const override { return minimumSize(); }
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }
};

/** Holds the components of a list of placements, found by their names. */
template <class Placement> class PlacedLayout : public ComponentLayout {
public:
    using ComponentLayout::ComponentLayout;

    bool take(QWidget* widget) override {
        const auto removed = std::erase_if(
                cells_, [&](const Cell& cell) { return cell.item->widget() == widget; });
        if (removed != 0) invalidate();
        return removed != 0;
    }
    void clear() override { place({}); }

    void addItem(QLayoutItem* item) override {
        cells_.push_back({std::unique_ptr<QLayoutItem>(item), {}});
    }
    int count() const override { return static_cast<int>(cells_.size()); }
    QLayoutItem* itemAt(int index) const override {
        const auto at = static_cast<std::size_t>(index);
        return index >= 0 && at < cells_.size() ? cells_[at].item.get() : nullptr;
    }
    QLayoutItem* takeAt(int index) override {
        if (itemAt(index) == nullptr) return nullptr;
        QLayoutItem* item = cells_[static_cast<std::size_t>(index)].item.release();
        cells_.erase(cells_.begin() + index);
        return item;
    }

protected:
    struct Cell {
        std::unique_ptr<QLayoutItem> item;
        Placement placement;
    };

    /// In place of all that it held; what is not placed any more leaves the view. The keyboard
    /// goes from one to the next in the order of the placements.
    void place(const std::vector<Placement>& placements) {
        std::vector<QPointer<QWidget>> before;
        for (const Cell& cell : cells_)
            before.emplace_back(cell.item->widget());
        cells_.clear();
        // Each child that comes makes whoever watches ask for the size: it is to be small work, and
        // so the cells follow once all are there.
        std::vector<Cell> cells;
        QSet<const QWidget*> placed;
        QWidget* previous = nullptr;
        for (const Placement& placement : placements) {
            Component* component = ComponentManager::get(placement.component);
            if (component == nullptr) continue;
            QWidget* widget = component->native().widget;
            addChildWidget(widget);
            cells.push_back({std::make_unique<QWidgetItemV2>(widget), placement});
            placed.insert(widget);
            if (previous != nullptr) QWidget::setTabOrder(previous, widget);
            previous = widget;
        }
        cells_ = std::move(cells);
        for (const auto& widget : before) {
            Component* component = Native::componentOf(widget);
            if (component != nullptr && !placed.contains(widget))
                component->native().takeOutOfView();
        }
        invalidate();
    }

    std::vector<Cell> cells_;
};

/// The content's layout of that kind, made if need be, in place of one of another kind.
template <class Layout> Layout& layoutOf(QWidget& content) {
    if (auto* same = dynamic_cast<Layout*>(content.layout())) return *same;
    if (auto* other = dynamic_cast<ComponentLayout*>(content.layout())) {
        other->clear();
        delete other;
    }
    return *new Layout(&content);
}

} // namespace vlWinUi
