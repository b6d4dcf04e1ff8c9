// What a window of 300 components costs from its layout text on, against the same widgets in grids
// made by hand. Both stand in one application with one theme, and are made, shown, painted and
// destroyed in turns.
#include "Report.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContentLoader.h>
#include <vlWinUi/System.h>
#include <vlWinUi/ThemeManager.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <fmt/format.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace bench {
namespace {

constexpr int width = 1200;
constexpr int height = 1000;
constexpr int groups = 13;
constexpr int groupColumns = 4;
constexpr int rows = 11; ///< of a group: a label and a field each
// The window itself, its groups and what is in them.
static_assert(1 + groups + groups * rows * 2 == 300);

constexpr std::array<std::string_view, 5> fields{
        "EDIT_BOX", "COMBO_BOX", "SLIDER", "CHECK_BOX", "BUTTON"};

std::string_view fieldOf(int row) {
    return fields[static_cast<std::size_t>(row) % fields.size()];
}

std::string layoutText() {
    std::string children;
    std::string layouts;
    std::string placedGroups;
    for (int group = 0; group < groups; ++group) {
        const std::string name = fmt::format("BENCH_{}_GROUP", group);
        children +=
                fmt::format("{}{{\"name\": \"{}\", \"type\": \"GROUP_BOX\", \"label\": \"{}\"}}",
                            group == 0 ? "" : ",\n",
                            name,
                            group);
        std::string placed;
        for (int row = 0; row < rows; ++row) {
            children += fmt::format(R"(,
{{"name": "{0}_{1}_LABEL", "type": "STATIC", "label": "Value {1}"}},
{{"name": "{0}_{1}", "type": "{2}", "label": "{1}"}})",
                                    name,
                                    row,
                                    fieldOf(row));
            placed += fmt::format(R"({2}
{{"name": "{0}_{1}_LABEL", "x": 0, "y": {1}, "width": 1, "height": 1}},
{{"name": "{0}_{1}", "x": 1, "y": {1}, "width": 1, "height": 1}})",
                                  name,
                                  row,
                                  row == 0 ? "" : ",");
        }
        layouts += fmt::format(R"(,
{{"parent": "{}", "type": "GRID", "width": 2, "height": {}, "components": [{}]}})",
                               name,
                               rows,
                               placed);
        placedGroups +=
                fmt::format(R"({}{{"name": "{}", "x": {}, "y": {}, "width": 1, "height": 1}})",
                            group == 0 ? "" : ",\n",
                            name,
                            group % groupColumns,
                            group / groupColumns);
    }
    return fmt::format(
            R"({{"element": {{"name": "BENCH", "type": "WINDOW", "width": {}, "height": {}}},
"children": [{}],
"layouts": [{{"parent": "BENCH", "type": "GRID", "width": {}, "height": {}, "components": [{}]}}{}]}})",
            width,
            height,
            children,
            groupColumns,
            (groups + groupColumns - 1) / groupColumns,
            placedGroups,
            layouts);
}

QWidget* bareField(std::string_view type, const QString& label) {
    if (type == "EDIT_BOX") return new QLineEdit(label);
    if (type == "COMBO_BOX") return new QComboBox;
    if (type == "SLIDER") return new QSlider(Qt::Horizontal);
    if (type == "CHECK_BOX") return new QCheckBox(label);
    return new QPushButton(label);
}

std::unique_ptr<QWidget> bareWindow() {
    auto window = std::make_unique<QWidget>();
    auto* grid = new QGridLayout(window.get());
    for (int group = 0; group < groups; ++group) {
        auto* box = new QGroupBox(QString::number(group));
        auto* inner = new QGridLayout(box);
        for (int row = 0; row < rows; ++row) {
            inner->addWidget(new QLabel(QString("Value %1").arg(row)), row, 0);
            inner->addWidget(bareField(fieldOf(row), QString::number(row)), row, 1);
        }
        grid->addWidget(box, group / groupColumns, group % groupColumns);
    }
    window->resize(width, height);
    return window;
}

/// The theme's, which the library's windows wear each for itself.
QString& sheet() {
    static QString text;
    return text;
}

QString wornSheet() {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->styleSheet().isEmpty()) return window->styleSheet();
    }
    return {};
}

struct Cost {
    Samples createdMs;
    Samples shownMs; ///< painted, from the start on
};

void runOurs(const std::string& text, Cost& cost) {
    const double start = nowMs();
    auto* window = static_cast<vlWinUi::Window*>(
            vlWinUi::ContentLoader::processInterfaceSources(text, "bench"));
    cost.createdMs.add(nowMs() - start);
    window->load();
    vlWinUi::System::processEvents();
    cost.shownMs.add(nowMs() - start);
    sheet() = wornSheet();
    vlWinUi::ComponentManager::erase("BENCH");
    vlWinUi::System::processEvents();
}

void runBare(Cost& cost) {
    const double start = nowMs();
    std::unique_ptr<QWidget> window = bareWindow();
    cost.createdMs.add(nowMs() - start);
    window->setStyleSheet(sheet());
    window->show();
    vlWinUi::System::processEvents();
    cost.shownMs.add(nowMs() - start);
    window.reset();
    vlWinUi::System::processEvents();
}

void compare(std::string_view what, const Samples& ours, const Samples& bare) {
    summarise(fmt::format("layout window of 300 components: {}", what),
              withSpread(ours) + " ms",
              withSpread(bare) + " ms, bare Qt",
              pairedRatios(ours, bare),
              "2");
}

int run(int rounds) {
    vlCommon::ThreadBorder::claimUi();
    vlWinUi::SystemOptions options;
    options.headless = true;
    if (const auto started = vlWinUi::System::initialize(options); !started) {
        fmt::print(stderr, "layout_window: {}\n", started.error().message);
        return 1;
    }
    vlWinUi::ThemeManager::setActiveTheme(vlWinUi::ThemeManager::createOrRetrieve("BENCH"));
    const std::string text = layoutText();
    Cost ours;
    Cost bare;
    // The first of each fills the caches of fonts and styles.
    Cost first;
    runOurs(text, first);
    runBare(first);
    for (int i = 0; i < rounds; ++i) {
        runOurs(text, ours);
        runBare(bare);
    }
    compare("created", ours.createdMs, bare.createdMs);
    compare("created, shown and painted", ours.shownMs, bare.shownMs);
    vlWinUi::System::kill();
    return 0;
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    if (argc > 2) {
        fmt::print(stderr, "layout_window [ROUNDS]\n");
        return 2;
    }
    return bench::run(argc == 2 ? std::max(1, std::atoi(argv[1])) : 15);
}
