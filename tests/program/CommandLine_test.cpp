#include "program/ProgramRun.h"
#include "program/Screen.h"

#include <vlImages/Decoder.h>
#include <vlImages/ImageOperations.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <span>

namespace tests {

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

const std::map<std::string, std::string> noDisplay{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}};

vlImages::Image pictureOf(const fs::path& file) {
    const std::string bytes = textOf(file);
    auto image = vlImages::decode(std::as_bytes(std::span(bytes)), file.string());
    return image ? std::move(*image) : vlImages::Image();
}

void write(const fs::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

long lineCount(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

std::string gallery() {
    return source("samples/gallery/gallery.vls").string();
}

/// A wrong request: the status, one line for each error, and nothing else left behind.
void expectRefused(const Folder& folder,
                   const std::vector<std::string>& arguments,
                   const std::string& named,
                   int status = 1) {
    const auto outcome = run(folder.path(), arguments, noDisplay);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(named));
    EXPECT_EQ(complaints(outcome.err), "");
    EXPECT_FALSE(fs::exists(folder.path() / "out.png"));
}

} // namespace

TEST(CommandLine, VersionAndHelpNeedNothing) {
    const Folder folder;
    const std::map<std::string, std::string> bare{{"DISPLAY", ""}, {"VK_DRIVER_FILES", "/nowhere"}};
    EXPECT_EQ(run(folder.path(), {"--version"}, bare).status, 0);
    const auto help = run(folder.path(), {"--help"}, bare);
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--render", "--import", "--into", "--validate", "--size", "--run"})
        EXPECT_THAT(help.out, HasSubstr(option));
}

TEST(CommandLine, WrongUseIsTold) {
    const Folder folder;
    expectRefused(folder, {"--frobnicate"}, "--frobnicate", 2);
    expectRefused(folder, {"--render"}, "--render", 2);
    expectRefused(folder, {"--render", "out.png"}, "PROJECT", 2);
    expectRefused(folder, {"--render", "out.bmp", gallery()}, "out.bmp", 2);
    expectRefused(folder, {"--import", "a.obj"}, "--into", 2);
    for (const char* size : {"0x10", "10", "10x", "-5x5", "99999x10", "axb"})
        expectRefused(folder, {"--render", "out.png", "--size", size, gallery()}, size, 2);
}

TEST(CommandLine, GalleryRendersWithoutADisplayAndRepeats) {
    const Folder folder;
    const std::vector<std::string> once{"--render", "one.png", "--size", "480x270", gallery()};
    const auto outcome = run(folder.path(), once, noDisplay);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(complaints(outcome.err), "");
    const vlImages::Image picture = pictureOf(folder.path() / "one.png");
    ASSERT_EQ(picture.width, 480U);
    ASSERT_EQ(picture.height, 270U);
    EXPECT_GT(colorCount(picture, 0, 0, 480, 270), 150);
    keep(picture, "gallery");

    const std::vector<std::string> again{"--render", "two.png", "--size", "480x270", gallery()};
    ASSERT_EQ(run(folder.path(), again, noDisplay).status, 0);
    EXPECT_EQ(pictureOf(folder.path() / "two.png"), picture);
}

TEST(CommandLine, MaterialsRenderThroughEveryStageAndTheWaterMoves) {
    const Folder folder;
    const std::string materials = source("samples/materials/materials.vls").string();
    vlImages::Image pictures[2];
    for (std::size_t i = 0; i < 2; ++i) {
        const auto outcome = run(folder.path(),
                                 {"--render",
                                  "out.png",
                                  "--size",
                                  "480x270",
                                  "--frames",
                                  i == 0 ? "1" : "20",
                                  materials},
                                 noDisplay);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(complaints(outcome.err), "");
        pictures[i] = pictureOf(folder.path() / "out.png");
        EXPECT_GT(colorCount(pictures[i], 0, 0, 480, 270), 150);
    }
    keep(pictures[1], "materials");
    EXPECT_NE(pictures[0], pictures[1]);
}

TEST(CommandLine, RenderTakesFormatCompositorCameraAndFrames) {
    const Folder folder;
    const auto outcome = run(folder.path(),
                             {"--render",
                              "out.jpg",
                              "--size",
                              "64x48",
                              "--frames",
                              "3",
                              "--compositor",
                              "gallery",
                              "--camera",
                              "visitor",
                              gallery()},
                             noDisplay);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(textOf(folder.path() / "out.jpg"), testing::StartsWith("\xFF\xD8"));
    EXPECT_EQ(pictureOf(folder.path() / "out.jpg").width, 64U);
    expectRefused(folder, {"--render", "out.png", "--camera", "nobody", gallery()}, "nobody");
    expectRefused(folder, {"--render", "out.png", "--compositor", "none", gallery()}, "none");
}

TEST(CommandLine, MissingDriverAndUnwritablePlaceAreOneLine) {
    const Folder folder;
    const auto driverless =
            run(folder.path(),
                {"--render", "out.png", gallery()},
                {{"VK_DRIVER_FILES", "/nowhere"}, {"VK_ICD_FILENAMES", "/nowhere"}});
    EXPECT_EQ(driverless.status, 1);
    EXPECT_EQ(lineCount(driverless.err), 1) << driverless.err;
    EXPECT_THAT(driverless.err, HasSubstr("driver"));
    expectRefused(folder, {"--render", "nowhere/out.png", gallery()}, "nowhere");
}

