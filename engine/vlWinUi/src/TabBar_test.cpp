#include "TabWindowNative.h"
#include "WinUiTest.h"

#include <vlWinUi/InputSystem.h>
#include <vlWinUi/Static.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <gmock/gmock.h>

namespace vlWinUi {
namespace {

using testing::ElementsAre;

struct TabBarTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        window = &make<Window>("WINDOW");
        tabs = &make<TabWindow>("TABS");
        GridLayout grid(1, 1);
        grid.addComponent(*tabs, 0, 0);
        window->setLayout(std::move(grid));
        for (const char* label : {"One", "Two", "Three", "+"})
            tabs->addTab(label);
        tabs->setTabFixed(3);
        window->setRectangle({10, 10, 800, 400});
        window->setVisible(true);
        System::processEvents();
    }
    QTabBar& bar() { return *nativeAs<TabWindowNative>(*tabs).bar; }
    QPoint middleOf(std::size_t tab) { return bar().tabRect(static_cast<int>(tab)).center(); }
    void mouse(QEvent::Type type, const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        const bool up = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type,
                          at,
                          bar().mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : button,
                          up ? Qt::NoButton : button,
                          Qt::NoModifier);
        QApplication::sendEvent(&bar(), &event);
    }
    void drag(std::size_t from, const QPoint& to) {
        mouse(QEvent::MouseButtonPress, middleOf(from));
        const QPoint start = middleOf(from);
        for (int i = 1; i <= 10; ++i)
            mouse(QEvent::MouseMove, start + (to - start) * i / 10);
        mouse(QEvent::MouseButtonRelease, to);
    }
    EditBox& edit() { return *ComponentManager::get<EditBox>("TABS_RENAME"); }
    std::vector<std::string> labels() const {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < tabs->getTabCount(); ++i) {
            texts.push_back(tabs->getTabLabel(i));
            EXPECT_EQ(tabs->getPage(i)->getText(), texts.back());
        }
        return texts;
    }

    Window* window = nullptr;
    TabWindow* tabs = nullptr;
};

TEST_F(TabBarTest, TabsMoveByDraggingButNeverPastAFixedOne) {
    drag(0, QPoint(bar().width() - 1, 10));
    EXPECT_THAT(labels(), ElementsAre("Two", "Three", "One", "+"));
    EXPECT_EQ(tabs->getText(), "One");
    drag(2, middleOf(0) - QPoint(4, 0));
    EXPECT_THAT(labels(), ElementsAre("One", "Two", "Three", "+"));
    drag(0, middleOf(2) + QPoint(4, 0));
    drag(3, middleOf(0));
    EXPECT_THAT(labels(), ElementsAre("Two", "Three", "One", "+"));
    tabs->moveTab(0, 1);
    tabs->select(0);
    EXPECT_THAT(labels(), ElementsAre("Three", "Two", "One", "+"));
    EXPECT_EQ(tabs->getPage(0)->isVisible(), true);
}

TEST_F(TabBarTest, ATabIsRenamedInPlace) {
    tabs->setTabRenameCallback([](std::size_t, const std::string& label) { return label != "+"; });
    const auto typeInto = [&](const char* text, int key) {
        mouse(QEvent::MouseButtonPress, middleOf(1));
        mouse(QEvent::MouseButtonRelease, middleOf(1));
        mouse(QEvent::MouseButtonDblClick, middleOf(1));
        ASSERT_TRUE(tabs->isEditing());
        edit().setText(text);
        test::press(edit(), key);
        EXPECT_FALSE(tabs->isEditing());
        EXPECT_FALSE(edit().isVisible());
    };
    typeInto("  Left &  right ", Qt::Key_Return);
    EXPECT_EQ(tabs->getTabLabel(1), "Left & right");
    typeInto("Other", Qt::Key_Escape);
    typeInto("   ", Qt::Key_Return);
    typeInto("+", Qt::Key_Return);
    EXPECT_THAT(labels(), ElementsAre("One", "Left & right", "Three", "+"));
    tabs->editTab(3);
    EXPECT_FALSE(tabs->isEditing());
}

TEST_F(TabBarTest, TheFieldForALongNameGrowsAsFarAsTheBar) {
    tabs->editTab(1);
    const unsigned narrow = edit().getWidth();
    auto& line = *static_cast<QLineEdit*>(edit().native().widget);
    line.insert("A name that needs far more room than the tab has");
    EXPECT_GT(edit().getWidth(), 2 * narrow);
    line.insert(QString(500, 'W'));
    EXPECT_EQ(edit().getWidth(), static_cast<unsigned>(bar().width()));
}

TEST_F(TabBarTest, ABarWithoutRoomScrollsRatherThanCutItsLabels) {
    const int whole = bar().tabRect(1).width();
    for (int i = 0; i < 30; ++i)
        tabs->insertTab(3, "New Tab");
    System::processEvents();
    EXPECT_EQ(bar().tabRect(1).width(), whole);
}

