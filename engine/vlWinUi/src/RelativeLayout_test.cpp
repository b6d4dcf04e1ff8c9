#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ContentLoader.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/Window.h>

#include <QWidget>

namespace vlWinUi {
namespace {

using Position = RelativeLayout::Position;

struct RelativeLayoutTest : test::WinUiTest {
    static Rectangle placeOf(const Component& component) {
        const QWidget* widget = component.native().widget;
        const QPoint at = widget->mapTo(widget->window(), QPoint(0, 0));
        return {at.x(), at.y(), widget->width(), widget->height()};
    }
    static void show(Window& window) {
        window.setRectangle({10, 10, 500, 400});
        window.setVisible(true);
        System::processEvents();
    }
};

TEST_F(RelativeLayoutTest, ComponentsStandBesideEachOtherWhateverTheirOrder) {
    auto& window = make<Window>("W");
    auto& middle = make<ListBox>("MIDDLE");
    auto& right = make<ListBox>("RIGHT");
    auto& left = make<ListBox>("LEFT");
    auto& above = make<ListBox>("ABOVE");
    auto& under = make<ListBox>("UNDER");
    RelativeLayout layout;
    layout.addComponent(under, {0, 6, 90, 40}, right, Position::Under);
    layout.addComponent(right, {4, 0, 60, 50}, middle, Position::Right);
    layout.addComponent(left, {-4, 0, 70, 50}, middle, Position::Left);
    layout.addComponent(above, {0, -2, 80, 45}, middle, Position::Above);
    layout.addComponent(middle, {150, 100, 100, 50});
    RelativeLayout& shown = window.setLayout(std::move(layout));
    show(window);
    EXPECT_EQ(placeOf(middle), (Rectangle{150, 100, 100, 50}));
    EXPECT_EQ(placeOf(right), (Rectangle{254, 100, 60, 50}));
    EXPECT_EQ(placeOf(left), (Rectangle{76, 100, 70, 50}));
    EXPECT_EQ(placeOf(above), (Rectangle{150, 53, 80, 45}));
    EXPECT_EQ(placeOf(under), (Rectangle{254, 156, 90, 40}));
    shown.addComponent(middle, {160, 110, 100, 50});
    shown.update();
    System::processEvents();
    EXPECT_EQ(placeOf(under), (Rectangle{264, 166, 90, 40}));
    ASSERT_TRUE(ComponentManager::rename("MIDDLE", "CENTRE"));
    lines.clear();
    shown.update();
    EXPECT_TRUE(lines.empty());
}

TEST_F(RelativeLayoutTest, ASizeLeftOutIsTheNaturalOne) {
    auto& window = make<Window>("W");
    auto& button = make<Button>("B");
    RelativeLayout layout;
    layout.addComponent(button, {5, 7, 0, 0});
    window.setLayout(std::move(layout));
    show(window);
    const int narrow = placeOf(button).width;
    EXPECT_EQ(placeOf(button).height, button.native().widget->sizeHint().height());
    button.setText("A label that is a good deal longer");
    System::processEvents();
    EXPECT_GT(placeOf(button).width, narrow);
}

TEST_F(RelativeLayoutTest, ARingAndAStrangerAreALineAndStandAlone) {
    auto& window = make<Window>("W");
    auto& a = make<Button>("A");
    auto& b = make<Button>("B");
    auto& c = make<Button>("C");
    auto& stranger = make<Button>("STRANGER");
    RelativeLayout layout;
    layout.addComponent(a, {10, 0, 50, 24}, b, Position::Right);
    layout.addComponent(b, {20, 0, 50, 24}, a, Position::Right);
    layout.addComponent(c, {30, 0, 50, 24}, stranger, Position::Right);
    window.setLayout(std::move(layout));
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                      "relative layout: 'B' cannot stand beside 'A', which follows it",
                      "relative layout: 'C' cannot stand beside 'STRANGER', which is not placed in "
                      "the same layout"}));
    show(window);
    EXPECT_EQ(placeOf(b).x, 20);
    EXPECT_EQ(placeOf(a).x, 80);
    EXPECT_EQ(placeOf(c).x, 30);
}

TEST_F(RelativeLayoutTest, OneKindOfLayoutReplacesTheOther) {
    auto& window = make<Window>("W");
    auto& a = make<Button>("A");
    auto& b = make<Button>("B");
    GridLayout grid(1, 2);
    grid.addComponent(a, 0, 0);
    grid.addComponent(b, 0, 1);
    window.setLayout(grid);
    RelativeLayout layout;
    layout.addComponent(a, {10, 10, 50, 24});
    window.setLayout(std::move(layout));
    show(window);
    EXPECT_EQ(window.getLayout(), nullptr);
    EXPECT_EQ(b.getParent(), nullptr);
    EXPECT_EQ(placeOf(a), (Rectangle{10, 10, 50, 24}));
    ComponentManager::erase("A");
    EXPECT_TRUE(window.getRelativeLayout()->getPlacements().empty());
    GridLayout again(1, 1);
    again.addComponent(b, 0, 0);
    window.setLayout(std::move(again));
    System::processEvents();
    EXPECT_EQ(window.getRelativeLayout(), nullptr);
    EXPECT_TRUE(b.isVisible());
}

TEST_F(RelativeLayoutTest, ALayoutTextSaysTheSame) {
    ContentLoader::processInterfaceSources(R"({
"element": {"name": "W", "type": "WINDOW", "width": 500, "height": 400},
"children": [{"name": "A", "type": "LIST_BOX"}, {"name": "B", "type": "LIST_BOX"},
             {"name": "C", "type": "LIST_BOX"}, {"name": "D", "type": "LIST_BOX"}],
"layouts": [{"parent": "W", "type": "RELATIVE", "components": [
{"name": "B", "area": {"x": 4, "width": 90, "height": 50}, "relativeTo": "A", "position": "RIGHT"},
{"name": "A", "area": {"x": 10, "y": 20, "width": 100, "height": 50}},
{"name": "C", "area": {"width": 90, "height": 50}, "relativeTo": "D", "position": "UNDER"},
{"name": "D", "area": {"width": 90, "height": 50}, "relativeTo": "C", "position": "NEAR"}
]}]})",
                                           "pixels");
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                      R"(pixels:9: 'position' expected one of "RIGHT", "LEFT", "ABOVE", "UNDER")",
                      "pixels:9: 'D' cannot stand beside 'C', which follows it"}));
    ComponentManager::get("W")->setVisible(true);
    System::processEvents();
    EXPECT_EQ(placeOf(make<ListBox>("B")), (Rectangle{114, 20, 90, 50}));
    EXPECT_EQ(placeOf(make<ListBox>("C")), (Rectangle{0, 50, 90, 50}));
}

} // namespace
} // namespace vlWinUi
