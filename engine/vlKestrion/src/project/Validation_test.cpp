#include "TestFolder.h"

#include <vlKestrion/Validation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlKestrion {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using vlMemory::String;

struct Case {
    const char* project;
    const char* place; ///< file and line
    const char* text;
};

class Validation : public testing::Test {
protected:
    Validation() {
        folder_.write("look/all.vlsh", R"({"formatVersion": 1, "shaders": [{"name": "paint"}]})");
        folder_.write("look/all.vlma",
                      R"({"formatVersion": 1, "materials": [{"name": "red", "shader": "paint"}]})");
        folder_.write("eye.vlca", R"({"formatVersion": 1, "cameras": [{"name": "Eye"}]})");
    }
    std::vector<String> check(const String& text) {
        return validateFile(folder_.write("p.vls", text));
    }

    TestFolder folder_;
};

TEST_F(Validation, AGoodProjectHasNoErrors) {
    EXPECT_THAT(check(R"({"formatVersion": 1,
        "declarations": ["look/all.vlma", "look/all.vlsh", "eye.vlca"],
        "compositor": "VORLANE_DEFAULT_COMPOSITOR", "camera": "Eye", "renderingScript": "", "EDITOR_note": 1,
        "scene": {"nodes": [
            {"name": "a", "position": [1, 2, 3], "orientation": [0, 0, 0, 2], "scale": [1, 1, 1],
             "entities": [{"material": "red", "transparent": true, "visible": false},
                          {"shader": "paint", "renderQueue": "VORLANE_DEFAULT_RENDER_QUEUE"}],
             "nodes": [{}, {"name": "b"}]}]}})"),
                IsEmpty());
    EXPECT_THAT(check(R"({"formatVersion": 1})"), IsEmpty());
}

TEST_F(Validation, EachFaultHasOneLineThatSaysWhere) {
    const Case cases[] = {
            {"", "p.vls", ""},
            {"[]", "p.vls", "no project"},
            {"{\"formatVersion\": 1,\n \"camera\": \"E", "p.vls:2:", ""},
            {"{\n}", "p.vls:1:", "formatVersion"},
            {"{\"formatVersion\": 2}", "p.vls:1:", ""},
            {"{\"formatVersion\": 1, \"formatVersion\": 1}", "p.vls:1:", ""},
            {"{\"formatVersion\": 1,\n\"camera\": 5}", "p.vls:2:", "'camera'"},
            {"{\"formatVersion\": 1,\n\"camera\": \"Nobody\"}",
             "p.vls:2:",
             "camera 'Nobody' not found"},
            {"{\"formatVersion\": 1,\n\"compositor\": \"X\"}",
             "p.vls:2:",
             "compositor 'X' not found"},
            {"{\"formatVersion\": 1,\n\"colour\": 5}", "p.vls:2:", "unknown member 'colour'"},
            {"{\"formatVersion\": 1,\n\"declarations\": {}}", "p.vls:2:", "'declarations'"},
            {"{\"formatVersion\": 1, \"declarations\": [\n7]}", "p.vls:2:", "path of a file"},
            {"{\"formatVersion\": 1, \"declarations\": [\n\"gone.vlca\"]}",
             "p.vls:2:",
             "gone.vlca"},
            {"{\"formatVersion\": 1, \"declarations\": [\n\"../p.vlca\"]}",
             "p.vls:2:",
             "../p.vlca"},
            {"{\"formatVersion\": 1, \"declarations\": [\n\"/etc/passwd\"]}",
             "p.vls:2:",
             "/etc/passwd"},
            {"{\"formatVersion\": 1,\n\"scene\": []}", "p.vls:2:", "'scene'"},
            {"{\"formatVersion\": 1, \"scene\": {\n\"nodes\": 3}}", "p.vls:2:", "'nodes'"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [\n3]}}",
             "p.vls:2:",
             "a node expected"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\n\"position\": [1, 2]}]}}",
             "p.vls:2:",
             "'position'"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\n\"position\": [1, 2, 1e300]}]}}",
             "p.vls:2:",
             "'position'"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\n\"orientation\": [0, 0, 0, 0]}]}}",
             "p.vls:2:",
             "'orientation'"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\"entities\": [\n\"x\"]}]}}",
             "p.vls:2:",
             "an entity expected"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\"name\": \"n\", \"entities\": [\n"
             "{\"mesh\": \"floor\"}]}]}}",
             "p.vls:2:",
             "node 'n': mesh 'floor' not found"},
            {"{\"formatVersion\": 1, \"declarations\": [\"look/all.vlma\"]}",
             "look/all.vlma:1:",
             "material 'red': shader 'paint' not found"},
            {"{\"formatVersion\": 1, \"declarations\": [\"look/all.vlsh\", \"look/all.vlma\"],"
             "\"scene\": {\"nodes\": [{\"entities\": [\n"
             "{\"material\": \"red\", \"shader\": \"paint\"}]}]}}",
             "p.vls:2:",
             "cannot stand beside"}};
    for (const Case& one : cases)
        EXPECT_THAT(check(one.project),
                    ElementsAre(AllOf(HasSubstr(one.place), HasSubstr(one.text))))
                << one.project;
}

