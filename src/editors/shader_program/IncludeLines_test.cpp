#include "editors/shader_program/IncludeLines.h"

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

TEST(IncludeLines, AreFoundAsTheyAreWritten) {
    const std::string source = "// #include \"no.hlsl\"\n"
                               "#include \"a.hlsl\"\r\n"
                               " #\tinclude <lib/b.hlsl> // Why.\n"
                               "#includes \"no.hlsl\"\n"
                               "#include NAMED\n"
                               "#include \"\"\n"
                               "#include \"../c.hlsl";
    EXPECT_THAT(includeLines(source),
                testing::ElementsAre(IncludeLine{2, "a.hlsl"},
                                     IncludeLine{3, "lib/b.hlsl"},
                                     IncludeLine{7, "../c.hlsl"}));
    EXPECT_EQ(lineLeadingTo("p_src/a.hlsl", source), 2U);
    EXPECT_EQ(lineLeadingTo("lib/b.hlsl", source), 3U);
    EXPECT_EQ(lineLeadingTo("shaders/c.hlsl", source), 7U);
    EXPECT_EQ(lineLeadingTo("extra.hlsl", source), 2U) << "through the first";
    EXPECT_EQ(lineLeadingTo("a.hlsl", "float4 main() : SV_TARGET { return 1; }"), 0U);
}

} // namespace
} // namespace vlEditor
