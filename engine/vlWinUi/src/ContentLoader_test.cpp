#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ContentLoader.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/GroupBox.h>
#include <vlWinUi/Picture.h>
#include <vlWinUi/Slider.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/Window.h>

#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <fmt/format.h>

#include <functional>
#include <map>
#include <random>
#include <regex>

namespace vlWinUi {
namespace {

struct ContentLoaderTest : test::WinUiTest {
    static Component* process(const std::string& text) {
        return ContentLoader::processInterfaceSources(text);
    }
    static Rectangle placeOf(vlMemory::StringView name) {
        const QWidget* widget = ComponentManager::get(name)->native().widget;
        const QPoint at = widget->mapTo(widget->window(), QPoint(0, 0));
        return {at.x(), at.y(), widget->width(), widget->height()};
    }
    static std::string button(const std::string& name) {
        return fmt::format(R"({{"name": "{}", "type": "BUTTON", "label": "{}"}})", name, name);
    }
    static std::vector<std::string> groups(int count) {
        std::vector<std::string> objects;
        for (int i = 0; i < count; ++i)
            objects.push_back(fmt::format(R"({{"name": "G{}", "type": "GROUP_BOX"}})", i));
        return objects;
    }
    /// A fragment.
    static std::string fragment(const std::vector<std::string>& children,
                                const std::vector<std::string>& layouts) {
        return fmt::format("{{\"children\": [{}],\n\"layouts\": [{}]}}",
                           fmt::join(children, ","),
                           fmt::join(layouts, ","));
    }
    static std::string grid(const std::string& parent, const std::string& child) {
        return fmt::format(
                R"({{"parent": "{}", "type": "GRID", "components": [{{"name": "{}"}}]}})",
                parent,
                child);
    }
};

TEST_F(ContentLoaderTest, AWindowIsAsItsTextSays) {
    auto* root = process(R"({
      "element": {"name": "W", "type": "WINDOW", "label": "Blend & Mix", "width": 400,
                  "height": 200},
      "children": [
        {"name": "W_NAME", "type": "STATIC", "label": "-", "alignHorizontal": "TOP_LEFT"},
        {"name": "W_SAVE", "type": "BUTTON", "label": "Save", "enabled": false,
         "maxSize": {"y": 24}, "minSize": {"x": 60}, "toolTip": "Keeps it",
         "shortcut": "Ctrl+S", "accessibleName": "Save the blend state"},
        {"name": "W_EDIT", "type": "EDIT_BOX", "placeHolder": "Depth", "onlyNumbers": true},
        {"name": "W_CODE", "type": "CODE_EDIT", "language": "HLSL", "placeHolder": "Shader"},
        {"name": "W_PICTURE", "type": "PICTURE", "label": "Preview"}
      ],
      "layouts": [
        {"parent": "W", "type": "GRID", "width": 4, "height": 2,
         "internalBorderWidth": 3, "internalBorderHeight": 5,
         "fixedSizeCols": [{"index": 0, "size": 100}],
         "weightCols": [{"index": 3, "weight": 2}],
         "fixedSizeRows": [{"index": 1, "size": 40}],
         "components": [
           {"name": "W_NAME", "x": 0, "y": 0, "width": 1, "height": 1},
           {"name": "W_SAVE", "x": 1, "y": 1, "width": 2, "height": 1},
           {"name": "W_EDIT", "x": 3, "y": 1, "width": 1, "height": 1}
         ]}
      ]
    })");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(lines, std::vector<std::string>());
    EXPECT_EQ(root->getText(), "Blend & Mix");
    EXPECT_FALSE(root->isVisible());
    root->setVisible(true);
    System::processEvents();
    EXPECT_EQ(placeOf("W"), (Rectangle{0, 0, 400, 200}));
    EXPECT_EQ(placeOf("W_NAME"), (Rectangle{3, 5, 94, 150}));
    const Rectangle save = placeOf("W_SAVE");
    EXPECT_EQ(save.x, 103);
    EXPECT_EQ(save.width, 144);
    EXPECT_EQ(save.height, 24);
    EXPECT_EQ(placeOf("W_EDIT").width, 144);
    EXPECT_FALSE(ComponentManager::get("W_SAVE")->isEnabled());
    EXPECT_EQ(ComponentManager::get("W_SAVE")->getToolTip(), "Keeps it (Ctrl+S)");
    const auto* button =
            static_cast<QPushButton*>(ComponentManager::get("W_SAVE")->native().widget);
    EXPECT_EQ(button->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_S));
    EXPECT_EQ(button->accessibleName(), "Save the blend state");
    ASSERT_NE(ComponentManager::get<CodeEdit>("W_CODE"), nullptr);
    ASSERT_NE(ComponentManager::get<Picture>("W_PICTURE"), nullptr);
    EXPECT_EQ(ComponentManager::get("W_PICTURE")->getText(), "Preview");
    auto* edit = static_cast<QLineEdit*>(ComponentManager::get("W_EDIT")->native().widget);
    EXPECT_EQ(edit->placeholderText(), "Depth");
    EXPECT_FALSE([&] {
        edit->setText("1a");
        return edit->hasAcceptableInput();
    }());
}

