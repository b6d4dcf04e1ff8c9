#include "Call.h"
#include "CellLayout.h"
#include "Native.h"

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int THINNEST = 6; ///< pixels that a hand still finds

double sizeOf(const std::vector<int>& edges, std::size_t track) {
    return edges[track + 1] - edges[track];
}

} // namespace

void CellLayout::dropBorders() {
    // One of them may be in the middle of its own event.
    for (const Border& border : borders_) {
        if (border.handle == nullptr) continue;
        border.handle->hide();
        border.handle->deleteLater();
    }
    borders_.clear();
}

bool CellLayout::isSpanned(bool ofColumn, unsigned before, unsigned across) const {
    return std::ranges::any_of(cells_, [&](const Cell& cell) {
        const auto& at = cell.placement;
        const unsigned start = ofColumn ? at.x : at.y;
        const unsigned span = ofColumn ? at.width : at.height;
        const unsigned from = ofColumn ? at.y : at.x;
        const unsigned length = ofColumn ? at.height : at.width;
        return start <= before && before + 1 < start + span && from <= across &&
               across < from + length;
    });
}

void CellLayout::makeBorders() {
    for (const bool ofColumn : {true, false}) {
        const unsigned tracks = ofColumn ? grid_.getColumnCount() : grid_.getRowCount();
        const unsigned across = ofColumn ? grid_.getRowCount() : grid_.getColumnCount();
        for (unsigned before = 0; before + 1 < tracks; ++before) {
            unsigned first = 0;
            for (unsigned end = 0; end <= across; ++end) {
                if (end < across && !isSpanned(ofColumn, before, end)) continue;
                if (first < end) makeBorder(ofColumn, before, first, end);
                first = end + 1;
            }
        }
    }
}

void CellLayout::makeBorder(bool ofColumn, unsigned before, unsigned first, unsigned end) {
    auto* handle = new SplitHandle(parentWidget(), ofColumn);
    const Border border{handle, ofColumn, before, first, end};
    handle->pressed = [this, border] { startDrag(border); };
    handle->moved = [this, ofColumn](int pixels) { apply(ofColumn, drag_.moved(pixels)); };
    handle->released = [this] { tellDragged(); };
    handle->doubleClicked = [this, border] {
        startDrag(border);
        apply(border.ofColumn, drag_.halved());
        tellDragged();
    };
    handle->show();
    borders_.push_back(border);
}

void CellLayout::placeBorders(const QRect& area,
                              const std::vector<int>& x,
                              const std::vector<int>& y) {
    for (const Border& border : borders_) {
        if (border.handle == nullptr) continue;
        const auto& along = border.ofColumn ? x : y;
        const auto& across = border.ofColumn ? y : x;
        const unsigned gap = 2 * (border.ofColumn ? grid_.getInternalBorderWidth()
                                                  : grid_.getInternalBorderHeight());
        const int thickness = std::max(static_cast<int>(gap), THINNEST);
        const int middle = along[border.before + 1];
        const int from = across[border.first];
        const int length = across[border.end] - from;
        const QRect place = border.ofColumn
                                    ? QRect(middle - thickness / 2, from, thickness, length)
                                    : QRect(from, middle - thickness / 2, length, thickness);
        border.handle->setGeometry(place.translated(area.topLeft()));
        border.handle->raise();
    }
}

double CellLayout::minimumOf(bool ofColumn, unsigned track) const {
    int most = 0;
    for (const Cell& cell : cells_) {
        const auto& at = cell.placement;
        if ((ofColumn ? at.x : at.y) != track || (ofColumn ? at.width : at.height) != 1) continue;
        const QSize needed = cell.item->minimumSize() + 2 * border(cell);
        most = std::max(most, ofColumn ? needed.width() : needed.height());
    }
    return most;
}

void CellLayout::startDrag(const Border& border) {
    const QSize size = geometry().size();
    const std::vector<int> edges =
            border.ofColumn ? columns().edges(size.width()) : rows().edges(size.height());
    drag_ = {.tracks = border.ofColumn ? grid_.getColumns() : grid_.getRows(),
             .sizes = {},
             .before = border.before,
             .minimumBefore = minimumOf(border.ofColumn, border.before),
             .minimumBehind = minimumOf(border.ofColumn, border.before + 1)};
    for (std::size_t i = 0; i + 1 < edges.size(); ++i)
        drag_.sizes.push_back(sizeOf(edges, i));
}

GridLayout* CellLayout::heldLayout() const {
    for (const QWidget* at = parentWidget(); at != nullptr; at = at->parentWidget())
        if (Component* owner = Native::componentOf(at)) return owner->getLayout();
    return nullptr;
}

void CellLayout::apply(bool ofColumn, const std::vector<GridLayout::Track>& tracks) {
    (ofColumn ? grid_.columns_ : grid_.rows_) = tracks;
    if (GridLayout* held = heldLayout()) {
        auto& heldTracks = ofColumn ? held->columns_ : held->rows_;
        if (heldTracks.size() == tracks.size()) heldTracks = tracks;
    }
    invalidate();
    activate();
}

void CellLayout::tellDragged() {
    if (const GridLayout* held = heldLayout()) call(held->dragged_);
}

} // namespace vlWinUi