TEST(CommandLine, BrokenProjectsAreNamedWithTheirPlace) {
    const Folder folder;
    const fs::path file = folder.path() / "p.vls";
    const std::vector<std::string> render{"--render", "out.png", "p.vls"};
    expectRefused(folder, {"--render", "out.png", "absent.vls"}, "absent.vls");
    const struct {
        std::string text;
        const char* named;
    } cases[] = {
            {"", "p.vls"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [", "p.vls:1"},
            {std::string(1000000, '['), "p.vls"},
            {"{\n\"formatVersion\": 99}", "p.vls:2"},
            {"{\"formatVersion\": 1,\n\"declarations\": [\"../../outside.vlsa\"]}", "outside.vlsa"},
            {"{\"formatVersion\": 1, \"declarations\": [\"/etc/passwd\"]}", "/etc/passwd"},
            {"{\"formatVersion\": 1,\n\"scene\": {\"nodes\": [{\"name\": \"a\",\n\"position\": "
             "[1e300, 0, 0]}]}}",
             "p.vls:3"},
            {"{\"formatVersion\": 1, \"scene\": {\"nodes\": [{\"name\": \"a\", \"entities\": "
             "[{\"mesh\": \"ghost\"}]}]}}",
             "ghost"},
            {"{\"formatVersion\": 1, \"formatVersion\": 1}", "formatVersion"},
            {"{\"formatVersion\": 1, \"camera\": \"\xFF\xFE\"}", "UTF-8"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.text.substr(0, 80));
        write(file, one.text);
        expectRefused(folder, render, one.named);
        expectRefused(folder, {"--validate", "p.vls"}, one.named);
    }
}

TEST(CommandLine, TargetsBeyondTheDeviceAreRefused) {
    const Folder folder;
    std::string targets;
    for (const char* name : {"a", "b", "c", "d"}) {
        targets += std::string(targets.empty() ? "" : ",") + "{\"name\": \"" + name +
                   "\", \"width\": 16384, \"height\": 16384, \"format\": "
                   "\"R32G32B32A32_FLOAT\", \"renderFlag\": \"COLOR_TARGET\"}";
    }
    write(folder.path() / "t.vlte", "{\"formatVersion\": 1, \"textures\": [" + targets + "]}");
    write(folder.path() / "p.vls", "{\"formatVersion\": 1, \"declarations\": [\"t.vlte\"]}");
    expectRefused(folder, {"--render", "out.png", "p.vls"}, "16384 by 16384");
}

TEST(CommandLine, ValidationIsContentWithTheSample) {
    const Folder folder;
    std::vector<std::string> arguments{"--validate"};
    for (const auto& entry : fs::directory_iterator(source("samples/gallery")))
        if (entry.path().extension().string().rfind(".vl", 0) == 0)
            arguments.push_back(entry.path().string());
    const auto outcome = run(folder.path(), arguments, noDisplay);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
}

TEST(CommandLine, BrokenModelsLeaveNothingBehind) {
    const Folder folder;
    const struct {
        const char* name;
        std::string text;
    } cases[] = {{"empty.obj", ""},
                 {"noise.obj", std::string("\x01\x80\xFFv f\0", 8)},
                 {"range.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n"},
                 {"nan.obj", "v nan 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"},
                 {"cut.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2"}};
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        write(folder.path() / one.name, one.text);
        expectRefused(folder, {"--import", one.name, "--into", "p.vls"}, one.name);
        EXPECT_FALSE(fs::exists(folder.path() / "p.vls"));
    }
    expectRefused(folder, {"--import", "absent.obj", "--into", "p.vls"}, "absent.obj");
}

TEST(CommandLine, ForeignModelsAreImportedValidatedAndDrawn) {
    const fs::path models = "/usr/share/assimp/models/OBJ";
    if (!fs::exists(models)) GTEST_SKIP() << "no foreign models are installed";
    const Folder folder;
    int drawn = 0;
    for (const auto& entry : fs::directory_iterator(models)) {
        if (entry.path().extension() != ".obj") continue;
        SCOPED_TRACE(entry.path().string());
        const std::string project = entry.path().stem().string() + "/p.vls";
        fs::create_directory(folder.path() / entry.path().stem());
        const auto import = run(
                folder.path(), {"--import", entry.path().string(), "--into", project}, noDisplay);
        EXPECT_EQ(complaints(import.err), "");
        if (import.status != 0) {
            EXPECT_EQ(import.status, 1);
            EXPECT_THAT(import.err, HasSubstr(entry.path().filename().string()));
            EXPECT_FALSE(fs::exists(folder.path() / project));
            continue;
        }
        EXPECT_EQ(run(folder.path(), {"--validate", project}, noDisplay).status, 0);
        const std::string stem = entry.path().stem().string();
        if (stem != "spider" && stem != "WusonOBJ" && stem != "cube_usemtl") continue;
        const auto render = run(
                folder.path(), {"--render", "model.png", "--size", "160x120", project}, noDisplay);
        EXPECT_EQ(render.status, 0) << render.err;
        const vlImages::Image picture = pictureOf(folder.path() / "model.png");
        ASSERT_EQ(picture.width, 160U);
        EXPECT_GT(colorCount(picture, 0, 0, 160, 120), 3);
        keep(picture, "import_" + entry.path().stem().string());
        ++drawn;
    }
    EXPECT_EQ(drawn, 3);
}

TEST(CommandLine, WithoutADisplayTheWindowPointsAtRender) {
    const Folder folder;
    const auto outcome = run(folder.path(), {gallery()}, noDisplay);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lineCount(outcome.err), 1) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("--render"));
    EXPECT_FALSE(fs::exists(folder.path() / "vlEditor_cfg.json"));
}

} // namespace tests