TEST_F(ContentLoaderTest, AnEmptyFragmentHasNoRootAndDefaultsHold) {
    EXPECT_EQ(process(R"({"children": [
        {"name": "S", "type": "SLIDER"},
        {"name": "T", "type": "SLIDER", "current": 300, "max": 500, "min": 200},
        {"name": "N", "type": "SLIDER", "max": -10, "min": -50},
        {"name": "TABS", "type": "TAB_WIN", "tabs": [{"label": "One"}, {"label": "Two"}]}
    ]})"),
              nullptr);
    const auto& plain = make<Slider>("S");
    EXPECT_EQ(plain.getMin(), 0);
    EXPECT_EQ(plain.getMax(), 100);
    EXPECT_EQ(plain.getCurrent(), 0);
    EXPECT_EQ(make<Slider>("T").getCurrent(), 300);
    EXPECT_EQ(make<Slider>("N").getMax(), -10);
    EXPECT_EQ(make<TabWindow>("TABS").getTabLabel(1), "Two");
    EXPECT_EQ(lines, std::vector<std::string>());
}

TEST_F(ContentLoaderTest, ATabsPageIsArrangedByItsName) {
    process(fragment(
            {R"({"name": "TABS", "type": "TAB_WIN", "tabs": [{"label": "One"}]})", button("B")},
            {grid("TABS_TAB_0", "B")}));
    EXPECT_EQ(ComponentManager::get("B")->getParent(), make<TabWindow>("TABS").getPage(0));
    EXPECT_TRUE(lines.empty());
}

TEST_F(ContentLoaderTest, ANameUsedTwiceGivesTheComponentThatIsThere) {
    make<Button>("B").setText("Mine");
    EXPECT_EQ(process(R"({"element": {"name": "B", "type": "BUTTON", "label": "Yours"}})"),
              ComponentManager::get("B"));
    EXPECT_EQ(make<Button>("B").getText(), "Mine");
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ(process("{\n\"element\": {\"name\": \"B\",\n\"type\": \"STATIC\"}}"), nullptr);
    EXPECT_EQ(
            lines,
            std::vector<std::string>{"layout:2: 'B' exists already and is a BUTTON, not a STATIC"});
}

