#include "editors/KindTest.h"

namespace vlEditor {
namespace {

class ScriptEditor : public KindTest {};

// A clipboard may come from anybody.
TEST_P(ScriptEditor, WhatIsPastedReadsNoFilesOutsideTheWorkingDirectory) {
    create("a");
    write("inside.lua", "return 'inside'");
    const std::string outside = std::filesystem::path(path("")).parent_path().string() + ".lua";
    std::ofstream(outside) << "return 'outside'";
    const auto paste = [](const std::string& file) {
        kind().commands().paste("a",
                                R"({"formatVersion": 1, "scripts": [{"name": "x", "file": ")" +
                                        file + R"("}]})");
        settle();
        return std::string(*kind().engineRecord("a").find("source")->asString());
    };
    const std::string sibling = "../" + std::filesystem::path(outside).filename().string();
    for (const std::string& file : {outside, sibling, std::string("/etc/hostname")}) {
        const std::size_t count = lines().size();
        EXPECT_EQ(paste(file), "");
        EXPECT_EQ(lines().size(), count + 1);
        EXPECT_THAT(lines().back(), testing::HasSubstr(file));
    }
    EXPECT_EQ(paste("inside.lua"), "return 'inside'");
    std::filesystem::remove(outside);
}

INSTANTIATE_TEST_SUITE_P(Script, ScriptEditor, testing::Values(&scriptKind()), [](const auto&) {
    return std::string("Script");
});

} // namespace
} // namespace vlEditor
