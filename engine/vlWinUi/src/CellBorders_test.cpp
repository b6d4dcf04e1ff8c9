#include "Native.h"
#include "TrackDrag.h"
#include "WinUiTest.h"

#include <vlWinUi/ListBox.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace vlWinUi {
namespace {

std::vector<double> widthsOf(const std::vector<GridLayout::Track>& tracks, double room) {
    double weights = 0;
    for (const auto& track : tracks) {
        room -= track.fixedSize.value_or(0);
        if (!track.fixedSize) weights += track.weight;
    }
    std::vector<double> widths;
    for (const auto& track : tracks)
        widths.push_back(track.fixedSize ? *track.fixedSize : room * track.weight / weights);
    return widths;
}

TEST(TrackDragTest, TheNeighboursKeepTheirSumAndAllOthersTheirSizes) {
    // Fixed beside shared, both shared, both fixed; the last one is held at its minimum, so that
    // the weights alone do not say the sizes.
    const std::vector<GridLayout::Track> tracks{
            {300.0F, 1}, {std::nullopt, 3}, {std::nullopt, 1}, {100.0F, 1}, {80.0F, 1}};
    const std::vector<double> sizes{300, 250, 150, 100, 80};
    for (const std::size_t before : {0U, 1U, 2U, 3U}) {
        const TrackDrag drag{tracks, sizes, before, 20, 20};
        const auto result = drag.moved(-35);
        const auto widths = widthsOf(result, 880);
        for (std::size_t i = 0; i < sizes.size(); ++i) {
            const double by = i == before ? -35 : i == before + 1 ? 35 : 0;
            EXPECT_NEAR(widths[i], sizes[i] + by, 0.01) << before << ", " << i;
            EXPECT_EQ(result[i].fixedSize.has_value(), tracks[i].fixedSize.has_value());
        }
        EXPECT_NEAR(result[1].weight + result[2].weight, 4, 0.001);
    }
}

TEST(TrackDragTest, NobodyGetsTooSmall) {
    const TrackDrag drag{{{0.0F, 1}, {}}, {0, 400}, 0, 100, 150};
    EXPECT_EQ(drag.moved(0)[0].fixedSize, 0.0F);
    EXPECT_EQ(drag.moved(1)[0].fixedSize, 100.0F);
    EXPECT_EQ(drag.moved(1000)[0].fixedSize, 250.0F);
    const TrackDrag cramped{{{}, {}}, {100, 100}, 0, 150, 150};
    EXPECT_NEAR(widthsOf(cramped.moved(40), 200)[0], 100, 0.01);
    EXPECT_NEAR(widthsOf(drag.halved(), 400)[0], 200, 0.01);
    EXPECT_FALSE(drag.halved()[0].fixedSize);
}

struct CellBordersTest : test::WinUiTest {
    static void send(QWidget& handle, QEvent::Type type, const QPoint& screen) {
        const bool up = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type,
                          handle.mapFromGlobal(screen),
                          screen,
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          up ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&handle, &event);
    }
    /// What is under a place of the window, dragged from there.
    static void drag(Window& window, QPoint from, QPoint by) {
        QWidget* handle = window.native().widget->childAt(from);
        ASSERT_NE(handle, nullptr);
        const QPoint start = window.native().widget->mapToGlobal(from);
        send(*handle, QEvent::MouseButtonPress, start);
        send(*handle, QEvent::MouseMove, start + by / 2);
        send(*handle, QEvent::MouseMove, start + by);
        send(*handle, QEvent::MouseButtonRelease, start + by);
        System::processEvents();
    }
};

TEST_F(CellBordersTest, ABorderFollowsTheMouseAsFarAsNothingSpansIt) {
    auto& window = make<Window>("WINDOW");
    auto& left = make<ListBox>("LEFT");
    auto& right = make<ListBox>("RIGHT");
    auto& below = make<ListBox>("BELOW");
    GridLayout grid(2, 2);
    grid.setInternalBorders(4, 4);
    grid.setFixedSizeColumn(0, 300);
    grid.addComponent(left, 0, 0);
    grid.addComponent(right, 1, 0);
    grid.addComponent(below, 0, 1, 2, 1);
    grid.setDraggable(true);
    int drags = 0;
    grid.setDragCallback([&] { ++drags; });
    window.setLayout(std::move(grid));
    window.setRectangle({10, 10, 800, 400});
    window.setVisible(true);
    System::processEvents();

    drag(window, {300, 50}, {60, 0});
    EXPECT_EQ(left.getWidth(), 352U);
    EXPECT_EQ(right.getWidth(), 432U);
    EXPECT_EQ(window.getLayout()->getColumns()[0].fixedSize, 360.0F);
    drag(window, {500, 200}, {0, -40});
    EXPECT_EQ(left.getHeight(), 152U);
    EXPECT_EQ(below.getHeight(), 232U);
    EXPECT_EQ(drags, 2);
    // Where the one below spans there is no border to take.
    EXPECT_EQ(Native::componentOf(window.native().widget->childAt(360, 300)->parentWidget()),
              &below);
    drag(window, {360, 50}, {-1000, 0});
    EXPECT_GE(left.getWidth(), 40U);
    window.getLayout()->setDraggable(false);
    window.getLayout()->update();
    System::processEvents();
    EXPECT_EQ(window.native().widget->findChild<QWidget*>("vlColumnBorder"), nullptr);
}

TEST_F(CellBordersTest, APanelThatDoesNotScrollAsksForTheRoomOfItsContent) {
    auto& window = make<Window>("WINDOW");
    auto& panel = make<Window>("PANEL");
    auto& list = make<ListBox>("LIST");
    list.setMinSize(200, 100);
    GridLayout inner(1, 1);
    inner.addComponent(list, 0, 0);
    panel.setScrolling(false);
    panel.setLayout(std::move(inner));
    GridLayout outer(2, 1);
    outer.addComponent(panel, 0, 0);
    outer.addComponent(make<ListBox>("OTHER"), 1, 0);
    window.setLayout(std::move(outer));
    window.setRectangle({10, 10, 300, 200});
    window.setVisible(true);
    System::processEvents();
    EXPECT_EQ(list.getWidth(), 200U);
}

} // namespace
} // namespace vlWinUi
