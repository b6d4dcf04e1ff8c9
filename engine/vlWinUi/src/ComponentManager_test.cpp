#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/Window.h>

#include <QWidget>

namespace vlWinUi {
namespace {

using ComponentManagerTest = test::WinUiTest;

TEST_F(ComponentManagerTest, ANameUsedTwiceIsTheSameComponent) {
    auto& button = make<Button>("OK");
    EXPECT_EQ(ComponentManager::createOrRetrieve<Button>("OK"), &button);
    EXPECT_EQ(button.native().widget->objectName().toStdString(), "OK");
    EXPECT_TRUE(lines.empty());
}

TEST_F(ComponentManagerTest, ANameOfAnotherTypeIsRefusedWithALine) {
    make<Button>("OK");
    EXPECT_EQ(ComponentManager::createOrRetrieve<Static>("OK"), nullptr);
    EXPECT_EQ(ComponentManager::get<Static>("OK"), nullptr);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.front(), "component 'OK' is a BUTTON, not a STATIC");
}

TEST_F(ComponentManagerTest, ARenamedComponentStaysInItsLayout) {
    auto& window = make<Window>("WINDOW");
    auto& button = make<Button>("OLD");
    GridLayout grid(1, 1);
    grid.addComponent(button, 0, 0);
    window.setLayout(std::move(grid));
    ASSERT_TRUE(ComponentManager::rename("OLD", "NEW"));
    EXPECT_EQ(ComponentManager::get("OLD"), nullptr);
    window.getLayout()->update();
    EXPECT_EQ(button.getParent(), &window);
    EXPECT_FALSE(ComponentManager::rename("NEW", "WINDOW"));
}

TEST_F(ComponentManagerTest, ErasingAWindowErasesAllInItButItsSurface) {
    auto& outer = make<Window>("OUTER");
    auto& inner = make<Window>("INNER");
    auto& surface = make<Surface>("SURFACE");
    GridLayout innerGrid(2, 1);
    innerGrid.addComponent(make<Button>("BUTTON"), 0, 0);
    innerGrid.addComponent(surface, 1, 0);
    inner.setLayout(std::move(innerGrid));
    GridLayout grid(1, 1);
    grid.addComponent(inner, 0, 0);
    outer.setLayout(std::move(grid));
    outer.load();
    System::processEvents();
    EXPECT_TRUE(surface.isExposed());

    ComponentManager::erase("OUTER");
    System::processEvents();
    EXPECT_EQ(ComponentManager::get("BUTTON"), nullptr);
    EXPECT_EQ(ComponentManager::get("INNER"), nullptr);
    ASSERT_EQ(ComponentManager::get("SURFACE"), &surface);
    EXPECT_FALSE(surface.isExposed());
    EXPECT_TRUE(ComponentManager::erase("SURFACE"));
}

TEST_F(ComponentManagerTest, ACallbackMayEraseItsOwnComponent) {
    auto& button = make<Button>("GONE");
    button.setButtonClickCallback([] { ComponentManager::erase("GONE"); });
    button.click();
    System::processEvents();
    EXPECT_EQ(ComponentManager::get("GONE"), nullptr);
}

TEST_F(ComponentManagerTest, ADisabledComponentSaysWhy) {
    auto& button = make<Button>("SAVE");
    button.setToolTip("Saves");
    button.setEnabled(false, "Nothing is selected");
    EXPECT_EQ(button.getToolTip(), "Nothing is selected");
    button.setEnabled(true);
    EXPECT_EQ(button.getToolTip(), "Saves");
}

TEST_F(ComponentManagerTest, ClosingAsksAndNeverDestroys) {
    auto& main = make<Window>("MAIN");
    auto& other = make<Window>("OTHER");
    main.load();
    other.load();
    std::vector<std::string> asked;
    InputSystem::setCloseCallback([&](Component& closing) {
        asked.push_back(closing.getComponentName());
        if (&closing == &main)
            System::prepareForShutdown();
        else
            closing.setVisible(false);
        return true;
    });
    other.native().widget->close();
    EXPECT_FALSE(other.isVisible());
    EXPECT_TRUE(main.isVisible());
    main.native().widget->close();
    EXPECT_TRUE(main.isVisible());
    EXPECT_EQ(asked, (std::vector<std::string>{"OTHER", "MAIN"}));
    System::run();
    EXPECT_EQ(ComponentManager::get("OTHER"), &other);
}

TEST_F(ComponentManagerTest, TheDefaultPlacementFitsTheScreen) {
    auto& window = make<Window>("MAIN");
    window.load();
    EXPECT_LE(window.getWidth(), 1280U);
    EXPECT_GE(window.getWidth(), 600U);
}

using TabWindowTest = test::WinUiTest;

/// Where a person would click a tab.
void clickTab(TabWindow& tabs, std::size_t index) {
    const Rectangle tab = tabs.getTabRectangle(index);
    const Point origin = tabs.getPositionInScreen();
    test::click(tabs, tab.x - origin.x + 12, tab.y - origin.y + tab.height / 2);
}

TEST_F(TabWindowTest, ASwitchIsAskedForAndMayBeRefused) {
    auto& tabs = make<TabWindow>("TABS");
    tabs.addTab("Scene");
    tabs.addTab("Other");
    tabs.setVisible(true);
    bool allow = false;
    int asked = 0;
    tabs.setTabSwitchCallback([&](std::size_t from, std::size_t to) {
        ++asked;
        EXPECT_EQ(from, 0U);
        EXPECT_EQ(to, 1U);
        return allow;
    });
    clickTab(tabs, 1);
    EXPECT_EQ(tabs.getSelected(), 0U);
    allow = true;
    clickTab(tabs, 1);
    EXPECT_EQ(tabs.getSelected(), 1U);
    EXPECT_EQ(asked, 2);
    tabs.select(0);
    EXPECT_EQ(asked, 2);
}

TEST_F(TabWindowTest, TheRefusedTabMayMakeAndSelectANewOne) {
    auto& tabs = make<TabWindow>("TABS");
    tabs.addTab("Scene");
    tabs.addTab("+");
    tabs.setVisible(true);
    tabs.setTabSwitchCallback([&](std::size_t, std::size_t to) {
        if (tabs.getTabLabel(to) != "+") return true;
        tabs.insertTab(to, "New Tab");
        tabs.select(to);
        return false;
    });
    clickTab(tabs, 1);
    ASSERT_EQ(tabs.getTabCount(), 3U);
    EXPECT_EQ(tabs.getTabLabel(2), "+");
    EXPECT_EQ(tabs.getSelected(), 1U);
    EXPECT_EQ(tabs.getPage(1)->getComponentName(), "TABS_TAB_2");
    EXPECT_TRUE(tabs.getPage(1)->isVisible());
}

TEST_F(TabWindowTest, ADetachedPageLivesOnAndTheTabBeforeIsShown) {
    auto& tabs = make<TabWindow>("TABS");
    tabs.addTab("Scene");
    tabs.addTab("Mine");
    tabs.addTab("+");
    tabs.select(1);
    const Window* page = tabs.detachTab(1);
    EXPECT_EQ(ComponentManager::get("TABS_TAB_1"), page);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(tabs.getSelected(), 0U);
    ComponentManager::erase("TABS_TAB_0");
    EXPECT_EQ(tabs.getTabCount(), 1U);
    EXPECT_EQ(tabs.getText(), "+");
}

} // namespace
} // namespace vlWinUi
