#include "content/ContentLoaderTest.h"

namespace vlGraphics {
namespace {

class ScriptDeclarations : public ContentLoaderTest {
protected:
    vlScripts::Script& make(vlMemory::StringView name, vlMemory::StringView text) {
        vlScripts::Script& script = *managers.scripts.createOrRetrieve(name);
        script.setSources(text);
        return script;
    }
};

TEST_F(ScriptDeclarations, TheTextStandsBesideTheDeclaration) {
    const vlMemory::StringView text = "-- \"quoted\"\r\nreturn 'r\xC3\xA9sum\xC3\xA9'";
    ASSERT_TRUE(ContentLoader::saveObjectDeclaration(make("day", text), "sub/day.night.vlsc"));
    EXPECT_EQ(read("sub/day.night.lua"), text);
    EXPECT_EQ(read("sub/day.night.vlsc"), R"({
  "formatVersion": 1,
  "scripts": [
    {
      "name": "day",
      "file": "day.night.lua"
    }
  ]
}
)");
    make("day", "other");
    const auto result = ContentLoader::loadScriptDeclaration("sub/day.night.vlsc", true);
    EXPECT_EQ(result.getErrors(), std::vector<vlMemory::String>());
    ASSERT_EQ(result.getScripts().size(), 1U);
    EXPECT_EQ(result.getScripts()[0]->getSources(), text);
    EXPECT_TRUE(result.getScripts()[0]->isLoaded());
}

TEST_F(ScriptDeclarations, WhatDoesNotCompileIsAdoptedWithOneLine) {
    write("test.json", R"({"formatVersion": 1, "scripts": [
{"name": "good", "source": "return 1"},
{"name": "bad", "source": "return ("}]})");
    const auto result = ContentLoader::loadScriptDeclaration("test.json", true);
    ASSERT_EQ(result.getErrors().size(), 1U);
    EXPECT_EQ(result.getErrors()[0].find("test.json:3: script 'bad': bad:1: "), 0U)
            << result.getErrors()[0];
    EXPECT_EQ(result.getScripts().size(), 2U);
    EXPECT_EQ(managers.scripts.get("bad")->getSources(), "return (");
    EXPECT_TRUE(managers.scripts.get("good")->isLoaded());
    // Checking says the same and makes nothing.
    managers.scripts.clear();
    EXPECT_EQ(ContentLoader::validateDeclarations("test.json", {}), result.getErrors());
    EXPECT_EQ(managers.scripts.getCount(), 0U);
}

TEST_F(ScriptDeclarations, AFilledScriptTakesTheNewTextAtTheNextLoad) {
    vlScripts::Script& script = make("it", "return 1");
    ASSERT_TRUE(script.load().has_value());
    const auto before = script.getCompiled();
    const std::uint64_t revision = script.getRevision();
    const auto memento = ContentLoader::getDeclaration(make("other", "return 2"), "");
    ASSERT_TRUE(ContentLoader::fillFromDeclaration(script, memento, "").has_value());
    EXPECT_EQ(script.getCompiled(), before);
    EXPECT_EQ(script.getSources(), "return 2");
    EXPECT_GT(script.getRevision(), revision);
}

TEST_F(ScriptDeclarations, TextsThatCouldNotBeReadAgainAreNotSaved) {
    write("it.json", "old");
    const auto before = listing();
    const auto errorOf = [&](vlMemory::StringView text, const char* path) {
        const auto saved = ContentLoader::saveObjectDeclaration(make("it", text), path);
        EXPECT_EQ(listing(), before);
        return saved ? vlMemory::String() : saved.error().message;
    };
    EXPECT_EQ(errorOf("a\xC3", "it.json"), "script 'it': the text is no UTF-8 from byte 1 on");
    EXPECT_EQ(errorOf(vlMemory::String((4U << 20U) + 1, ' '), "it.json"),
              "script 'it': the text has 4194305 bytes, above the 4194304 that a script may have");
    EXPECT_EQ(errorOf("", "it.lua").find("script 'it': a file called '.lua' is where"), 0U);
    EXPECT_EQ(read("it.json"), "old");
}

TEST_F(ScriptDeclarations, TheTextOfSomethingElseIsNotOverwritten) {
    write("tools.lua", "-- by hand");
    const auto save = [&](vlMemory::StringView text) {
        return ContentLoader::saveObjectDeclaration(make("it", text), "tools.vlsc");
    };
    const auto before = listing();
    const auto refused = save("return 1");
    ASSERT_FALSE(refused.has_value());
    EXPECT_EQ(refused.error().message.find("script 'it': 'tools.lua' is there already"), 0U);
    write("tools.vlsc", R"({"formatVersion": 1, "scripts": [{"name": "a", "file": "a.lua"}]})");
    EXPECT_FALSE(save("return 1").has_value());
    EXPECT_EQ(read("tools.lua"), "-- by hand");
    EXPECT_EQ(listing().size(), before.size() + 1);
    // Nothing is lost where the text is the same, and from then on it is the declaration's own.
    EXPECT_TRUE(save("-- by hand").has_value());
    EXPECT_TRUE(save("return 1").has_value());
    EXPECT_EQ(read("tools.lua"), "return 1");
}

TEST_F(ScriptDeclarations, FilesAreBoundedAndMayBeginWithAByteOrderMark) {
    constexpr vlMemory::StringView declaration =
            R"({"formatVersion": 1, "scripts": [{"name": "it", "file": "it.lua"}]})";
    write("it.lua", "\xEF\xBB\xBFreturn 1");
    EXPECT_EQ(load(declaration), std::vector<vlMemory::String>());
    EXPECT_EQ(managers.scripts.get("it")->getSources(), "return 1");
    write("it.lua", vlMemory::String((4U << 20U) + 1, ' '));
    const auto errors = load(declaration);
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0].find("test.json:1: script 'it': "), 0U) << errors[0];
    EXPECT_EQ(managers.scripts.get("it")->getSources(), "return 1");
}

} // namespace
} // namespace vlGraphics