TEST_F(Validation, OneCauseIsOneLine) {
    String text =
            R"({"formatVersion": 1, "declarations": ["eye.vlca", "eye2.vlca"], "scene": {"nodes": [)";
    for (int entity = 0; entity < 750; ++entity)
        text += R"({"entities": [{"mesh": "ball"}]}, )";
    text += R"({"name": "n", "entities": [{"mesh": "cube", "shader": "ball"}]}]}})";
    folder_.write("eye2.vlca", "{\"formatVersion\": 1, \"cameras\": [\n{\"name\": \"Eye\"}]}");
    EXPECT_THAT(check(text),
                ElementsAre(AllOf(HasSubstr("eye2.vlca:2: 'Eye'"), EndsWith("eye.vlca as well")),
                            HasSubstr("mesh 'ball' not found (749 more times)"),
                            HasSubstr("node 'n': mesh 'cube' not found"),
                            HasSubstr("node 'n': shader 'ball' not found")));
}

TEST_F(Validation, AFloodOfErrorsEnds) {
    String text = R"({"formatVersion": 1, "scene": {"nodes": [7)";
    for (int node = 0; node < 999; ++node)
        text += ", 7";
    const auto lines = check(text + "]}}");
    ASSERT_EQ(lines.size(), 201U);
    EXPECT_EQ(lines.back(), "and 800 more");
}

TEST_F(Validation, AProjectThatIsNoUtf8OrTooDeepIsRefused) {
    EXPECT_THAT(check("{\"formatVersion\": 1, \"camera\": \"\xFF\"}"),
                ElementsAre(HasSubstr(":1:")));
    String deep;
    for (int level = 0; level < 300; ++level)
        deep += "{\"nodes\": [";
    EXPECT_THAT(check("{\"formatVersion\": 1, \"scene\": " + deep), ElementsAre(HasSubstr(":1:")));
}

TEST_F(Validation, NamesOfAFileDoNotBreakTheLineOrMakeItEndless) {
    folder_.write("bad.vlsh", R"({"formatVersion": 1, "\u001B\n": 1, "shaders": [{"name": "a",
        "program": "p", "co\nlour": 1}]})");
    const String name(100000, 'x');
    for (const String& line :
         check(R"({"formatVersion": 1, "declarations": ["bad.vlsh", "g\n.vlsh"],
        "cam\u001Bera": 1, "camera": "E\n", "compositor": ")" +
               name + "\"}")) {
        EXPECT_LT(line.size(), 2100U);
        EXPECT_EQ(line.find_first_of("\n\x1B"), String::npos) << line;
    }
}

TEST_F(Validation, EveryTruncationOfAProjectIsRefused) {
    const String whole = R"({"formatVersion": 1, "declarations": ["eye.vlca"], "camera": "Eye",
        "scene": {"nodes": [{"name": "a", "position": [1, 2.5, -3e1]}]}})";
    ASSERT_THAT(check(whole), IsEmpty());
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(check(whole.substr(0, size)).size(), 1U) << size;
}

TEST_F(Validation, DeclarationsAreCheckedWithTheirMaterials) {
    EXPECT_THAT(validateFile(folder_.path("look/all.vlsh")), IsEmpty());
    const String path = folder_.write("bad.vlma", R"({"formatVersion": 1, "materials": [
        {"name": ""}, {"name": "a", "transparent": 1},
        7,
        {"name": "b", "EDITOR_note": 1, "colour": 2}]})");
    EXPECT_THAT(validateFile(path),
                ElementsAre(HasSubstr("bad.vlma:2:"),
                            HasSubstr("bad.vlma:2:"),
                            AllOf(HasSubstr("bad.vlma:3:"), HasSubstr("a material expected")),
                            AllOf(HasSubstr("bad.vlma:4:"), HasSubstr("'colour'"))));
    EXPECT_THAT(validateFile(folder_.write("old.vlma", R"({"materials": []})")),
                ElementsAre(HasSubstr("formatVersion")));
    EXPECT_THAT(validateFile(folder_.path("gone.vlsh")), ElementsAre(HasSubstr("gone.vlsh")));
}

TEST_F(Validation, ProgramsAreCompiled) {
    const String file = folder_.write("all.vlpr", R"({"formatVersion": 1, "programs": [
        {"name": "good", "type": "COMPUTE", "stages": [
            {"stage": "COMPUTE", "source": "[numthreads(1, 1, 1)] void main() {}"}]},
        {"name": "rays", "type": "RAYTRACING"},
        {"name": "bad", "stages": [
            {"stage": "VERTEX", "source": "float4 main() : SV_POSITION {\n return a; }"},
            {"stage": "PIXEL", "source": "float4 main() : SV_TARGET { return b; }"}]}]})");
    EXPECT_THAT(validateFile(file),
                ElementsAre(EndsWith("all.vlpr: shader program 'bad', vertex stage, line 2: 'a' : "
                                     "unknown variable"),
                            EndsWith("all.vlpr: shader program 'bad', pixel stage, line 1: 'b' : "
                                     "unknown variable")));
}

} // namespace
} // namespace vlKestrion