TEST_F(ContentLoaderTest, AFragmentAddsToAGridOfTheSameSizeAndReplacesAnother) {
    process(R"({"element": {"name": "W", "type": "WINDOW"}})");
    for (int id = 0; id < 3; ++id)
        process(fmt::format(R"({{"children": [{}], "layouts": [
            {{"parent": "W", "type": "GRID", "width": 1, "height": 3,
              "components": [{{"name": "B{}", "x": 0, "y": {}}}]}}]}})",
                            button(fmt::format("B{}", id)),
                            id,
                            id));
    auto& window = make<Window>("W");
    EXPECT_EQ(window.getLayout()->getPlacements().size(), 3U);
    process(fragment({}, {grid("W", "B1")}));
    EXPECT_EQ(window.getLayout()->getPlacements().size(), 1U);
    EXPECT_EQ(ComponentManager::get("B0")->getParent(), nullptr);
    EXPECT_EQ(ComponentManager::get("B1")->getParent(), &window);
    EXPECT_TRUE(lines.empty());
}

TEST_F(ContentLoaderTest, WhatIsPlacedElsewhereLeavesItsFormerLayout) {
    process(fragment({groups(2)[0], groups(2)[1], button("B")},
                     {grid("G0", "B"), grid("G1", "B")}));
    auto& first = make<GroupBox>("G0");
    auto& second = make<GroupBox>("G1");
    EXPECT_TRUE(first.getLayout()->getPlacements().empty());
    EXPECT_EQ(ComponentManager::get("B")->getParent(), &second);
    process(fragment({}, {grid("G0", "B")}));
    second.getLayout()->update();
    EXPECT_EQ(ComponentManager::get("B")->getParent(), &first);
    EXPECT_TRUE(lines.empty());
}

TEST_F(ContentLoaderTest, EachFaultIsALineAndTheRestIsCreated) {
    auto* root = process(R"({
"element": {"name": "W", "type": "WINDOW", "label": 7, "width": -1, "colour": "red"},
"children": [
{"name": "A", "type": "GAUGE"},
{"type": "BUTTON"},
{"name": "", "type": "BUTTON"},
"B",
{"name": "C", "type": "STATIC", "alignHorizontal": "ASKEW", "min": 3},
{"name": "D", "type": "SLIDER", "min": 10, "max": 5, "current": 20},
{"name": "E", "type": "BUTTON", "maxSize": {"y": 1e300, "z": 2}, "visibleOnLoad": "no"},
{"name": "F", "type": "TAB_WIN", "tabs": [{"title": "x"}, {"label": "Good"}]}
],
"layouts": [
{"parent": "W", "type": "GRID", "width": 2, "height": 1, "components": [
{"name": "C", "x": 2, "y": 0},
{"name": "Z", "x": 0, "y": 0},
{"name": "D", "x": 1, "y": 0}],
"weightRows": [{"index": 1, "weight": 1}, {"index": 0, "weight": -1}]},
{"parent": "D", "type": "GRID"},
{"parent": "Y", "type": "GRID"},
{"parent": "W", "type": "HEAP"},
{"parent": "W", "type": "RELATIVE"}
],
"style": "none"})");
    ASSERT_NE(root, nullptr);
    const std::vector<std::string> expected{
            "layout:24: unknown member 'style'",
            "layout:2: 'label' expected a string",
            "layout:2: 'width' expected a number from 1 to 16384",
            "layout:2: unknown member 'colour' of WINDOW 'W'",
            "layout:4: unknown type 'GAUGE' of 'A'",
            "layout:5: 'name' is missing",
            "layout:6: 'name' needs 1 to 4096 bytes",
            "layout:7: 'children' expected an object",
            R"(layout:8: 'alignHorizontal' expected one of "TOP_LEFT", "TOP", "TOP_RIGHT", "LEFT", )"
            R"("CENTER", "RIGHT", "BOTTOM_LEFT", "BOTTOM", "BOTTOM_RIGHT")",
            "layout:8: unknown member 'min' of STATIC 'C'",
            "layout:9: 'max' is outside the range",
            "layout:9: 'current' is outside the range",
            "layout:10: 'visibleOnLoad' expected true or false",
            "layout:10: unknown member 'z'",
            "layout:10: 'y' expected a number from 0 to 16384",
            "layout:11: unknown member 'title'",
            "layout:11: 'label' is missing",
            "layout:18: 'weightRows' of index 1 is outside the grid",
            "layout:18: 'weight' expected a number from 0 to 10000",
            "layout:15: cell (2, 0) spanning 1 by 1 is outside the grid of 2 by 1",
            "layout:16: component 'Z' does not exist",
            "layout:19: parent 'D' is a SLIDER, which holds no components",
            "layout:20: parent 'Y' does not exist",
            "layout:21: unknown layout type 'HEAP'",
            "layout:22: 'W' is arranged otherwise in line 14",
    };
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(ComponentManager::get("D")->getParent(), root);
    EXPECT_EQ(make<TabWindow>("F").getTabLabel(0), "Good");
    EXPECT_NE(ComponentManager::get("E"), nullptr);
}

