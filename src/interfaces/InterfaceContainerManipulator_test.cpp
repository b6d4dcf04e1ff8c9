#include "interfaces/ContainerTest.h"
#include "interfaces/ContainerTitleMenu.h"
#include "interfaces/ResizeContainerDialog.h"

#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/Surface.h>

#include <random>

namespace vlEditor {
namespace {

using Manipulator = InterfaceContainerManipulator;
using vlWinUi::Window;

/// One container in a page of 1200 by 800.
class ContainerManipulatorTest : public ContainerTest {
protected:
    ContainerManipulatorTest() {
        auto& window = *ComponentManager::createOrRetrieve<Window>("WINDOW");
        vlWinUi::GridLayout grid(1, 1);
        grid.addComponent(*tabs, 0, 0);
        grid.ignoreInternalBorder(0, 0);
        window.setLayout(std::move(grid));
        first = &containers().createContainer();
        page->setLayout(Manipulator::layoutWith(*first));
        window.setRectangle({10, 10, 1200, 800});
        window.setVisible(true);
        settle();
    }
    static void settle() {
        for (int i = 0; i < 3; ++i)
            vlWinUi::System::processEvents();
    }
    static Window& split(Window& container, ContainerSide side) {
        Window& made = Manipulator::addContainer(container, side);
        settle();
        return made;
    }
    static vlWinUi::Rectangle placeOf(const Window& container) {
        const vlWinUi::Point at = container.getPositionInScreen();
        return {at.x,
                at.y,
                static_cast<int>(container.getWidth()),
                static_cast<int>(container.getHeight())};
    }
    std::vector<Window*> all() const { return Manipulator::getContainers(*page); }

