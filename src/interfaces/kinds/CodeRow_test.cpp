#include "core/EditorLogger.h"
#include "interfaces/kinds/CodeRow.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Automation.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vlWinUi::Automation;
using vlWinUi::ComponentManager;

struct Source {
    std::string name;
    std::string text;
    std::string second = {};
};

class CodeRowTest : public testing::Test {
protected:
    CodeRowTest() {
        vlCommon::ThreadBorder::claimUi();
        vlWinUi::SystemOptions options;
        options.headless = true;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
        edit = ComponentManager::createOrRetrieve<vlWinUi::CodeEdit>("CODE");
        auto& window = *ComponentManager::createOrRetrieve<vlWinUi::Window>("W");
        vlWinUi::GridLayout grid(1, 2);
        grid.addComponent(*edit, 0, 0);
        grid.addComponent(*ComponentManager::createOrRetrieve<vlWinUi::EditBox>("ELSE"), 0, 1);
        window.setRectangle({0, 0, 400, 300});
        window.setLayout(std::move(grid));
        window.load();
        vlWinUi::System::settle();
        row.emplace("CODE",
                    [this](const void*,
                           CodeRow::Part part,
                           const std::string& name,
                           const std::string& text) {
                        const char* mark = part == 0 ? ": " : " (second): ";
                        posted.push_back(name + mark + text);
                    });
        show(a);
    }
    ~CodeRowTest() override {
        row.reset();
        EditorLogger::destroyInstance();
        vlWinUi::System::kill();
    }
    void show(const Source& source) {
        row->show(source, source.name, [&](CodeRow::Part part) {
            return part == 0 ? source.text : source.second;
        });
    }
    void showPart(CodeRow::Part part, const Source& source) {
        row->setPart(part);
        show(source);
    }
    /// False when the field is read-only.
    static bool type(std::string_view text, std::string_view component = "CODE") {
        std::optional<bool> done;
        Automation::type(component, text, [&](const auto& result) { done = result.has_value(); });
        while (!done)
            vlWinUi::System::processEvents();
        return *done;
    }

    vlWinUi::CodeEdit* edit = nullptr;
    std::vector<std::string> posted;
    std::optional<CodeRow> row;
    Source a{"a", "one"};
    Source b{"b", "two"};
};

TEST_F(CodeRowTest, ABurstOfTypingIsPostedOnceAfterAPause) {
    type("x");
    type("y");
    EXPECT_THAT(posted, IsEmpty());
    while (posted.empty())
        vlWinUi::System::processEvents();
    EXPECT_THAT(posted, ElementsAre("a: y"));
    PendingEdit::flushAll();
    EXPECT_EQ(posted.size(), 1U);
}

TEST_F(CodeRowTest, ItIsPostedBeforeWhateverComesNext) {
    type("x");
    PendingEdit::flushAll();
    EXPECT_THAT(posted, ElementsAre("a: x"));
    type("y");
    show(b);
    EXPECT_EQ(posted.back(), "a: y");
    EXPECT_EQ(edit->getText(), "two");
    type("z");
    type("", "ELSE"); // takes the focus
    EXPECT_EQ(posted.back(), "b: z");
    type("last");
    row.reset();
    EXPECT_EQ(posted.back(), "b: last");
}

TEST_F(CodeRowTest, WhatComesHomeNeverReplacesWhatIsNewer) {
    type("x");
    show(a);
    EXPECT_EQ(edit->getText(), "x") << "a refresh while it is typed";
    row->flush();
    type("xy");
    row->flush();
    show(a);
    EXPECT_EQ(edit->getText(), "xy") << "a refresh while both are on their way";
    a.text = "x";
    show(a);
    EXPECT_EQ(edit->getText(), "xy") << "the first one is back";
    a.text = "xy";
    show(a);
    a.text = "undone";
    show(a);
    EXPECT_EQ(edit->getText(), "undone");
}

TEST_F(CodeRowTest, TypingOutlastsARenameAndEndsWithItsResource) {
    type("x");
    a.name += "2";
    show(a);
    row->flush();
    EXPECT_THAT(posted, ElementsAre("a2: x"));
    type("y");
    row->forget(a);
    row->showReadOnly("");
    EXPECT_EQ(posted.size(), 1U);
    EXPECT_FALSE(type("z"));
}

TEST_F(CodeRowTest, EachPartGetsWhatWasTypedForIt) {
    a.second = "other";
    type("x");
    showPart(1, a);
    EXPECT_THAT(posted, ElementsAre("a: x"));
    EXPECT_EQ(edit->getText(), "other");
    type("y");
    showPart(0, a);
    EXPECT_EQ(posted.back(), "a (second): y");
    EXPECT_EQ(edit->getText(), "x") << "it is on its way yet";
    a.text = "x";
    a.second = "y";
    show(a);
    a.text = "changed elsewhere";
    show(a);
    EXPECT_EQ(edit->getText(), "changed elsewhere");
    showPart(1, a);
    EXPECT_EQ(edit->getText(), "y");
}

TEST_F(CodeRowTest, WhatMeansTheSameStaysAsItWasTyped) {
    const auto upper = [](std::string text) {
        std::ranges::transform(text, text.begin(), [](char c) { return c == 'x' ? 'X' : c; });
        return text;
    };
    std::vector<std::string> typed;
    const auto post = [&](const void*, CodeRow::Part, const std::string&, const std::string& text) {
        typed.push_back(text);
    };
    row.emplace("CODE", post, upper);
    show(a);
    type("ax");
    row->flush();
    EXPECT_THAT(typed, ElementsAre("ax"));
    a.text = "aX";
    show(a);
    EXPECT_EQ(edit->getText(), "ax");
    a.text = "b";
    show(a);
    EXPECT_EQ(edit->getText(), "b");
}

TEST_F(CodeRowTest, SeveralAreShownAndNotTyped) {
    type("x");
    row->showReadOnly(std::nullopt);
    EXPECT_THAT(posted, ElementsAre("a: x"));
    EXPECT_EQ(edit->getText(), "");
    EXPECT_FALSE(type("y"));
    row->showReadOnly("two");
    EXPECT_EQ(edit->getText(), "two");
    show(b);
    EXPECT_TRUE(type("y"));
}

} // namespace
} // namespace vlEditor
