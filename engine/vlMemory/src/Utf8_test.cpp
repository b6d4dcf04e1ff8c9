#include <vlMemory/Utf8.h>

#include <gtest/gtest.h>

namespace vlMemory {
namespace {

TEST(Utf8, CharactersAreMeasuredAndBrokenOnesFound) {
    const struct {
        StringView text;
        std::size_t length;
    } cases[] = {{"", 0},
                 {"a", 1},
                 {StringView("\0", 1), 1},
                 {"\xC2\x80", 2},
                 {"\xDF\xBF"
                  "a",
                  2},
                 {"\xE0\xA0\x80", 3},
                 {"\xED\x9F\xBF", 3},
                 {"\xEF\xBF\xBF", 3},
                 {"\xF0\x90\x80\x80", 4},
                 {"\xF4\x8F\xBF\xBF", 4},
                 {"\x80", 0},
                 {"\xC1\x80", 0},         // overlong
                 {"\xE0\x9F\xBF", 0},     // overlong
                 {"\xF0\x8F\xBF\xBF", 0}, // overlong
                 {"\xED\xA0\x80", 0},     // surrogate
                 {"\xF4\x90\x80\x80", 0}, // beyond the last
                 {"\xF5\x80\x80\x80", 0},
                 {"\xC2", 0},
                 {"\xE2\x82", 0},
                 {"\xF0\x9F\x98", 0},
                 {"\xF0\x9F\x98"
                  "a",
                  0}};
    for (const auto& one : cases) {
        EXPECT_EQ(utf8Length(one.text), one.length) << one.text;
        const String after = "ab" + String(one.text);
        const std::size_t fault = one.length > 0 || one.text.empty() ? StringView::npos : 2;
        EXPECT_EQ(findInvalidUtf8(after), fault) << one.text;
    }
}

TEST(Utf8, APrintableLineHasNothingThatMovesTheCursor) {
    EXPECT_EQ(printable("plain \xC3\xA4 \xF0\x9F\x98\x80"), "plain \xC3\xA4 \xF0\x9F\x98\x80");
    EXPECT_EQ(printable("a\nb\r\x1B[31m\x7F\xC2\x85\xFF\xC2"), "a?b??[31m????");
    EXPECT_EQ(printable(StringView("a\0b", 3)), "a?b");
    EXPECT_EQ(printable("12345", 5), "12345");
    EXPECT_EQ(printable("123456", 5), "12345...");
    EXPECT_EQ(printable("1234\xC3\xA4", 5), "1234...");
}

TEST(Utf8, TextOfOneLineIsPrintable) {
    EXPECT_TRUE(isPrintable(""));
    EXPECT_TRUE(isPrintable("r\xC3\xA9sum\xC3\xA9 \xF0\x9F\x98\x80"));
    for (const StringView bad : {"a\nb", "\x7F", "\xC2\x85", "a\xC3"})
        EXPECT_FALSE(isPrintable(bad));
}

} // namespace
} // namespace vlMemory
