#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Window.h>

#include <QWidget>

#include <utility>

namespace vlWinUi {
namespace {

struct GridLayoutTest : test::WinUiTest {
    /// Where a component ends up in the window.
    static Rectangle placeOf(const Component& component) {
        const QWidget* widget = component.native().widget;
        const QPoint at = widget->mapTo(widget->window(), QPoint(0, 0));
        return {at.x(), at.y(), widget->width(), widget->height()};
    }
    static void resize(Window& window, int width, int height) {
        window.setRectangle({10, 10, width, height});
        window.setVisible(true);
        System::processEvents();
    }
};

TEST_F(GridLayoutTest, ColumnsOfNoWeightShareEqually) {
    auto& window = make<Window>("WINDOW");
    auto& left = make<ListBox>("LEFT");
    auto& right = make<ListBox>("RIGHT");
    GridLayout grid(2, 1);
    grid.setInternalBorders(0, 0);
    grid.setWeightColumn(0, 0);
    grid.setWeightColumn(1, 0);
    grid.addComponent(left, 0, 0);
    grid.addComponent(right, 1, 0);
    window.setLayout(std::move(grid));
    resize(window, 700, 400);
    EXPECT_EQ(placeOf(left).width, 350);
    EXPECT_EQ(placeOf(right), (Rectangle{350, 0, 350, 400}));
}

TEST_F(GridLayoutTest, FixedTracksKeepTheirPixelsAndTheRestIsShared) {
    auto& window = make<Window>("WINDOW");
    auto& left = make<ListBox>("LEFT");
    auto& middle = make<ListBox>("MIDDLE");
    auto& right = make<ListBox>("RIGHT");
    GridLayout grid(3, 2);
    grid.setInternalBorders(0, 0);
    grid.setFixedSizeColumn(0, 300);
    grid.setWeightColumn(2, 3);
    grid.setFixedSizeRow(1, 27);
    grid.addComponent(left, 0, 0);
    grid.addComponent(middle, 1, 0);
    grid.addComponent(right, 2, 0, 1, 2);
    window.setLayout(std::move(grid));
    for (const auto& [width, height] : {std::pair(700, 400), std::pair(1101, 333)}) {
        resize(window, width, height);
        EXPECT_EQ(placeOf(left), (Rectangle{0, 0, 300, height - 27}));
        EXPECT_NEAR(placeOf(middle).width, (width - 300) / 4.0, 1);
        EXPECT_NEAR(placeOf(right).width, (width - 300) * 0.75, 1);
        EXPECT_EQ(placeOf(right).x + placeOf(right).width, width);
        EXPECT_EQ(placeOf(right).height, height);
    }
}

TEST_F(GridLayoutTest, EqualCellsAreEqualWhateverTheyHold) {
    auto& window = make<Window>("WINDOW");
    auto& small = make<Button>("SMALL");
    auto& large = make<Button>("LARGE");
    large.setText("A label that is a good deal longer");
    GridLayout grid(2, 1);
    grid.addComponent(small, 0, 0);
    grid.addComponent(large, 1, 0);
    window.setLayout(std::move(grid));
    resize(window, 800, 100);
    EXPECT_EQ(placeOf(small).width, placeOf(large).width);
    EXPECT_EQ(placeOf(small).x, 2);
}

TEST_F(GridLayoutTest, NothingIsClippedBelowWhatItNeeds) {
    auto& window = make<Window>("WINDOW");
    auto& tiny = make<ListBox>("LIST");
    auto& large = make<Button>("LARGE");
    large.setText("A label that is a good deal longer");
    GridLayout grid(10, 1);
    grid.addComponent(tiny, 0, 0, 9, 1);
    grid.addComponent(large, 9, 0);
    window.setLayout(std::move(grid));
    resize(window, 400, 100);
    EXPECT_GE(placeOf(large).width, large.native().widget->minimumSizeHint().width());
    EXPECT_GT(placeOf(tiny).width, 40);
}

TEST_F(GridLayoutTest, ManyNarrowCellsWithBordersStillShareTheWindow) {
    auto& window = make<Window>("WINDOW");
    auto& list = make<ListBox>("LIST");
    auto& ok = make<Button>("OK");
    ok.setText("Ok");
    GridLayout grid(100, 100);
    grid.setInternalBorders(3, 3);
    grid.addComponent(list, 0, 0, 100, 93);
    grid.addComponent(ok, 14, 93, 36, 6);
    window.setLayout(std::move(grid));
    resize(window, 200, 400);
    EXPECT_EQ(placeOf(list).width, 194);
    EXPECT_NEAR(placeOf(list).height, 366, 8);
    EXPECT_EQ(placeOf(ok).x, 31);
    EXPECT_EQ(placeOf(ok).width, 66);
    EXPECT_LE(placeOf(ok).y + placeOf(ok).height, 400);
    EXPECT_GE(placeOf(ok).height, ok.native().widget->minimumSizeHint().height());
}

TEST_F(GridLayoutTest, AnIgnoredBorderLetsACellFillItsPlace) {
    auto& window = make<Window>("WINDOW");
    auto& bar = make<Static>("BAR");
    GridLayout grid(1, 2);
    grid.setFixedSizeRow(0, 27);
    grid.ignoreInternalBorder(0, 0);
    grid.addComponent(bar, 0, 0);
    window.setLayout(std::move(grid));
    resize(window, 300, 100);
    EXPECT_EQ(placeOf(bar), (Rectangle{0, 0, 300, 27}));
}

TEST_F(GridLayoutTest, InsertedTracksMoveAndGrowWhatIsPlaced) {
    auto& a = make<Button>("A");
    auto& b = make<Button>("B");
    auto& wide = make<Button>("WIDE");
    GridLayout grid(2, 2);
    grid.addComponent(a, 0, 0);
    grid.addComponent(b, 1, 0);
    grid.addComponent(wide, 0, 1, 2, 1);
    grid.insertColumn(1);
    EXPECT_EQ(grid.getPlacement(a)->x, 0U);
    EXPECT_EQ(grid.getPlacement(b)->x, 2U);
    EXPECT_EQ(grid.getPlacement(wide)->width, 3U);
    grid.removeColumn(0);
    EXPECT_EQ(grid.getPlacement(a), nullptr);
    EXPECT_EQ(grid.getPlacement(wide)->width, 2U);
}

TEST_F(GridLayoutTest, WhatIsOutsideIsLeftOutWithALine) {
    GridLayout grid(2, 2);
    grid.addComponent(make<Button>("A"), 1, 0, 2, 1);
    grid.setFixedSizeRow(2, 27);
    EXPECT_TRUE(grid.getPlacements().empty());
    EXPECT_EQ(lines.size(), 2U);
}

TEST_F(GridLayoutTest, WhatIsTakenOutLeavesTheViewAndMayComeBack) {
    auto& window = make<Window>("WINDOW");
    auto& a = make<Button>("A");
    GridLayout grid(1, 1);
    grid.addComponent(a, 0, 0);
    GridLayout& shown = window.setLayout(std::move(grid));
    resize(window, 300, 100);
    EXPECT_TRUE(a.isVisible());
    shown.removeComponent(a);
    shown.update();
    EXPECT_FALSE(a.isVisible());
    EXPECT_EQ(a.getParent(), nullptr);
    shown.addComponent(a, 0, 0);
    shown.update();
    System::processEvents();
    EXPECT_TRUE(a.isVisible());
}

} // namespace
} // namespace vlWinUi