TEST_F(ContentLoaderTest, WhatIsNoJsonOrNoObjectIsOneLine) {
    for (const std::string text : {"", "{\n\"children\": [,]}", "[]", "7", "{\"a\": 1e999}"}) {
        lines.clear();
        EXPECT_EQ(process(text), nullptr) << text;
        EXPECT_EQ(lines.size(), 1U) << text;
    }
    lines.clear();
    EXPECT_EQ(process(std::string(5U << 20U, ' ')), nullptr);
    EXPECT_EQ(process(std::string(100'000, '[')), nullptr);
    EXPECT_EQ(lines.size(), 2U);
}

TEST_F(ContentLoaderTest, NothingIsPlacedInsideItself) {
    process(fragment(groups(3),
                     {grid("G0", "G0"), grid("G0", "G1"), grid("G1", "G2"), grid("G2", "G0")}));
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                      "layout:2: 'G0' cannot be placed inside 'G0', which is inside it",
                      "layout:2: 'G0' cannot be placed inside 'G2', which is inside it"}));
    lines.clear();
    process(fragment({}, {grid("G2", "G0")}));
    EXPECT_EQ(lines.size(), 1U);
    EXPECT_EQ(ComponentManager::get("G2")->getParent(), ComponentManager::get("G1"));
    make<ContextMenu>("MENU");
    process(fragment({}, {grid("G2", "MENU")}));
    EXPECT_EQ(lines.back(), "layout:2: 'MENU' is a CONTEXT_MENU, which is not placed");
}

TEST_F(ContentLoaderTest, DeepNestingEndsWhicheverEndItIsToldFrom) {
    for (const bool outerFirst : {true, false}) {
        constexpr int count = 2000;
        std::vector<std::string> layouts;
        for (int i = 1; i < count; ++i) {
            const int outer = outerFirst ? i - 1 : count - 1 - i;
            layouts.push_back(grid(fmt::format("G{}", outer), fmt::format("G{}", outer + 1)));
        }
        process(fragment(groups(count), layouts));
        int deepest = 0;
        for (const Component* component : ComponentManager::startingWith("G")) {
            int depth = 0;
            for (; component != nullptr; component = component->getParent())
                ++depth;
            deepest = std::max(deepest, depth);
        }
        EXPECT_EQ(deepest, 33) << outerFirst;
        EXPECT_LE(lines.size(), 101U);
        ComponentManager::get("G0")->setVisible(true);
        System::processEvents();
        for (int i = 0; i < count; ++i)
            ComponentManager::erase(fmt::format("G{}", i));
        lines.clear();
    }
}

TEST_F(ContentLoaderTest, AHugeTextIsCutOff) {
    process(fragment(groups(10'100), {R"({"parent": "G0", "type": "GRID"})"}));
    EXPECT_EQ(ComponentManager::startingWith("G").size(), 10'000U);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0],
              "layout:1: more than 10000 components, tabs, layouts and placements: the rest is "
              "left out");
    lines.clear();
    std::vector<std::string> unknown;
    for (int i = 0; i < 500; ++i)
        unknown.push_back(fmt::format("\"k{}\": 0", i));
    process(fmt::format("{{{}}}", fmt::join(unknown, ",")));
    EXPECT_EQ(lines.size(), 101U);
    EXPECT_EQ(lines.back(), "layout: 400 more faults are not listed");
}

TEST_F(ContentLoaderTest, ChangedTextsNeverCrash) {
    const std::string base = R"({"element": {"name": "W", "type": "WINDOW", "width": 300},
"children": [{"name": "G", "type": "GROUP_BOX"}, {"name": "I", "type": "WINDOW"},
  {"name": "B", "type": "BUTTON"}, {"name": "S", "type": "SLIDER", "max": 7, "current": 5},
  {"name": "T", "type": "TAB_WIN", "tabs": [{"label": "A"}, {"label": "B"}]},
  {"name": "P", "type": "SURFACE", "minSize": {"x": 20, "y": 20}}],
"layouts": [{"parent": "W", "type": "GRID", "width": 3, "height": 2,
    "weightRows": [{"index": 1, "weight": 0.2}],
    "components": [{"name": "G", "x": 0, "y": 1, "width": 2}, {"name": "T", "x": 2, "y": 0}]},
  {"parent": "G", "type": "RELATIVE", "components": [
    {"name": "I", "area": {"x": 5, "width": 90, "height": 50}},
    {"name": "B", "relativeTo": "I", "position": "UNDER"}]},
  {"parent": "T_TAB_0", "type": "GRID", "components": [{"name": "S"}, {"name": "P", "y": 1}]}]})";
    const std::vector<std::string> values{
            R"("W")",       R"("G")", R"("I")",    R"("T")",        R"("T_TAB_1")", R"("B")",
            R"("P")",       R"("S")", R"("GRID")", R"("RELATIVE")", R"("WINDOW")",  "-1",
            "1e9",          "0",      "255",       "null",          "[]",           "{}",
            R"("TAB_WIN")", "true"};
    const std::regex value(R"(("[A-Za-z_0-9]+"|-?[0-9.]+)(?=[,}\]]))");
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (std::sregex_iterator at(base.begin(), base.end(), value); at != std::sregex_iterator();
         ++at)
        places.emplace_back(at->position(), at->length());
    ASSERT_GT(places.size(), 40U);
    std::mt19937 random(7);
    for (int round = 0; round < 150; ++round) {
        std::map<std::size_t, std::size_t, std::greater<>> changes; // from the end on
        for (int change = 0; change < 4; ++change)
            changes.insert(places[random() % places.size()]);
        std::string text = base;
        for (const auto& [at, length] : changes)
            text.replace(at, length, values[random() % values.size()]);
        Component* root = process(text);
        if (root != nullptr) root->setVisible(true);
        System::processEvents();
        const char* const erased[] = {"W", "G", "I", "T"};
        ComponentManager::erase(erased[round % 4]);
    }
    System::processEvents();
}

TEST_F(ContentLoaderTest, WhatIsNotVisibleOnLoadStaysHiddenInItsPlace) {
    auto* root = process(R"({
      "element": {"name": "W", "type": "WINDOW", "visibleOnLoad": false},
      "children": [{"name": "IN", "type": "WINDOW", "visibleOnLoad": false},
                   {"name": "B", "type": "BUTTON", "visibleOnLoad": false},
                   {"name": "V", "type": "BUTTON"}],
      "layouts": [{"parent": "W", "type": "GRID", "components": [
          {"name": "IN"}, {"name": "B", "y": 1}, {"name": "V", "y": 2}]}]
    })");
    ASSERT_NE(root, nullptr);
    static_cast<Window*>(root)->load();
    EXPECT_FALSE(root->isVisible());
    root->setVisible(true);
    System::processEvents();
    EXPECT_FALSE(ComponentManager::get("IN")->isVisible());
    EXPECT_FALSE(ComponentManager::get("B")->isVisible());
    EXPECT_TRUE(ComponentManager::get("V")->isVisible());
}

} // namespace
} // namespace vlWinUi