    Window* first = nullptr;
};

bool overlap(const vlWinUi::Rectangle& a, const vlWinUi::Rectangle& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

TEST_F(ContainerManipulatorTest, ASplitTakesRoomFromTheClickedOneAlone) {
    Window& right = split(*first, ContainerSide::right);
    EXPECT_NEAR(placeOf(right).width, placeOf(*first).width, 1);
    const auto untouched = placeOf(right);
    Window& under = split(*first, ContainerSide::under);
    Window& left = split(*first, ContainerSide::left);
    Window& above = split(under, ContainerSide::above);
    EXPECT_EQ(placeOf(right), untouched);
    EXPECT_EQ(all(), (std::vector<Window*>{&left, first, &above, &under, &right}));
    EXPECT_LT(placeOf(left).x, placeOf(*first).x);
    EXPECT_EQ(placeOf(left).y, placeOf(*first).y);
    EXPECT_EQ(placeOf(above).x, placeOf(left).x);
    EXPECT_LT(placeOf(above).y, placeOf(under).y);
    EXPECT_EQ(placeOf(under).x + placeOf(under).width, placeOf(*first).x + placeOf(*first).width);
}

TEST_F(ContainerManipulatorTest, WhatAContainerShowsLivesThroughEverySplit) {
    ASSERT_TRUE(containers().createInterface(*first, ContainerType::graph));
    auto& root = *containers().getInterface(*first)->getRoot();
    auto& surface = *ComponentManager::createOrRetrieve<vlWinUi::Surface>("SURFACE");
    vlWinUi::GridLayout grid(1, 1);
    grid.addComponent(surface, 0, 0);
    root.setLayout(std::move(grid));
    bool lost = false;
    surface.setLossCallback([&] { lost = true; });
    Window& right = split(*first, ContainerSide::right);
    split(*first, ContainerSide::under);
    split(*first, ContainerSide::left);
    EXPECT_TRUE(surface.isVisible());
    Manipulator::closeContainer(right);
    settle();
    EXPECT_TRUE(surface.isVisible());
    EXPECT_FALSE(lost);
    EXPECT_EQ(containers().getType(*first), ContainerType::graph);
    EXPECT_EQ(FakeInterface::live, 1);
    ComponentManager::erase("SURFACE");
}

TEST_F(ContainerManipulatorTest, ManySplitsAndClosesStaySound) {
    std::mt19937 random(7); // NOLINT: the same run each time
    const auto pick = [&](std::size_t count) { return random() % count; };
    for (int round = 0; round < 60; ++round) {
        const auto before = all();
        Window& chosen = *before[pick(before.size())];
        if (before.size() < 20 && pick(3) != 0)
            split(chosen, static_cast<ContainerSide>(pick(4)));
        else
            Manipulator::closeContainer(chosen);
        settle();
        const auto now = all();
        ASSERT_FALSE(now.empty());
        for (std::size_t i = 0; i < now.size(); ++i) {
            const auto place = placeOf(*now[i]);
            EXPECT_GE(place.width, 168);
            EXPECT_GE(place.height, 64);
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(overlap(place, placeOf(*now[j]))) << "round " << round;
        }
    }
    while (all().size() > 1)
        Manipulator::closeContainer(*all().back());
    settle();
    EXPECT_EQ(all().front()->getWidth(), 1192U);
    EXPECT_TRUE(ComponentManager::startingWith("SPLIT_").size() <= 1);
}

TEST_F(ContainerManipulatorTest, AClosedContainerLeavesItsRoomToItsNeighbour) {
    Window& middle = split(*first, ContainerSide::right);
    Window& last = split(middle, ContainerSide::right);
    const auto kept = placeOf(last);
    Manipulator::closeContainer(middle);
    settle();
    EXPECT_EQ(placeOf(last), kept);
    Manipulator::setFixedWidth(last, 300);
    Manipulator::closeContainer(*first);
    settle();
    EXPECT_EQ(last.getWidth(), 1192U);
    const std::string name = last.getComponentName();
    Manipulator::closeContainer(last);
    EXPECT_EQ(ComponentManager::get(name), nullptr);
    ASSERT_EQ(all().size(), 1U);
    EXPECT_EQ(all().front()->getComponentName(), "CONTAINER_3");
}

TEST_F(ContainerManipulatorTest, AFixedSizeIsThatOfTheColumnAContainerIsIn) {
    Window& right = split(*first, ContainerSide::right);
    Window& under = split(right, ContainerSide::under);
    Manipulator::setFixedWidth(under, 400);
    settle();
    EXPECT_EQ(right.getWidth(), 392U);
    EXPECT_EQ(under.getWidth(), 392U);
    EXPECT_EQ(first->getWidth(), 792U);
    EXPECT_EQ(Manipulator::getColumnWidth(under), 400U);
    Manipulator::setFixedHeight(under, 200);
    settle();
    EXPECT_EQ(under.getHeight(), 192U);
    EXPECT_EQ(page->getLayout()->getColumns()[1].fixedSize, 400.0F);
}

TEST_F(ContainerManipulatorTest, AContainerAddedAtTheEndStandsBesideAllRows) {
    Window& under = split(*first, ContainerSide::under);
    Window& added = CommonWindowInit::addContainer(*page);
    settle();
    EXPECT_EQ(all(), (std::vector<Window*>{first, &under, &added}));
    EXPECT_NEAR(placeOf(added).width, placeOf(*first).width, 1);
    EXPECT_EQ(placeOf(*first).width, placeOf(under).width);
    EXPECT_NEAR(placeOf(added).height, 2 * placeOf(under).height + 8, 1);
}

TEST_F(ContainerManipulatorTest, TheTitleMenuOffersEverythingInItsOrder) {
    ContainerTitleMenu::open("CONTAINER_0", {100, 100});
    auto& menu =
            ComponentManager::get<vlWinUi::ContextMenu>("EDITOR_CONTAINER_TITLE_MENU")->getMenu();
    std::vector<std::string> labels;
    for (std::size_t i = 0; i < menu.getItemCount(); ++i)
        labels.push_back(menu.getItem(i).getLabel());
    EXPECT_THAT(labels,
                testing::ElementsAre("Set fixed pixel width",
                                     "Set fixed pixel height",
                                     "Add container above",
                                     "Add container left",
                                     "Add container right",
                                     "Add container under",
                                     "Free fixed size",
                                     "Close container"));
    menu.find("Add container left")->trigger();
    settle();
    ASSERT_EQ(all().size(), 2U);
    EXPECT_EQ(all()[0]->getComponentName(), "CONTAINER_1");
    menu.find("Close container")->trigger();
    settle();
    ASSERT_EQ(all().size(), 1U);
    // The container that the menu was opened for is gone by now.
    menu.find("Add container left")->trigger();
    EXPECT_EQ(all().size(), 1U);
}

TEST_F(ContainerManipulatorTest, TheSizeDialogReadsANumberAsCDoes) {
    EXPECT_EQ(ResizeContainerDialog::pixelsFrom(" 250"), 250);
    EXPECT_EQ(ResizeContainerDialog::pixelsFrom("12px"), 12);
    EXPECT_EQ(ResizeContainerDialog::pixelsFrom("wide"), 0);
    EXPECT_EQ(ResizeContainerDialog::pixelsFrom(""), 0);
    split(*first, ContainerSide::right);
    const auto fixed = [&] { return page->getLayout()->getColumns()[0].fixedSize; };
    ResizeContainerDialog::open(*first, true);
    auto& dialog = *ComponentManager::get<Window>("EDITOR_RESIZE_CONTAINER");
    EXPECT_EQ(dialog.getWidth(), 250U);
    EXPECT_EQ(dialog.getHeight(), 36U);
    auto& edit = *ComponentManager::get<vlWinUi::EditBox>("EDITOR_RESIZE_CONTAINER_EDIT");
    EXPECT_EQ(edit.getText(), "600");
    vlWinUi::InputSystem::requestClose(dialog);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_FALSE(fixed());
    Manipulator::setFixedWidth(*first, -5);
    EXPECT_EQ(fixed(), 0.0F);
    Manipulator::setFixedWidth(*first, 1L << 40U);
    EXPECT_EQ(fixed(), static_cast<float>(Manipulator::largestFixedSize));
}

} // namespace
} // namespace vlEditor
