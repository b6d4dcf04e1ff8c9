#include "app/Configuration.h"

#include <vlExport/JsonExporter.h>
#include <vlResources/ResourceManager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vlEditor {
namespace {

/// A folder of its own as the process's, and a resource manager that knows nothing yet.
class ConfigurationTest : public testing::Test {
protected:
    ConfigurationTest() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vlcfgXXXXXX").string();
        folder = mkdtemp(pattern.data());
        std::filesystem::current_path(folder);
        vlResources::ResourceManager::destroyInstance();
    }
    ~ConfigurationTest() override {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
        vlResources::ResourceManager::destroyInstance();
    }
    static std::string folderAfterLoading(const std::string& text) {
        vlResources::ResourceManager::destroyInstance();
        std::ofstream(std::string(Configuration::fileName), std::ios::binary) << text;
        Configuration::load();
        return vlResources::ResourceManager::getInstance().getWorkingPath();
    }

    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::path folder;
};

TEST_F(ConfigurationTest, TheFolderIsReadAndWrittenBack) {
    EXPECT_EQ(folderAfterLoading(R"({"other": 1, "resourceFolder": "a \"b\"/é"})"), "a \"b\"/é");
    Configuration::save();
    const std::string written = folderAfterLoading(R"({"resourceFolder": "x"})");
    EXPECT_EQ(written, "x");
    Configuration::save();
    vlResources::ResourceManager::destroyInstance();
    Configuration::load();
    EXPECT_EQ(vlResources::ResourceManager::getInstance().getWorkingPath(), "x");
}

TEST_F(ConfigurationTest, WhatSaysNothingUsefulKeepsTheDefault) {
    Configuration::load();
    EXPECT_EQ(vlResources::ResourceManager::getInstance().getWorkingPath(), ".");
    for (const char* text : {"",
                             "{",
                             "[]",
                             "3",
                             "null",
                             R"({"resourceFolder": 3})",
                             R"({"resourceFolder": null})",
                             R"({"folder": "a"})",
                             "\xFF\xFE"}) {
        EXPECT_EQ(folderAfterLoading(text), ".") << text;
    }
}

TEST_F(ConfigurationTest, TheFileHoldsTheFolderAlone) {
    folderAfterLoading(R"({"resourceFolder": "a", "more": 1})");
    Configuration::save();
    const auto& files = vlResources::ResourceManager::getInstance();
    const auto file = files.readFile((folder / Configuration::fileName).string());
    ASSERT_TRUE(file);
    const std::string text(file->text());
    EXPECT_EQ(text, "{\n  \"resourceFolder\": \"a\"\n}\n");
}

} // namespace
} // namespace vlEditor
