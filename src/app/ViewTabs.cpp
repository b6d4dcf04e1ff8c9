#include "app/ViewTabs.h"

#include "core/EditorLogger.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlWinUi/ComponentManager.h>

#include <algorithm>

namespace vlEditor {
namespace {

using Manipulator = InterfaceContainerManipulator;
using Part = WindowLayout::Part;
using vlWinUi::ComponentManager;
using vlWinUi::GridLayout;
using vlWinUi::Window;

constexpr float sceneColumnWidth = 300;

std::vector<Part> describeParts(const GridLayout& grid, bool rows);

Part describeContent(const GridLayout& grid) {
    Part part;
    part.rows = grid.getRowCount() > 1;
    part.parts = describeParts(grid, part.rows);
    return part;
}

std::vector<Part> describeParts(const GridLayout& grid, bool rows) {
    const auto& tracks = rows ? grid.getRows() : grid.getColumns();
    std::vector<Part> parts(tracks.size());
    for (const GridLayout::Placement& place : grid.getPlacements()) {
        auto* window = ComponentManager::get<Window>(place.component);
        if (window == nullptr) continue;
        const unsigned index = rows ? place.y : place.x;
        Part& part = parts[index];
        if (Manipulator::isSplit(*window)) part = describeContent(*window->getLayout());
        part.fixed = tracks[index].fixedSize.has_value();
        part.size = tracks[index].fixedSize.value_or(tracks[index].weight);
        const auto type = InterfaceContainerCreator::getInstance().getType(*window);
        const auto entry = std::ranges::find_if(
                viewMenuEntries, [&](const auto& known) { return type == known.type; });
        if (entry != viewMenuEntries.end()) part.view = entry->label;
    }
    return parts;
}

void show(Window& container, const std::string& view) {
    if (view.empty()) return;
    const auto entry = std::ranges::find(viewMenuEntries, view, &ViewMenuEntry::label);
    if (entry == viewMenuEntries.end()) {
        EditorLogger::getInstance().log("There is no view called '" + view + "'.", "Editor");
        return;
    }
    InterfaceContainerCreator::getInstance().createInterface(container, entry->type);
}

/// Gives a page or a panel its parts, and these their views once they stand in it.
void fill(Window& window, const Part& content) {
    const auto count = static_cast<unsigned>(content.parts.size());
    GridLayout layout =
            content.rows ? Manipulator::emptyLayout(1, count) : Manipulator::emptyLayout(count, 1);
    std::vector<Window*> made;
    for (unsigned i = 0; i < count; ++i) {
        const Part& part = content.parts[i];
        const bool divided = !part.parts.empty();
        made.push_back(divided ? &Manipulator::createSplit()
                               : &InterfaceContainerCreator::getInstance().createContainer());
        const unsigned x = content.rows ? 0 : i;
        const unsigned y = content.rows ? i : 0;
        layout.addComponent(*made.back(), x, y);
        layout.ignoreInternalBorder(x, y, divided);
        if (content.rows)
            part.fixed ? layout.setFixedSizeRow(i, part.size) : layout.setWeightRow(i, part.size);
        else
            part.fixed ? layout.setFixedSizeColumn(i, part.size)
                       : layout.setWeightColumn(i, part.size);
    }
    window.setLayout(std::move(layout));
    for (unsigned i = 0; i < count; ++i) {
        const Part& part = content.parts[i];
        if (part.parts.empty())
            show(*made[i], part.view);
        else
            fill(*made[i], part);
    }
}

WindowLayout::Tab firstTab() {
    Part graph;
    graph.fixed = true;
    graph.size = sceneColumnWidth;
    graph.view = "Graph Interaction View";
    Part engine;
    engine.view = "Engine View";
    Part content;
    content.parts = {graph, engine};
    return {"Scene", content};
}

} // namespace

void ViewTabs::createFirst(vlWinUi::TabWindow& tabs) {
    const WindowLayout::Tab first = firstTab();
    fill(*tabs.insertTab(0, first.label), first.content);
    tabs.select(0);
}

void ViewTabs::reset(vlWinUi::TabWindow& tabs) {
    createFirst(tabs);
    for (std::size_t i = tabs.getTabCount(); i-- > 1;)
        CommonWindowInit::closeTab(tabs, i);
}

std::vector<WindowLayout::Tab> ViewTabs::describe(const vlWinUi::TabWindow& tabs) {
    std::vector<WindowLayout::Tab> described;
    for (std::size_t i = 0; i < tabs.getTabCount(); ++i) {
        const GridLayout* grid = tabs.isTabFixed(i) ? nullptr : tabs.getPage(i)->getLayout();
        if (grid != nullptr) described.push_back({tabs.getTabLabel(i), describeContent(*grid)});
    }
    return described;
}

void ViewTabs::create(vlWinUi::TabWindow& tabs, const std::vector<WindowLayout::Tab>& described) {
    for (const WindowLayout::Tab& tab : described)
        fill(*tabs.addTab(tab.label), tab.content);
}

} // namespace vlEditor
