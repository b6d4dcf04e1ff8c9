#include "interfaces/LayoutTemplate.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/LogManager.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <gtest/gtest.h>

namespace vlEditor {
namespace {

using vlWinUi::ComponentManager;

TEST(LayoutTemplate, WhatIsPutInIsNeverExpandedAgain) {
    const auto fill = [](std::string_view text, std::string_view base) {
        return LayoutTemplate::fill(text, {{"$basename$", base}, {"$id$", "3"}});
    };
    EXPECT_EQ(fill("$basename$_SRC_EDIT_$id$", "ABC"), "ABC_SRC_EDIT_3");
    EXPECT_EQ(fill("$basename$$basename$|$id$$id$", "x"), "xx|33");
    EXPECT_EQ(fill("<$basename$>", "a$basename$b$id$"), "<a$basename$b$id$>");
    EXPECT_EQ(fill("$basename$id$", "$"), "$id$");
    EXPECT_EQ(fill("$base $id name$ $", "x"), "$base $id name$ $");
    EXPECT_EQ(fill("", "x"), "");
}

struct LayoutTemplateTest : testing::Test, vlLog::Logger {
    void SetUp() override {
        vlWinUi::LogManager::getInstance().setReceiver(this);
        ASSERT_TRUE(vlWinUi::System::initialize({.headless = true}));
    }
    void TearDown() override {
        vlWinUi::System::kill();
        vlWinUi::LogManager::getInstance().setReceiver(nullptr);
    }
    void log(vlMemory::StringView text) override { lines.emplace_back(text); }

    std::vector<std::string> lines;
};

TEST_F(LayoutTemplateTest, SeveralWindowsOfOneTemplateStandBesideEachOther) {
    const LayoutTemplate windows(
            R"({"element": {"name": "$basename$", "type": "WINDOW"},
                "layouts": [{"parent": "$basename$", "type": "GRID", "components": [
                    {"name": "$basename$_TARGET_0", "y": 0},
                    {"name": "$basename$_TARGET_1", "y": 1}]}]})",
            {{R"({"children": [{"name": "$basename$_TARGET_$id$", "type": "GROUP_BOX",
                                "label": "Target $id$"}]})",
              2}});
    const vlWinUi::Component* first = windows.instantiate("FIRST");
    const vlWinUi::Component* second = windows.instantiate("SECOND");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(second->getComponentName(), "SECOND");
    const vlWinUi::Component* target = ComponentManager::get("SECOND_TARGET_1");
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->getText(), "Target 1");
    EXPECT_EQ(target->getParent(), second);
    EXPECT_EQ(ComponentManager::get("FIRST_TARGET_2"), nullptr);
    EXPECT_EQ(windows.instantiate("FIRST"), first);
    EXPECT_TRUE(lines.empty());
}

TEST_F(LayoutTemplateTest, EveryTextOfTheProgramIsFreeOfFaults) {
    for (const std::string_view file : {"rendering_property.json"}) {
        EXPECT_NE(LayoutTemplate(layoutText(file)).instantiate("BASE"), nullptr) << file;
        EXPECT_EQ(lines, std::vector<std::string>()) << file;
    }
    EXPECT_EQ(LayoutTemplate(layoutText("no_such.json")).instantiate("LOST"), nullptr);
    EXPECT_EQ(lines.size(), 1U);
}

} // namespace
} // namespace vlEditor
