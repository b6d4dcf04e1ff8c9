#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace vlEditor {
namespace {

class CommandLineTest : public testing::Test {
protected:
    bool parse(const std::vector<std::string>& given) {
        std::vector<std::string> arguments{"vlEditor"};
        arguments.insert(arguments.end(), given.begin(), given.end());
        testing::internal::CaptureStderr();
        testing::internal::CaptureStdout();
        status = -1;
        const auto parsed = CommandLine::parse(arguments, status);
        out = testing::internal::GetCapturedStdout();
        err = testing::internal::GetCapturedStderr();
        if (parsed) line = *parsed;
        return parsed.has_value();
    }
    bool refused(const std::vector<std::string>& arguments, const std::string& named) {
        return !parse(arguments) && status == 2 && out.empty() &&
               err.find(named) != std::string::npos && err.find('\n') == err.size() - 1;
    }

    CommandLine line;
    int status = -1;
    std::string out;
    std::string err;
};

TEST_F(CommandLineTest, OpensAWindowUnlessAskedForSomethingElse) {
    ASSERT_TRUE(parse({}));
    EXPECT_TRUE(line.needsWindow());
    ASSERT_TRUE(parse({"a.vls"}));
    EXPECT_TRUE(line.needsWindow());
    EXPECT_EQ(line.project, "a.vls");
    ASSERT_TRUE(parse({"--validate", "a.vls", "b.vlsa"}));
    EXPECT_FALSE(line.needsWindow());
    EXPECT_EQ(line.validate, (std::vector<std::string>{"a.vls", "b.vlsa"}));
}

TEST_F(CommandLineTest, RenderingHasDefaultsAndTakesItsOptionsInAnyOrder) {
    ASSERT_TRUE(parse({"--render", "o.png", "a.vls"}));
    EXPECT_EQ(line.render->width, 1280U);
    EXPECT_EQ(line.render->height, 720U);
    EXPECT_EQ(line.render->frames, 1U);
    ASSERT_TRUE(parse({"--camera",
                       "c",
                       "a.vls",
                       "--frames",
                       "3",
                       "--size",
                       "16384x1",
                       "--compositor",
                       "k",
                       "--render",
                       "o.jpg"}));
    EXPECT_EQ(line.render->width, 16384U);
    EXPECT_EQ(line.render->height, 1U);
    EXPECT_EQ(line.render->frames, 3U);
    EXPECT_EQ(line.render->camera, "c");
    EXPECT_EQ(line.render->compositor, "k");
    EXPECT_EQ(line.project, "a.vls");
}

TEST_F(CommandLineTest, AnImportMayBeDrawn) {
    ASSERT_TRUE(parse({"--import", "m.obj", "--into", "p.vls"}));
    EXPECT_FALSE(line.render);
    ASSERT_TRUE(parse({"--import", "m.obj", "--into", "p.vls", "--render", "o.png"}));
    EXPECT_EQ(line.import->model, "m.obj");
    EXPECT_EQ(line.project, "p.vls");
    EXPECT_TRUE(line.render);
}

TEST_F(CommandLineTest, AScriptRunsInTheFirstLayoutWithOrWithoutADisplay) {
    ASSERT_TRUE(parse({"a.vls"}));
    EXPECT_TRUE(line.keepsLayout);
    EXPECT_FALSE(line.run);
    ASSERT_TRUE(parse({"--run", "s.lua"}));
    EXPECT_TRUE(line.needsWindow());
    EXPECT_FALSE(line.keepsLayout);
    EXPECT_FALSE(line.run->headless);
    ASSERT_TRUE(parse({"--headless", "--run", "s.lua", "a.vls"}));
    EXPECT_EQ(line.run->script, "s.lua");
    EXPECT_TRUE(line.run->headless);
    EXPECT_EQ(line.project, "a.vls");
}

TEST_F(CommandLineTest, HelpAndVersionSucceed) {
    EXPECT_FALSE(parse({"--version"}));
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(out.starts_with("vlEditor "));
    EXPECT_FALSE(parse({"--help"}));
    EXPECT_EQ(status, 0);
    EXPECT_NE(out.find("--render"), std::string::npos);
}

TEST_F(CommandLineTest, WrongUseIsOneLineThatNamesIt) {
    EXPECT_TRUE(refused({"--unknown"}, "--unknown"));
    EXPECT_TRUE(refused({"a.vls", "b.vls"}, "b.vls"));
    EXPECT_TRUE(refused({"--render"}, "--render"));
    EXPECT_TRUE(refused({"--render", "o.png"}, "PROJECT"));
    EXPECT_TRUE(refused({"--render", "o.bmp", "a.vls"}, "o.bmp"));
    EXPECT_TRUE(refused({"--import", "m.obj"}, "--into"));
    EXPECT_TRUE(refused({"--into", "p.vls"}, "--import"));
    EXPECT_TRUE(refused({"--import", "m.obj", "--into", "p.vls", "a.vls"}, "a.vls"));
    EXPECT_TRUE(refused({"--validate"}, "--validate"));
    EXPECT_TRUE(refused({"--run"}, "--run"));
    EXPECT_TRUE(refused({"--headless", "a.vls"}, "--run"));
    EXPECT_TRUE(refused({"--run", "s.lua", "--render", "o.png", "a.vls"}, "--render"));
    EXPECT_TRUE(refused({"--run", "s.lua", "--validate", "a.vls"}, "--run"));
    EXPECT_TRUE(refused({"--validate", "a.vls", "--render", "o.png"}, "--render"));
    EXPECT_TRUE(refused({"--size", "10x10", "a.vls"}, "--render"));
    EXPECT_TRUE(refused({"--render", "o.png", "--frames", "0", "a.vls"}, "--frames"));
}

TEST_F(CommandLineTest, SizesAreBounded) {
    for (const char* size : {"",
                             "10",
                             "x",
                             "10x",
                             "x10",
                             "0x10",
                             "10x0",
                             "16385x1",
                             "1x16385",
                             "-5x5",
                             "10x10x10",
                             "1e2x5",
                             "10 x10",
                             "4294967297x1"}) {
        EXPECT_TRUE(refused({"--render", "o.png", "--size", size, "a.vls"}, "1 to 16384")) << size;
    }
}

} // namespace
} // namespace vlEditor
