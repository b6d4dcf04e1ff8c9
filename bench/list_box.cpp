// Ten thousand entries that come and go one by one in a list that is in view, as when a large
// project is opened and closed: in several orders, with and without a filter and a selection. The
// longest turn of the event loop is how long a click could have waited behind the painting.
#include "Report.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace bench {
namespace {

using vlWinUi::ListBox;
using vlWinUi::System;

constexpr std::size_t entries = 10'000;

enum class Selection { None, One, All };

struct Case {
    const char* name;
    bool backwards = false;
    bool shuffled = false;
    const char* filter = "";
    Selection selection = Selection::None;
};

constexpr Case cases[] = {
        {.name = "first to last"},
        {.name = "last to first", .backwards = true},
        {.name = "any order", .shuffled = true},
        {.name = "first to last, each selected", .selection = Selection::One},
        {.name = "any order, each selected", .shuffled = true, .selection = Selection::One},
        {.name = "first to last, all selected", .selection = Selection::All},
        {.name = "any order, all selected", .shuffled = true, .selection = Selection::All},
        {.name = "any order, filtered", .shuffled = true, .filter = "7"},
};

std::vector<std::string> labels(const Case& wanted) {
    std::vector<std::size_t> order(entries);
    std::iota(order.begin(), order.end(), 0U);
    if (wanted.backwards) std::reverse(order.begin(), order.end());
    if (wanted.shuffled) std::shuffle(order.begin(), order.end(), std::mt19937(7));
    std::vector<std::string> names;
    for (const std::size_t number : order)
        names.push_back(fmt::format("rusty_metal_{}", number));
    return names;
}

double turn() {
    const double before = nowMs();
    System::processEvents();
    return nowMs() - before;
}

struct Times {
    Samples added, removed, longestTurn;
};

void measure(const Case& wanted, ListBox& list, Times& times) {
    const std::vector<std::string> removed = labels(wanted);
    list.setFilter(wanted.filter);
    turn();
    double before = nowMs();
    for (std::size_t i = 0; i < entries; ++i) {
        list.addEntry(fmt::format("rusty_metal_{}", i));
        if (wanted.selection == Selection::One) list.select(i);
    }
    times.added.add(nowMs() - before);
    double longest = turn();
    if (wanted.selection == Selection::All) list.selectAll();
    longest = std::max(longest, turn());
    before = nowMs();
    for (const std::string& label : removed) {
        if (wanted.selection == Selection::One) list.selectByLabel(label);
        list.removeEntry(label);
    }
    times.removed.add(nowMs() - before);
    times.longestTurn.add(std::max(longest, turn()));
    if (list.getEntryCount() != 0) std::exit(EXIT_FAILURE);
}

int run(int rounds) {
    vlCommon::ThreadBorder::claimUi();
    if (!System::initialize({.headless = true})) return EXIT_FAILURE;
    auto& list = *vlWinUi::ComponentManager::createOrRetrieve<ListBox>("LIST");
    auto& window = *vlWinUi::ComponentManager::createOrRetrieve<vlWinUi::Window>("WINDOW");
    list.setMultiSelection(true);
    vlWinUi::GridLayout grid(1, 1);
    grid.addComponent(list, 0, 0);
    window.setRectangle({0, 0, 300, 600});
    window.setLayout(std::move(grid));
    window.load();
    System::settle();
    fmt::print("{} entries, milliseconds\n", entries);
    for (const Case& wanted : cases) {
        Times times;
        for (int round = 0; round < rounds; ++round)
            measure(wanted, list, times);
        fmt::print("{:<30} added {}, removed {}, longest turn {}\n",
                   wanted.name,
                   withSpread(times.added),
                   withSpread(times.removed),
                   withSpread(times.longestTurn));
    }
    System::kill();
    return EXIT_SUCCESS;
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    return bench::run(argc > 1 ? std::max(std::atoi(argv[1]), 1) : 5);
}
