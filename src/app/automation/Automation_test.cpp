#include "app/automation/Answers.h"
#include "app/automation/Arguments.h"
#include "app/automation/ScriptTrees.h"

#include <gmock/gmock.h>

#include <thread>

namespace vlEditor {
namespace {

using testing::HasSubstr;
using vlExport::Node;
using vlScripts::Table;
using vlScripts::Value;
using vlScripts::Values;

TEST(Answers, EachWaitGetsItsOwnAnswerFromAnotherThread) {
    Answers answers;
    const std::uint64_t first = answers.open();
    const std::uint64_t second = answers.open();
    std::thread other([&] {
        answers.give(second, Values{2});
        answers.give(4711, Values{});
        answers.give(first, Values{1});
        answers.give(first, Values{9});
    });
    EXPECT_EQ(answers.wait(first)->front().asInteger(), 1);
    EXPECT_EQ(answers.wait(second)->front().asInteger(), 2);
    other.join();
}

TEST(Answers, NoWaitOutlivesTheEditorOrItsDeadline) {
    Answers answers;
    const auto late = answers.wait(answers.open(), std::chrono::steady_clock::now(), "too late");
    EXPECT_EQ(late.error().message, "too late");
    const std::uint64_t answered = answers.open();
    const std::uint64_t waiting = answers.open();
    answers.give(answered, Values{true});
    std::thread other([&] { answers.end(); });
    EXPECT_EQ(answers.wait(waiting).error().message, "the editor is closing");
    other.join();
    EXPECT_TRUE(answers.wait(answered));
    EXPECT_FALSE(answers.wait(answers.open()));
    EXPECT_FALSE(answers.pause(std::chrono::hours(1)));
}

TEST(AutomationArguments, AreTakenByTypeAndRefusedByPlace) {
    std::string got;
    const auto function =
            withArguments<std::string, std::optional<std::uint32_t>, vlWinUi::Automation::Labels>(
                    "ui.test",
                    [&](const std::string& name,
                        std::optional<std::uint32_t> number,
                        const auto& rest) -> Answers::Answer {
                        got = name + (number ? std::to_string(*number) : "-");
                        for (const std::string& label : rest)
                            got += label;
                        return Values{};
                    });
    const auto call = [&](const Values& given) {
        const auto told = function(given);
        return told ? got : told.error().message;
    };
    EXPECT_EQ(call({"a"}), "a-");
    EXPECT_EQ(call({"a", Value(), "x", "y"}), "a-xy");
    EXPECT_EQ(call({"a", 7.0, "x"}), "a7x");
    EXPECT_THAT(call({}), HasSubstr("ui.test: argument 1: expected a text, got nil"));
    EXPECT_THAT(call({"a", -1}), HasSubstr("argument 2: expected a whole number from 0"));
    EXPECT_THAT(call({"a", 1, "x", false}), HasSubstr("argument 4"));
    const auto strict =
            withArguments<bool>("ui.strict", [](bool) -> Answers::Answer { return Values{}; });
    EXPECT_EQ(strict(Values{true, 1}).error().message, "ui.strict: too many arguments");
}

TEST(ScriptTrees, FieldsTakeThePlaceOfDefaults) {
    Node defaults = Node::object();
    defaults.add("name", "old");
    defaults.add("list", Node::array());
    defaults.add("inner", Node::object());
    Table fields;
    Table list;
    list.items = {1, 2.5, "three"};
    fields.members = {{"list", list}, {"inner", Table()}};
    const auto members = withFields(defaults, fields);
    ASSERT_TRUE(members);
    EXPECT_EQ(*members->find("name")->asString(), "old");
    ASSERT_EQ(members->find("list")->size(), 3U);
    EXPECT_EQ(members->find("list")->elements()[0].asSigned(), 1);
    EXPECT_TRUE(members->find("inner")->isObject());

    Table both = list;
    both.members = {{"a", 1}};
    fields.members = {{"list", both}};
    EXPECT_EQ(withFields(defaults, fields).error().message,
              "list: expected a list or an object, got a table that is both");
    EXPECT_FALSE(withFields(defaults, list));
}

} // namespace
} // namespace vlEditor
