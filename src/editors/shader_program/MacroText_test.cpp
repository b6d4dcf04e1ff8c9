#include "editors/shader_program/MacroText.h"

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;

ShaderProgramMacroList read(const std::string& text) {
    ShaderProgramMacroList macros{{"OLD", "1"}};
    readCode(text, macros);
    return macros;
}

ShaderProgramMacro macro(std::string name, std::string value) {
    return {std::move(name), std::move(value)};
}

TEST(MacroText, EachLineNamesAMacroAndItsValue) {
    EXPECT_THAT(read("A 1 2\r\nB\n\nC\tx\n D 4\nE  5 \n\r\nF(x) (x)"),
                ElementsAre(macro("A", "1 2"),
                            macro("B", ""),
                            macro("C", "x"),
                            macro("E", " 5 "),
                            macro("F(x)", "(x)")));
    EXPECT_TRUE(read("").empty());
}

TEST(MacroText, WhatIsShownIsReadTheSame) {
    const ShaderProgramMacroList macros{{"A", "1 2"}, {"EMPTY", ""}, {"B", " x "}};
    EXPECT_EQ(codeText(macros), "A 1 2\nEMPTY \nB  x \n");
    EXPECT_EQ(read(codeText(macros)), macros);
}

} // namespace
} // namespace vlEditor
