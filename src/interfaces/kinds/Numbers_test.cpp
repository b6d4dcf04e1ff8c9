#include "interfaces/kinds/Numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace vlEditor {
namespace {

TEST(Numbers, AreReadAsFarAsTheyGoInAnyLocale) {
    for (const char* locale : {"C", "de_DE.UTF-8", ""}) {
        if (std::setlocale(LC_ALL, locale) == nullptr) continue;
        EXPECT_EQ(parseNumber<std::int32_t>("12.7"), 12);
        EXPECT_EQ(parseNumber<float>("0.5x"), 0.5F);
        EXPECT_EQ(parseNumber<float>("1,5"), 1.0F);
        EXPECT_EQ(showNumber(0.5F), "0.5");
    }
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(parseNumber<std::int32_t>(" \t+7 apples"), 7);
    EXPECT_EQ(parseNumber<std::int32_t>("-3"), -3);
    EXPECT_EQ(parseNumber<float>(" -.25"), -0.25F);
    EXPECT_EQ(parseNumber<float>("1e3"), 1000.0F);
}

TEST(Numbers, WhatIsNoneGivesZero) {
    for (const char* text : {"", " ", "abc", "+-1", "--1", "+", "-", ".", "x1"}) {
        EXPECT_EQ(parseNumber<std::int32_t>(text), 0) << text;
        EXPECT_EQ(parseNumber<std::uint32_t>(text), 0U) << text;
        EXPECT_EQ(parseNumber<float>(text), 0.0F) << text;
    }
    for (const char* text : {"inf", "-inf", "nan", "1e99", "0x10"})
        EXPECT_EQ(parseNumber<float>(text), 0.0F) << text;
}

TEST(Numbers, WholeOnesEndAtTheBoundsAndMasksKeepTheirLowBits) {
    EXPECT_EQ(parseNumber<std::int32_t>("99999999999"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(parseNumber<std::int32_t>("-99999999999999999999"),
              std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(parseNumber<std::uint32_t>("4294967295"), 4294967295U);
    EXPECT_EQ(parseNumber<std::uint32_t>("5000000000"), 4294967295U);
    EXPECT_EQ(parseNumber<std::uint32_t>("-1"), 0U);
    EXPECT_EQ(parseNumber<std::uint8_t>("300"), 44);
    EXPECT_EQ(parseNumber<std::uint8_t>("-1"), 255);
}

TEST(Numbers, AreShownSoThatTheyAreReadAgain) {
    for (const float number : {0.1F, 1.0F / 3, 1e-30F, 3.4e38F, -0.0F, 16777217.0F})
        EXPECT_EQ(parseNumber<float>(showNumber(number)), number);
    EXPECT_EQ(showNumber(std::uint32_t{4294967295U}), "4294967295");
    EXPECT_EQ(showNumber(std::uint8_t{44}), "44");
}

} // namespace
} // namespace vlEditor
