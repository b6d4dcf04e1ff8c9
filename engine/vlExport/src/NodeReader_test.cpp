#include <vlExport/JsonExporter.h>
#include <vlExport/NodeReader.h>
#include <vlExport/NodeWriter.h>

#include <gtest/gtest.h>

namespace vlExport {
namespace {

enum class Slot { texture, color };
constexpr EnumText<Slot> slotTexts[] = {{Slot::texture, "texture"}, {Slot::color, "color"}};

struct Pass {
    std::string shader;
    std::uint8_t order = 0;
    bool operator==(const Pass&) const = default;
};

struct Options {
    bool flip = false;
    bool operator==(const Options&) const = default;
};

struct Decl {
    std::string name;
    std::uint32_t cull = 3;
    std::int32_t bias = -1;
    float width = 1.0F;
    bool visible = true;
    Slot slot = Slot::texture;
    vlMaths::Vector position;
    vlMaths::Vector color{1, 1, 1, 1};
    vlMaths::Quaternion turn;
    vlMaths::Matrix matrix;
    std::vector<Pass> passes;
    std::vector<std::string> tags;
    std::vector<std::pair<std::string, float>> weights;
    std::optional<Options> options;
    Node extra;
    std::uint32_t inner = 0;
    bool operator==(const Decl&) const = default;
};

template <class Archive, class T> void describe(Archive& archive, T& decl) {
    archive.formatVersion(2);
    archive.required("name", decl.name);
    archive.optional("cull", decl.cull, 1, 3);
    archive.optional("bias", decl.bias);
    archive.optional("width", decl.width, 0, 10);
    archive.optional("visible", decl.visible);
    archive.optional("slot", decl.slot, slotTexts);
    archive.optional("position", decl.position, 3);
    archive.optional("color", decl.color);
    archive.optional("turn", decl.turn);
    archive.optional("matrix", decl.matrix);
    archive.optionalArray(
            "passes",
            decl.passes,
            [](auto& child, auto& pass) {
                child.required("shader", pass.shader);
                child.optional("order", pass.order);
                child.check(pass.order != 13, "order", "is unlucky");
            },
            4);
    archive.optional("tags", decl.tags);
    archive.optional("weights", decl.weights);
    archive.optionalObject("options", decl.options, [](auto& child, auto& options) {
        child.optional("flip", options.flip);
    });
    archive.optional("extra", decl.extra);
    archive.optionalObject("part", [&](auto& child) { child.optional("inner", decl.inner); });
}

struct Read {
    Decl decl;
    std::string error;
    std::vector<std::string> unknown;
};

Read readText(const std::string& members) {
    const auto tree = JsonExporter::importIntoTree(
            "{\"formatVersion\": 1,\n\"name\": \"n\",\n" + members + "}", "a.vlm");
    EXPECT_TRUE(tree.has_value());
    NodeReader reader(*tree, "a.vlm");
    Read read;
    describe(reader, read.decl);
    if (auto done = reader.finish(); !done) read.error = done.error().message;
    read.unknown = reader.unknownMembers();
    return read;
}

TEST(NodeArchive, WhatIsWrittenIsReadBack) {
    Decl decl;
    decl.name = "rust";
    decl.cull = 2;
    decl.bias = -7;
    decl.width = 0.1F;
    decl.visible = false;
    decl.slot = Slot::color;
    decl.position = {1, 2, 3};
    decl.turn = vlMaths::Quaternion::fromAxisAngle({0, 1, 0}, 0.3F);
    decl.matrix = vlMaths::Matrix::translation({0.1F, 0.2F, 0.3F});
    decl.passes = {{"a", 1}, {"b", 255}};
    decl.tags = {"x", "y"};
    decl.weights = {{"low", 0.5F}, {"high", 2.0F}};
    decl.options = Options{true};
    decl.extra.add("editor", true);
    decl.inner = 9;
    Node tree;
    NodeWriter writer(tree);
    describe(writer, std::as_const(decl));
    NodeReader reader(tree, "a.vlm");
    Decl again;
    describe(reader, again);
    const auto done = reader.finish();
    ASSERT_TRUE(done.has_value()) << done.error().message;
    EXPECT_EQ(again, decl);
    EXPECT_TRUE(reader.unknownMembers().empty());
}

TEST(NodeArchive, AbsentOptionsKeepTheirDefaults) {
    const Read read = readText("\"extra\": null");
    EXPECT_EQ(read.error, "");
    Decl expected;
    expected.name = vlMemory::String(1, 'n');
    EXPECT_EQ(read.decl, expected);
}

TEST(NodeReader, ErrorsNameFileLinePathAndWhatWasExpected) {
    const std::pair<const char*, const char*> cases[] = {
            {"\"passes\": [{\"shader\": \"s\"},\n {\"shader\": 4}]",
             "a.vlm:4: passes[1]: 'shader' expected a string"},
            {"\"passes\": [\n{}]", "a.vlm:4: passes[0]: 'shader' is missing"},
            {"\"passes\": [{\"shader\": \"s\", \"order\": 256}]",
             "a.vlm:3: passes[0]: 'order' expected a whole number from 0 to 255"},
            {"\"passes\": [{\"shader\": \"s\",\n\"order\": 13}]",
             "a.vlm:4: passes[0]: 'order' is unlucky"},
            {"\"passes\": [1]", "a.vlm:3: 'passes[0]' expected an object"},
            {"\"passes\": [{},{},{},{},{}]",
             "a.vlm:3: 'passes' expected at most 4 elements, not 5"},
            {"\"cull\": 4", "a.vlm:3: 'cull' expected a whole number from 1 to 3"},
            {"\"bias\": 2147483648",
             "a.vlm:3: 'bias' expected a whole number from -2147483648 to 2147483647"},
            {"\"width\": 11.5", "a.vlm:3: 'width' expected a number from 0 to 10"},
            {"\"visible\": 1", "a.vlm:3: 'visible' expected true or false"},
            {"\"slot\": \"x\"", "a.vlm:3: 'slot' expected one of \"texture\", \"color\""},
            {"\"position\": [1, 2]", "a.vlm:3: 'position' expected an array of 3 numbers"},
            {"\"color\": [1, 2, 3, 1e39]", "a.vlm:3: 'color' expected an array of 4 numbers"},
            {"\"tags\": [\"a\",\n7]", "a.vlm:4: 'tags[1]' expected a string"},
            {"\"options\": []", "a.vlm:3: 'options' expected an object"},
            {"\"part\": {\"inner\": -1}",
             "a.vlm:3: part: 'inner' expected a whole number from 0 to 4294967295"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(readText(text).error, error);
}

TEST(NodeReader, NewerFormatsAndOtherRootsAreRefused) {
    Node tree = Node::object();
    tree.add("formatVersion", 3);
    NodeReader reader(tree, "a.vlm");
    Decl decl;
    describe(reader, decl);
    EXPECT_EQ(reader.finish().error().message,
              "a.vlm:0: 'formatVersion' is 3, newer than 2, the newest that this program reads");
    const Node list = Node::array();
    NodeReader other(list, "b.vlm");
    describe(other, decl);
    EXPECT_EQ(other.finish().error().message, "b.vlm:0: expected an object");
}

TEST(NodeReader, UnknownMembersAreNamedButNoError) {
    const Read read =
            readText("\"passes\": [{\"shader\": \"s\",\n\"colour\": 1}], \"EDITOR_x\": true");
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.unknown,
              (std::vector<std::string>{"a.vlm:4: passes[0]: unknown member 'colour'",
                                        "a.vlm:4: unknown member 'EDITOR_x'"}));
}

} // namespace
} // namespace vlExport
