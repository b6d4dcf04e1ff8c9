#include "interfaces/ContainerTest.h"

#include <vlWinUi/EditBox.h>
#include <vlWinUi/ToolBar.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using ContainerCreatorTest = ContainerTest;

TEST_F(ContainerCreatorTest, NamesNeverComeAgain) {
    EXPECT_EQ(containers().createContainer().getComponentName(), "CONTAINER_0");
    CommonWindowInit::createNewTab(*tabs, true);
    EXPECT_NE(ComponentManager::get("CONTAINER_1"), nullptr);
    CommonWindowInit::closeTab(*tabs, 1);
    EXPECT_EQ(ComponentManager::get("CONTAINER_1"), nullptr);
    EXPECT_EQ(containers().createContainer().getComponentName(), "CONTAINER_2");
}

TEST_F(ContainerCreatorTest, TheViewMenuListsEveryKindInItsOrder) {
    containers().createContainer();
    auto* bar = ComponentManager::get<vlWinUi::ToolBar>("CONTAINER_0_LBAR");
    vlWinUi::Menu* menu = bar->findMenu("View");
    ASSERT_EQ(menu->getItemCount(), 17U);
    EXPECT_EQ(menu->getItem(0).getLabel(), "Engine View");
    EXPECT_EQ(menu->getItem(4).getLabel(), "Graph Interaction View");
    EXPECT_EQ(menu->getItem(16).getLabel(), "Scripts View");
}

TEST_F(ContainerCreatorTest, AViewReplacesTheOneBefore) {
    vlWinUi::Window& container = containers().createContainer();
    vlWinUi::Menu& menu =
            *ComponentManager::get<vlWinUi::ToolBar>("CONTAINER_0_LBAR")->findMenu("View");
    menu.find("Graph Interaction View")->trigger();
    const std::string first = containers().getInterface(container)->getRootName();
    EXPECT_EQ(ComponentManager::get("CONTAINER_0_TITLE")->getText(), "Fake");
    menu.find("Graph Interaction View")->trigger();
    EXPECT_EQ(ComponentManager::get(first), nullptr);
    EXPECT_EQ(FakeInterface::live, 1);
}

TEST_F(ContainerCreatorTest, AnUnavailableOrUnknownViewLeavesTheContainerAsItWas) {
    vlWinUi::Window& container = containers().createContainer();
    ASSERT_TRUE(containers().createInterface(container, ContainerType::graph));
    const Interface* shown = containers().getInterface(container);
    EXPECT_FALSE(containers().createInterface(container, ContainerType::log));
    EXPECT_EQ(lastLine(), "[Editor] Log View is not available yet.");
    for (const int number : {0, 18, 255}) {
        EXPECT_FALSE(containers().createInterface(container, static_cast<ContainerType>(number)));
    }
    EXPECT_EQ(lastLine(),
              "[Editor] Trying to create an interface from an unknown container type. Aborting.");
    EXPECT_EQ(containers().getInterface(container), shown);
}

TEST_F(ContainerCreatorTest, ANewTabStandsBeforeThePlus) {
    CommonWindowInit::createNewTab(*tabs, true);
    EXPECT_THAT(labels(), ElementsAre("Scene", "New Tab", "+"));
    EXPECT_EQ(tabs->getSelected(), 1U);
}

TEST_F(ContainerCreatorTest, ClosingATabEndsItsViewsAndNoOthers) {
    vlWinUi::Window& made = CommonWindowInit::createNewTab(*tabs, true);
    CommonWindowInit::addContainer(made);
    vlWinUi::Window& elsewhere = containers().createContainer();
    for (const char* name : {"CONTAINER_0", "CONTAINER_1", "CONTAINER_2"}) {
        auto* container = ComponentManager::get<vlWinUi::Window>(name);
        ASSERT_TRUE(containers().createInterface(*container, ContainerType::graph));
    }
    CommonWindowInit::closeTab(*tabs, 2); // the plus
    EXPECT_EQ(FakeInterface::live, 3);
    CommonWindowInit::closeTab(*tabs, 1);
    EXPECT_EQ(FakeInterface::live, 1);
    EXPECT_NE(containers().getInterface(elsewhere), nullptr);
    EXPECT_THAT(labels(), ElementsAre("Scene", "+"));
}

TEST_F(ContainerCreatorTest, AClosedLastTabGivesWayToANewOneAndPlusIsNeverSelected) {
    CommonWindowInit::closeTab(*tabs, 0);
    EXPECT_THAT(labels(), ElementsAre("New Tab", "+"));
    EXPECT_EQ(tabs->getSelected(), 0U);
    CommonWindowInit::closeTab(*tabs, 0);
    EXPECT_EQ(InterfaceContainerManipulator::getContainers(*tabs->getPage(0)).size(), 1U);
    EXPECT_NE(ComponentManager::get("CONTAINER_1"), nullptr);
    CommonWindowInit::createNewTab(*tabs, false);
    CommonWindowInit::closeTab(*tabs, 0);
    EXPECT_EQ(tabs->getSelected(), 0U);
    tabs->cycle(true);
    EXPECT_EQ(tabs->getSelected(), 0U);
}

TEST_F(ContainerCreatorTest, ATabIsNotCalledLikeTheOneThatMakesTabs) {
    tabs->setVisible(true);
    for (const auto& [typed, expected] : {std::pair("+", "Scene"), std::pair("Lights", "Lights")}) {
        tabs->editTab(0);
        auto* edit = ComponentManager::get<vlWinUi::EditBox>("TABS_RENAME");
        ASSERT_NE(edit, nullptr);
        edit->setText(typed);
        tabs->editTab(0);
        EXPECT_EQ(tabs->getTabLabel(0), expected);
        edit->setText("");
    }
}

} // namespace
} // namespace vlEditor
