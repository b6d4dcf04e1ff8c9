#include <vlExport/JsonExporter.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace vlExport {
namespace {

vlCommon::Result<Node> import(vlMemory::StringView text) {
    return JsonExporter::importIntoTree(text, "a.json");
}

std::string errorOf(vlMemory::StringView text) {
    const auto tree = import(text);
    EXPECT_FALSE(tree.has_value());
    return tree ? "" : tree.error().message;
}

void expectStable(const Node& tree) {
    const vlMemory::String text = JsonExporter::exportTreeIntoString(tree);
    const auto again = import(text);
    ASSERT_TRUE(again.has_value()) << again.error().message;
    EXPECT_EQ(*again, tree);
    EXPECT_EQ(JsonExporter::exportTreeIntoString(*again), text);
}

TEST(Json, WritesStableReadableText) {
    Node tree = Node::object();
    tree.add("name", "rust \"1\"\n\x01 \xC3\xA4");
    tree.add("position", Node::array(std::array{0.1F, 2.0F, -1e-7F}));
    tree.add("empty", Node::array());
    tree.add("none", Node::object());
    Node& passes = tree.add("passes", Node::array());
    passes.append(Node::object()).add("clear", true);
    passes.append(Node());
    EXPECT_EQ(JsonExporter::exportTreeIntoString(tree), R"({
  "name": "rust \"1\"\n\u0001 ä",
  "position": [0.1, 2.0, -1e-07],
  "empty": [],
  "none": {},
  "passes": [
    {
      "clear": true
    },
    null
  ]
}
)");
    expectStable(tree);
}

TEST(Json, LongNumberArraysTakeSixteenALine) {
    Node tree = Node::array();
    for (int index = 0; index < 40; ++index)
        tree.append(index);
    const auto text = JsonExporter::exportTreeIntoString(tree);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5);
    expectStable(tree);
}

TEST(Json, EveryFloatComesBackAsTheSameBits) {
    std::mt19937 random(3);
    Node tree = Node::array();
    std::vector<float> values{0.0F,
                              -0.0F,
                              0.1F,
                              1e10F,
                              16777216.0F,
                              123456792.0F,
                              std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::min(),
                              std::numeric_limits<float>::denorm_min()};
    while (values.size() < 20000) {
        const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(value)) values.push_back(value);
    }
    for (const float value : values)
        tree.append(value);
    const auto again = import(JsonExporter::exportTreeIntoString(tree));
    ASSERT_TRUE(again.has_value());
    for (std::size_t at = 0; at < values.size(); ++at) {
        const auto value = again->elements()[at].asFloat();
        ASSERT_TRUE(value.has_value());
        ASSERT_EQ(std::bit_cast<std::uint32_t>(*value), std::bit_cast<std::uint32_t>(values[at]));
    }
    expectStable(tree);
    EXPECT_EQ(JsonExporter::exportTreeIntoString(0.1F), "0.1\n");
}

TEST(Json, IntegersKeepAllTheirBitsAndRealsStayReal) {
    Node tree = Node::array();
    tree.append(std::numeric_limits<std::uint64_t>::max());
    tree.append(std::numeric_limits<std::int64_t>::min());
    tree.append(3.0);
    tree.append(1e300);
    expectStable(tree);
    EXPECT_EQ(Node(5), Node(5U));
    EXPECT_NE(Node(5), Node(5.0));
    EXPECT_FALSE(Node(-1).asUnsigned().has_value());
    EXPECT_FALSE(Node(1e300).asFloat().has_value());
}

