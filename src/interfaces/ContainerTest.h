#pragma once
#include "core/EditorLogger.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/System.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace vlEditor {

using vlWinUi::ComponentManager;

/** A view that counts how many of it live. */
class FakeInterface final : public Interface {
public:
    FakeInterface()
        : Interface(*ComponentManager::createOrRetrieve<vlWinUi::Window>("FAKE_" +
                                                                         std::to_string(next_++))) {
        ++live;
    }
    ~FakeInterface() override { --live; }
    std::string title() const override { return "Fake"; }

    inline static int live = 0;

private:
    inline static int next_ = 0;
};

/** Tabs with the first one and "+", drawn in memory, and one kind of view. */
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
        page = tabs->addTab("Scene");
        CommonWindowInit::addNewTabTab(*tabs);
    }
    ~ContainerTest() override {
        InterfaceContainerCreator::destroyInstance();
        EXPECT_EQ(FakeInterface::live, 0);
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
    vlWinUi::Window* page = nullptr; ///< of the first tab, yet without a layout
};

} // namespace vlEditor