TEST_F(TabBarTest, RenamingEndsWithItsTabAndWithASwitch) {
    tabs->editTab(1);
    edit().setText("Gone");
    tabs->removeTab(1);
    EXPECT_FALSE(tabs->isEditing());
    EXPECT_THAT(labels(), ElementsAre("One", "Three", "+"));
    tabs->editTab(0);
    edit().setText("First");
    bar().setCurrentIndex(1);
    EXPECT_THAT(labels(), ElementsAre("First", "Three", "+"));
}

TEST_F(TabBarTest, TheMiddleButtonAndTheCrossAskForTheEnd) {
    std::vector<std::size_t> asked;
    tabs->setTabCloseCallback([&](std::size_t index) { asked.push_back(index); });
    const auto middle = [&](std::size_t down, std::size_t up) {
        mouse(QEvent::MouseButtonPress, middleOf(down), Qt::MiddleButton);
        mouse(QEvent::MouseButtonRelease, middleOf(up), Qt::MiddleButton);
    };
    middle(1, 1);
    middle(0, 1);
    middle(3, 3);
    EXPECT_THAT(asked, ElementsAre(1));
    emit bar().tabCloseRequested(2);
    EXPECT_THAT(asked, ElementsAre(1, 2));
    EXPECT_EQ(bar().tabButton(3, QTabBar::RightSide), nullptr);
    EXPECT_EQ(tabs->getTabCount(), 4U);
}

TEST_F(TabBarTest, KeysStepOverAFixedTab) {
    tabs->select(2);
    QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(&bar(), &right);
    EXPECT_EQ(tabs->getSelected(), 2U);
    tabs->cycle(true);
    EXPECT_EQ(tabs->getSelected(), 0U);
    tabs->cycle(false);
    EXPECT_EQ(tabs->getSelected(), 2U);
}

TEST_F(TabBarTest, TheMenuKeyReachesTheNearestThatHasAMenu) {
    auto& label = make<Static>("LABEL");
    GridLayout grid(1, 1);
    grid.addComponent(label, 0, 0);
    tabs->getPage(0)->setLayout(std::move(grid));
    int ofTabs = 0;
    int ofPage = 0;
    tabs->setMenuKeyCallback([&] { ++ofTabs; });
    const auto shiftF10 = [&] {
        QKeyEvent down(QEvent::KeyPress, Qt::Key_F10, Qt::ShiftModifier);
        QApplication::sendEvent(label.native().widget, &down);
    };
    shiftF10();
    EXPECT_EQ(ofTabs, 1);
    tabs->getPage(0)->setMenuKeyCallback([&] { ++ofPage; });
    shiftF10();
    EXPECT_EQ(ofTabs, 1);
    EXPECT_EQ(ofPage, 1);
}

TEST_F(TabBarTest, TabsThatAreOnlyToBeChosenStayAsTheyAre) {
    tabs->setArrangeable(false);
    bool isClosed = false;
    tabs->setTabCloseCallback([&](std::size_t) { isClosed = true; });
    const auto before = labels();
    drag(0, middleOf(2));
    mouse(QEvent::MouseButtonPress, middleOf(1), Qt::MiddleButton);
    mouse(QEvent::MouseButtonRelease, middleOf(1), Qt::MiddleButton);
    mouse(QEvent::MouseButtonPress, middleOf(1));
    mouse(QEvent::MouseButtonRelease, middleOf(1));
    mouse(QEvent::MouseButtonDblClick, middleOf(1));
    EXPECT_FALSE(tabs->isEditing());
    EXPECT_FALSE(isClosed);
    EXPECT_EQ(labels(), before);
    EXPECT_EQ(tabs->getSelected(), 1U);
}

TEST_F(TabBarTest, AMarkedTabHasADotInItsColour) {
    const auto picture = [&] { return bar().grab().toImage(); };
    const QImage plain = picture();
    tabs->setTabMark(1, true);
    const QImage marked = picture();
    tabs->setTabMark(1, true, Emphasis::Error);
    EXPECT_TRUE(tabs->isTabMarked(1));
    EXPECT_NE(picture(), marked);
    EXPECT_NE(marked, plain);
    tabs->setTabMark(1, false);
    EXPECT_FALSE(tabs->isTabMarked(1));
    EXPECT_EQ(picture(), plain);
}

TEST_F(TabBarTest, FocusGoesInsideAndIsTold) {
    auto& label = make<Static>("LABEL");
    label.setFocusable(true);
    GridLayout grid(1, 1);
    grid.addComponent(label, 0, 0);
    tabs->getPage(0)->setLayout(std::move(grid));
    System::processEvents();
    const Component* told = nullptr;
    InputSystem::setFocusCallback([&](const Component* focused) { told = focused; });
    QApplication::setActiveWindow(window->native().widget);
    ASSERT_TRUE(tabs->getPage(0)->focusInside());
    EXPECT_EQ(InputSystem::getFocused(), &label);
    EXPECT_EQ(told, &label);
    EXPECT_FALSE(tabs->getPage(1)->focusInside());
}

} // namespace
} // namespace vlWinUi