TEST(Json, WhatJsonCannotSayIsWrittenSoThatItCanBeRead) {
    Node tree = Node::array();
    tree.append(std::nan(""));
    tree.append(-std::numeric_limits<float>::infinity());
    tree.append("a\xFFz\xE2\x82");
    const auto again = import(JsonExporter::exportTreeIntoString(tree));
    ASSERT_TRUE(again.has_value()) << again.error().message;
    EXPECT_EQ(again->elements()[0], Node(0.0));
    EXPECT_EQ(*again->elements()[2].asString(), "a\xEF\xBF\xBDz\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Json, HostileDepthIsRefusedWithoutAStackOverflow) {
    EXPECT_EQ(errorOf(std::string(1000000, '[')),
              "a.json:1: more than 200 arrays and objects within each other");
    std::string objects;
    for (int level = 0; level < 1000000; ++level)
        objects += "{\"a\":\n";
    EXPECT_EQ(errorOf(objects), "a.json:201: more than 200 arrays and objects within each other");
    EXPECT_TRUE(import(std::string(200, '[') + std::string(200, ']')).has_value());
}

TEST(Json, NamesStandOnceAlsoInLargeObjects) {
    EXPECT_EQ(errorOf("{\"a\": 1,\n \"b\": {\"a\": 2},\n \"a\": 3}"),
              "a.json:3: 'a' stands here twice");
    std::string text = "{";
    for (int index = 0; index < 100000; ++index) {
        text += "\"m" + std::to_string(index) + "\":0,\n";
    }
    EXPECT_TRUE(import(text + "\"last\":0}").has_value());
    EXPECT_EQ(errorOf(text + "\"m77\":0}"), "a.json:100001: 'm77' stands here twice");
    EXPECT_EQ(errorOf(text + "\"m3\":0}"), "a.json:100001: 'm3' stands here twice");
}

TEST(Json, BrokenTextGivesOneLineWithItsPlace) {
    const std::pair<std::string, std::string> cases[] = {
            {"", "a.json:1: "},
            {"{\n  \"a\": 1,\n}", "a.json:3: "},
            {"[1, 2", "a.json:1: "},
            {"[1] 2", "a.json:1: "},
            {"[\"a\xFF\"]", "a.json:1: "},
            {"[\n\"\xC0\xAF\"]", "a.json:2: "},
            {"[\"\\ud800\"]", "a.json:1: "},
            {"[NaN]", "a.json:1: "},
            {"[\n1e999]", "a.json:2: "},
            {"[18446744073709551616]", "a.json:1: the number 18446744073709551616 is out of range"},
            {"[01]", "a.json:1: "},
            {std::string("[1\0]", 4), "a.json:1: "},
    };
    for (const auto& [text, start] : cases) {
        const std::string error = errorOf(text);
        EXPECT_EQ(error.substr(0, start.size()), start) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
        EXPECT_EQ(error.find("json.exception"), std::string::npos) << error;
    }
    EXPECT_LT(errorOf("[\"" + std::string(1000000, 'x')).size(), 400U);
}

TEST(Json, EveryPrefixOfAFileIsRefused) {
    const std::string text = "{\"a\": [1, 2.5, \"x\\u00e4\"], \"b\": {\"c\": null, \"d\": true}}";
    for (std::size_t size = 0; size < text.size(); ++size) {
        EXPECT_FALSE(import(text.substr(0, size)).has_value()) << size;
    }
    EXPECT_TRUE(import(text).has_value());
}

TEST(Json, ValuesRememberTheirLines) {
    const auto tree = import("{\n \"a\": 1\n,\n \"b\": [\n2\n,\n{\n}],\n\"c\":\n\"x\"\n}");
    ASSERT_TRUE(tree.has_value());
    EXPECT_EQ(tree->line(), 1U);
    EXPECT_EQ(tree->find("a")->line(), 2U);
    EXPECT_EQ(tree->find("b")->line(), 4U);
    EXPECT_EQ(tree->find("b")->elements()[0].line(), 5U);
    EXPECT_EQ(tree->find("b")->elements()[1].line(), 7U);
    EXPECT_EQ(tree->find("c")->line(), 10U);
}

TEST(Node, MembersKeepTheirPlaceAndAPartCanReplaceTheWhole) {
    Node tree;
    tree.add("a", 1);
    tree.add("b", Node::object()).add("inner", "x");
    tree.add("a", 2);
    EXPECT_EQ(tree.members()[0].name, "a");
    EXPECT_EQ(tree.find("a")->asSigned(), 2);
    EXPECT_TRUE(tree.remove("a"));
    EXPECT_FALSE(tree.remove("a"));
    tree = *tree.find("b");
    ASSERT_NE(tree.find("inner"), nullptr);
    tree = std::move(*tree.find("inner"));
    EXPECT_EQ(*tree.asString(), "x");
}

} // namespace
} // namespace vlExport
