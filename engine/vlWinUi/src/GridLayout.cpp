#include "CellLayout.h"
#include "Log.h"
#include "Native.h"

#include <vlCommon/ThreadBorder.h>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

GridLayout::Track*
trackAt(std::vector<GridLayout::Track>& tracks, unsigned index, const char* what) {
    if (index < tracks.size()) return &tracks[index];
    logLine("grid layout: {} {} is outside its {} {}s", what, index, tracks.size(), what);
    return nullptr;
}

void insertTrack(std::vector<GridLayout::Track>& tracks,
                 std::vector<GridLayout::Placement>& placements,
                 unsigned index,
                 unsigned GridLayout::Placement::*start,
                 unsigned GridLayout::Placement::*span) {
    tracks.insert(tracks.begin() + index, GridLayout::Track{});
    for (GridLayout::Placement& place : placements) {
        if (place.*start >= index)
            ++(place.*start);
        else if (place.*start + place.*span > index)
            ++(place.*span);
    }
}

void removeTrack(std::vector<GridLayout::Track>& tracks,
                 std::vector<GridLayout::Placement>& placements,
                 unsigned index,
                 unsigned GridLayout::Placement::*start,
                 unsigned GridLayout::Placement::*span) {
    if (index >= tracks.size() || tracks.size() == 1) return;
    tracks.erase(tracks.begin() + index);
    for (GridLayout::Placement& place : placements) {
        if (place.*start > index)
            --(place.*start);
        else if (place.*start + place.*span > index)
            --(place.*span);
    }
    std::erase_if(placements, [span](const auto& place) { return place.*span == 0; });
}

} // namespace

GridLayout::GridLayout(unsigned columns, unsigned rows)
    : columns_(std::max(columns, 1U)), rows_(std::max(rows, 1U)) {
}

void GridLayout::addComponent(
        const Component& component, unsigned x, unsigned y, unsigned width, unsigned height) {
    const bool inside = width > 0 && height > 0 && x < columns_.size() && y < rows_.size() &&
                        width <= columns_.size() - x && height <= rows_.size() - y;
    if (!inside) {
        logLine("grid layout: '{}' at ({}, {}) spanning {} by {} is outside the grid of {} by {}",
                component.getComponentName(),
                x,
                y,
                width,
                height,
                columns_.size(),
                rows_.size());
        return;
    }
    const Placement place{component.getComponentName(), x, y, width, height};
    const auto found = std::ranges::find(placements_, place.component, &Placement::component);
    if (found == placements_.end())
        placements_.push_back(place);
    else
        *found = place;
}

bool GridLayout::removeComponent(const Component& component) {
    return std::erase_if(placements_, [&](const Placement& place) {
               return place.component == component.getComponentName();
           }) != 0;
}

const GridLayout::Placement* GridLayout::getPlacement(const Component& component) const {
    const auto found =
            std::ranges::find(placements_, component.getComponentName(), &Placement::component);
    return found == placements_.end() ? nullptr : &*found;
}

void GridLayout::insertColumn(unsigned index) {
    index = std::min(index, getColumnCount());
    insertTrack(columns_, placements_, index, &Placement::x, &Placement::width);
    for (auto& cell : borderless_)
        if (cell.first >= index) ++cell.first;
}

void GridLayout::insertRow(unsigned index) {
    index = std::min(index, getRowCount());
    insertTrack(rows_, placements_, index, &Placement::y, &Placement::height);
    for (auto& cell : borderless_)
        if (cell.second >= index) ++cell.second;
}

void GridLayout::removeColumn(unsigned index) {
    removeTrack(columns_, placements_, index, &Placement::x, &Placement::width);
    std::erase_if(borderless_, [index](const auto& cell) { return cell.first == index; });
    for (auto& cell : borderless_)
        if (cell.first > index) --cell.first;
}

void GridLayout::removeRow(unsigned index) {
    removeTrack(rows_, placements_, index, &Placement::y, &Placement::height);
    std::erase_if(borderless_, [index](const auto& cell) { return cell.second == index; });
    for (auto& cell : borderless_)
        if (cell.second > index) --cell.second;
}

void GridLayout::setFixedSizeColumn(unsigned index, float pixels) {
    if (Track* column = trackAt(columns_, index, "column"))
        column->fixedSize = std::max(pixels, 0.0F);
}

void GridLayout::setFixedSizeRow(unsigned index, float pixels) {
    if (Track* row = trackAt(rows_, index, "row")) row->fixedSize = std::max(pixels, 0.0F);
}

void GridLayout::setWeightColumn(unsigned index, float weight) {
    if (Track* column = trackAt(columns_, index, "column"))
        *column = {std::nullopt, std::max(weight, 0.0F)};
}

void GridLayout::setWeightRow(unsigned index, float weight) {
    if (Track* row = trackAt(rows_, index, "row")) *row = {std::nullopt, std::max(weight, 0.0F)};
}

void GridLayout::setInternalBorders(unsigned width, unsigned height) {
    borderWidth_ = width;
    borderHeight_ = height;
}

void GridLayout::ignoreInternalBorder(unsigned x, unsigned y, bool ignored) {
    std::erase(borderless_, std::pair(x, y));
    if (ignored) borderless_.emplace_back(x, y);
}

bool GridLayout::isInternalBorderIgnored(unsigned x, unsigned y) const {
    return std::ranges::find(borderless_, std::pair(x, y)) != borderless_.end();
}

void GridLayout::update() {
    vlCommon::assertUiThread();
    if (owner_ == nullptr) return;
    QWidget* content = owner_->native().content();
    auto* cells = dynamic_cast<CellLayout*>(content->layout());
    if (cells == nullptr) cells = new CellLayout(content);
    cells->show(*this);
}

void GridLayout::renameComponent(const std::string& name, const std::string& newName) {
    for (Placement& place : placements_)
        if (place.component == name) place.component = newName;
}

} // namespace vlWinUi
