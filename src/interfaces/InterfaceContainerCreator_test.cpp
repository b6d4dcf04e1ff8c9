#include "core/EditorLogger.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/System.h>
#include <vlWinUi/ToolBar.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using vlWinUi::ComponentManager;

int liveInterfaces = 0;

class FakeInterface final : public Interface {
public:
    FakeInterface()
        : Interface(*ComponentManager::createOrRetrieve<vlWinUi::Window>("FAKE_" +
                                                                         std::to_string(next_++))) {
        ++liveInterfaces;
    }
    ~FakeInterface() override { --liveInterfaces; }
    std::string title() const override { return "Fake"; }

private:
    inline static int next_ = 0;
};

class ContainerTest : public testing::Test {
protected:
    ContainerTest() {
        vlCommon::ThreadBorder::claimUi();
        vlWinUi::SystemOptions options;
        options.headless = true;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
        containers().setCreator(ContainerType::graph,
                                [] { return std::make_unique<FakeInterface>(); });
        tabs = ComponentManager::createOrRetrieve<vlWinUi::TabWindow>("TABS");
        CommonWindowInit::setUpTabs(*tabs);
        tabs->addTab("Scene");
        tabs->addTab("+");
    }
    ~ContainerTest() override {
        InterfaceContainerCreator::destroyInstance();
        EXPECT_EQ(liveInterfaces, 0);
        EditorLogger::destroyInstance();
        vlWinUi::System::kill();
    }

    static InterfaceContainerCreator& containers() {
        return InterfaceContainerCreator::getInstance();
    }
    std::vector<std::string> labels() const {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < tabs->getTabCount(); ++i) {
            texts.push_back(tabs->getTabLabel(i));
        }
        return texts;
    }
    static std::string lastLine() {
        const auto& lines = EditorLogger::getInstance().getKeptLines();
        return lines.empty() ? "" : lines.back();
    }

    vlWinUi::TabWindow* tabs = nullptr;
};

TEST_F(ContainerTest, NamesNeverComeAgain) {
    EXPECT_EQ(containers().createContainer().getComponentName(), "CONTAINER_0");
    CommonWindowInit::createNewTab(*tabs, true);
    EXPECT_NE(ComponentManager::get("CONTAINER_1"), nullptr);
    CommonWindowInit::closeTab(*tabs, 1);
    EXPECT_EQ(ComponentManager::get("CONTAINER_1"), nullptr);
    EXPECT_EQ(containers().createContainer().getComponentName(), "CONTAINER_2");
}

TEST_F(ContainerTest, TheViewMenuListsEveryKindInItsOrder) {
    containers().createContainer();
    auto* bar = ComponentManager::get<vlWinUi::ToolBar>("CONTAINER_0_LBAR");
    vlWinUi::Menu* menu = bar->findMenu("View");
    ASSERT_EQ(menu->getItemCount(), 17U);
    EXPECT_EQ(menu->getItem(0).getLabel(), "Engine View");
    EXPECT_EQ(menu->getItem(4).getLabel(), "Graph Interaction View");
    EXPECT_EQ(menu->getItem(16).getLabel(), "Scripts View");
}

TEST_F(ContainerTest, AViewReplacesTheOneBefore) {
    vlWinUi::Window& container = containers().createContainer();
    vlWinUi::Menu& menu =
            *ComponentManager::get<vlWinUi::ToolBar>("CONTAINER_0_LBAR")->findMenu("View");
    menu.find("Graph Interaction View")->trigger();
    const std::string first = containers().getInterface(container)->getRootName();
    EXPECT_EQ(ComponentManager::get("CONTAINER_0_TITLE")->getText(), "Fake");
    menu.find("Graph Interaction View")->trigger();
    EXPECT_EQ(ComponentManager::get(first), nullptr);
    EXPECT_EQ(liveInterfaces, 1);
}

TEST_F(ContainerTest, AnUnavailableOrUnknownViewLeavesTheContainerAsItWas) {
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

TEST_F(ContainerTest, ANewTabStandsBeforeThePlus) {
    CommonWindowInit::createNewTab(*tabs, true);
    EXPECT_THAT(labels(), ElementsAre("Scene", "New Tab", "+"));
    EXPECT_EQ(tabs->getSelected(), 1U);
}

TEST_F(ContainerTest, ClosingATabEndsItsViewsAndNoOthers) {
    vlWinUi::Window& page = CommonWindowInit::createNewTab(*tabs, true);
    CommonWindowInit::addContainer(page);
    vlWinUi::Window& elsewhere = containers().createContainer();
    for (const char* name : {"CONTAINER_0", "CONTAINER_1", "CONTAINER_2"}) {
        auto* container = ComponentManager::get<vlWinUi::Window>(name);
        ASSERT_TRUE(containers().createInterface(*container, ContainerType::graph));
    }
    CommonWindowInit::closeTab(*tabs, 2); // the plus
    EXPECT_EQ(liveInterfaces, 3);
    CommonWindowInit::closeTab(*tabs, 1);
    EXPECT_EQ(liveInterfaces, 1);
    EXPECT_NE(containers().getInterface(elsewhere), nullptr);
    EXPECT_THAT(labels(), ElementsAre("Scene", "+"));
}

} // namespace
} // namespace vlEditor
