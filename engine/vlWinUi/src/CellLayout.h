#pragma once
#include "TrackSizes.h"

#include <vlWinUi/GridLayout.h>

#include <QLayout>

#include <memory>
#include <vector>

namespace vlWinUi {

/** Lays widgets out as a GridLayout says. */
class CellLayout final : public QLayout {
public:
    explicit CellLayout(QWidget* parent);
    ~CellLayout() override;

    /// In place of all that it held; what is not placed any more leaves the view.
    void show(const GridLayout& grid);
    /// True when it was placed here.
    bool take(QWidget* widget);

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(cells_.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    void setGeometry(const QRect& area) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }

private:
    struct Cell {
        std::unique_ptr<QLayoutItem> item;
        GridLayout::Placement placement;
    };

    TrackSizes columns() const;
    TrackSizes rows() const;
    QSize border(const Cell& cell) const;

    GridLayout grid_{1, 1};
    std::vector<Cell> cells_;
};

} // namespace vlWinUi
