#include "editors/script/ScriptStatus.h"

#include <gtest/gtest.h>

namespace vlEditor {
namespace {

void expectLine(const std::string& name, std::size_t line, const std::string& text) {
    vlScripts::Script script(name);
    script.setSources("\n\n(");
    ASSERT_FALSE(script.load());
    const ScriptStatus status = errorStatus(name, compileErrorOf(script));
    EXPECT_EQ(status.line, line) << compileErrorOf(script);
    EXPECT_TRUE(status.text.starts_with(text)) << status.text;
    EXPECT_TRUE(status.isError);
}

TEST(ScriptStatus, AnErrorStandsAtItsLineWhateverTheName) {
    expectLine("a", 3, "Line 3: ");
    expectLine("1:2: a", 3, "Line 3: ");
    expectLine(std::string(200, 'a'), 3, "Line 3: ");
    EXPECT_EQ(errorStatus("a", "script 'a': it is too long").line, 0U);
    EXPECT_EQ(errorStatus("a", "a:b").text, "a:b");
    EXPECT_EQ(errorStatus("a", "a:7").line, 0U);
}

TEST(ScriptStatus, AScriptIsCompiledAsLongAsItsTextAndNameStay) {
    vlScripts::Script script("a");
    EXPECT_FALSE(isCompiledAsItIs(script));
    EXPECT_EQ(compileErrorOf(script), "");
    ASSERT_TRUE(script.load());
    EXPECT_TRUE(isCompiledAsItIs(script));
    script.setSources("(");
    EXPECT_FALSE(isCompiledAsItIs(script));
    EXPECT_EQ(compileErrorOf(script), "");
}

} // namespace
} // namespace vlEditor
