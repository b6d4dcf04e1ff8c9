#include "program/ProgramRun.h"
#include "program/Screen.h"

#include <vlImages/Decoder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <span>

namespace tests {

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

const std::map<std::string, std::string> noDisplay{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}};
const std::string gallery = source("samples/gallery/gallery.vls").string();

vlImages::Image pictureOf(const fs::path& file) {
    const std::string bytes = textOf(file);
    auto image = vlImages::decode(std::as_bytes(std::span(bytes)), file.string());
    return image ? std::move(*image) : vlImages::Image();
}

void expectGood(const ProgramRun::Outcome& outcome) {
    EXPECT_EQ(outcome.status, 0) << outcome.err << outcome.out;
    EXPECT_EQ(complaints(outcome.err + outcome.out), "");
}

/// Writes the text into the folder and runs it, without a display.
ProgramRun::Outcome runText(const Folder& folder, const std::string& text) {
    std::ofstream(folder.path() / "script.lua") << text;
    return run(folder.path(), {"--run", "script.lua", "--headless"}, noDisplay);
}

/// A script that waits for what never comes, caught in the middle of that.
void expectEndsInOrder(const std::string& waiting) {
    const Folder folder;
    std::ofstream(folder.path() / "script.lua")
            << "editor.sync() print('waiting') " << waiting << " print('never')";
    ProgramRun editor(folder.path(), {"--run", "script.lua", "--headless"}, noDisplay);
    ASSERT_TRUE(eventually([&] {
        return textOf(folder.path() / "stdout.txt").find("waiting") != std::string::npos;
    }));
    editor.signal(SIGTERM);
    const auto outcome = editor.wait();
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_EQ(outcome.out, "waiting\n");
    EXPECT_EQ(complaints(outcome.err), "");
    EXPECT_TRUE(fs::exists(folder.path() / "vlEditor_cfg.json"));
}

} // namespace

TEST(Automation, ViewsTabsAndMenusWithAWindow) {
    const Folder folder;
    expectGood(run(folder.path(), {"--run", source("tests/program/views.lua").string()}));
    keep(pictureOf(folder.path() / "views.png"), "views_window");
}

TEST(Automation, ViewsTabsAndMenusWithoutADisplay) {
    const Folder folder;
    expectGood(run(folder.path(),
                   {"--run", source("tests/program/views.lua").string(), "--headless"},
                   noDisplay));
    keep(pictureOf(folder.path() / "views.png"), "views_headless");
}

TEST(Automation, ContainersTabsAndTheLogWithAWindow) {
    const Folder folder;
    expectGood(run(folder.path(), {"--run", source("tests/program/containers.lua").string()}));
    keep(pictureOf(folder.path() / "containers.png"), "containers_window");
}

TEST(Automation, ContainersTabsAndTheLogWithoutADisplay) {
    const Folder folder;
    expectGood(run(folder.path(),
                   {"--run", source("tests/program/containers.lua").string(), "--headless"},
                   noDisplay));
}

/** The widgets of one kind of resource, each for itself. */
class Kinds : public testing::TestWithParam<const char*> {};

TEST_P(Kinds, EachWidgetSetsWhatItShowsAndNothingElse) {
    const Folder folder;
    const std::string name = GetParam();
    const std::string script = source("tests/program/" + name + ".lua").string();
    expectGood(runText(folder, textOf(source("tests/program/kinds.lua")) + textOf(script)));
    keep(pictureOf(folder.path() / (name + ".png")), name);
}

INSTANTIATE_TEST_SUITE_P(
        Automation,
        Kinds,
        testing::Values("blend_state", "buffer", "depth_stencil_state", "raster_state", "sampler"),
        [](const auto& test) { return std::string(test.param); });

TEST(Automation, TheViewportDrawsWithAWindowAndWithoutADisplay) {
    const std::string script = source("tests/program/viewport.lua").string();
    for (const bool headless : {false, true}) {
        SCOPED_TRACE(headless ? "headless" : "with a window");
        const Folder folder;
        std::vector<std::string> arguments{"--run", script, gallery};
        if (headless) arguments.emplace_back("--headless");
        expectGood(run(folder.path(),
                       arguments,
                       headless ? noDisplay : std::map<std::string, std::string>{}));
        const vlImages::Image picture = pictureOf(folder.path() / "viewport.png");
        ASSERT_GT(picture.width, 900U);
        EXPECT_GT(colorCount(picture, 400, 150, 450, 350), 60) << "the viewport is not in it";
        keep(picture, headless ? "viewport_headless" : "viewport_window");
        EXPECT_THAT(textOf(folder.path() / "shot.jpg"), testing::StartsWith("\xFF\xD8"));
    }
}

TEST(Automation, StatesActOnALiveViewport) {
    const Folder folder;
    fs::copy(source("samples/gallery"), folder.path(), fs::copy_options::recursive);
    std::string compositors = textOf(folder.path() / "gallery.vlco");
    const std::string pass = R"("type": "renderScene",)";
    ASSERT_THAT(compositors, HasSubstr(pass));
    compositors.insert(
            compositors.find(pass) + pass.size(),
            R"("rasterState": "surface", "depthStencilState": "order", "blendState": "mix",)");
    std::ofstream(folder.path() / "gallery.vlco") << compositors;
    const std::string script = source("tests/program/states_act.lua").string();
    expectGood(run(folder.path(), {"--run", script, "--headless", "gallery.vls"}, noDisplay));
    keep(pictureOf(folder.path() / "states_act.png"), "states_act");
}

TEST(Automation, ScriptsAreWrittenRunAndFollowedByWidget) {
    const Folder folder;
    expectGood(run(folder.path(),
                   {"--run", source("tests/program/script.lua").string(), "--headless", gallery},
                   noDisplay));
    EXPECT_EQ(textOf(folder.path() / "other.lua"), "return 'saved'");
    for (const char* name : {"script", "script_error", "script_light"})
        keep(pictureOf(folder.path() / (std::string(name) + ".png")), name);
}

TEST(Automation, ShadersAreBoundAndLinkedByWidget) {
    const Folder folder;
    fs::copy(source("samples/gallery"), folder.path(), fs::copy_options::recursive);
    const std::string script = source("tests/program/shader.lua").string();
    expectGood(run(folder.path(), {"--run", script, "--headless", "gallery.vls"}, noDisplay));
    for (const char* tab : {"textures", "samplers", "uav", "constant", "instance"}) {
        for (const char* look : {"dark_720", "dark_1080", "light_720", "light_1080"}) {
            const std::string name = std::string("shader_") + tab + "_" + look;
            keep(pictureOf(folder.path() / (name + ".png")), name);
        }
    }
}

TEST(Automation, ShaderProgramsAreWrittenCompiledAndSavedByWidget) {
    const Folder folder;
    fs::copy(source("samples/gallery"), folder.path(), fs::copy_options::recursive);
    const std::string script = source("tests/program/shader_program.lua").string();
    expectGood(run(folder.path(), {"--run", script, "--headless", "gallery.vls"}, noDisplay));
    EXPECT_EQ(textOf(folder.path() / "fresh_src/pixelShader.hlsl").size(), 199U);
    for (const char* name : {"shader_program_720",
                             "shader_program_1080",
                             "shader_program_light_720",
                             "shader_program_light_1080"})
        keep(pictureOf(folder.path() / (std::string(name) + ".png")), name);
}

TEST(Automation, CamerasAreEditedAndSeenAtOnce) {
    const std::string script = source("tests/program/camera.lua").string();
    for (const bool headless : {false, true}) {
        SCOPED_TRACE(headless ? "headless" : "with a window");
        const Folder folder;
        std::vector<std::string> arguments{"--run", script, gallery};
        if (headless) arguments.emplace_back("--headless");
        expectGood(run(folder.path(),
                       arguments,
                       headless ? noDisplay : std::map<std::string, std::string>{}));
        keep(pictureOf(folder.path() / "camera.png"),
             headless ? "camera_headless" : "camera_window");
        EXPECT_THAT(textOf(folder.path() / "eye.vlca"), HasSubstr("\"nearDistance\": 10"));
    }
}

TEST(Automation, ErrorsEndItWithTheirPlace) {
    const Folder folder;
    const auto failing = runText(folder, "local function deep() ui.click('NOBODY') end\n\ndeep()");
    EXPECT_EQ(failing.status, 1);
    EXPECT_THAT(failing.err, HasSubstr("script.lua:1: 'NOBODY' does not exist"));
    EXPECT_THAT(failing.err, HasSubstr("traceback"));
    EXPECT_THAT(failing.err, HasSubstr("script.lua:3:"));

    const auto broken = runText(folder, "local x =\nif");
    EXPECT_EQ(broken.status, 1);
    EXPECT_THAT(broken.err, HasSubstr("script.lua:2:"));
    EXPECT_EQ(std::count(broken.err.begin(), broken.err.end(), '\n'), 1) << broken.err;

    for (const char* missing : {"missing.lua", "."}) {
        const auto outcome = run(folder.path(), {"--run", missing, "--headless"}, noDisplay);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(missing));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    std::ofstream(folder.path() / "good.lua") << "print('run')";
    const auto unopened =
            run(folder.path(), {"--run", "good.lua", "--headless", "missing.vls"}, noDisplay);
    EXPECT_EQ(unopened.status, 1);
    EXPECT_EQ(unopened.err, "vlEditor: missing.vls: no such file\n");
    const auto unwritable = runText(folder, "ui.screenshot('nowhere/picture.png')");
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_THAT(unwritable.err, HasSubstr("nowhere/picture.png"));
}

TEST(Automation, AScriptMayCloseTheEditorItself) {
    const Folder folder;
    const auto closed = runText(folder, "ui.close('VL_EDITOR_MAIN_WIN') print('closed')");
    expectGood(closed);
    EXPECT_EQ(closed.out, "closed\n");
    const auto left = runText(folder, "ui.menu('VL_EDITOR_TOOL_BAR', 'File', 'Leave')");
    expectGood(left);
    const auto after = runText(folder, "ui.close('VL_EDITOR_MAIN_WIN') ui.text('VL_EDITOR_TABS')");
    EXPECT_EQ(after.status, 1);
    EXPECT_THAT(after.err, HasSubstr("the editor is closing"));
}

TEST(Automation, AScriptThatStillRunsEndsWithTheEditor) {
    expectEndsInOrder("ui.wait(function() return false end, 1e9)");
    expectEndsInOrder("while true do pcall(string.rep, 'x', 9) end");
    expectEndsInOrder("while true do ui.text('VL_EDITOR_TABS') end");
}

TEST(RandomEvents, NeitherEndNorUpsetTheEditor) {
    const char* given = std::getenv("VL_RANDOM_SEED");
    const std::string seed = given != nullptr ? given : std::to_string(std::random_device{}() >> 1);
    for (const bool headless : {false, true}) {
        SCOPED_TRACE("VL_RANDOM_SEED=" + seed + (headless ? " headless" : " with a window"));
        const Folder folder;
        const std::string text = textOf(source("tests/program/random_events.lua"));
        std::ofstream(folder.path() / "random_events.lua")
                << "SEED, SECONDS = " << seed << ", 12 " << text;
        std::vector<std::string> arguments{"--run", "random_events.lua", gallery};
        if (headless) arguments.emplace_back("--headless");
        const auto outcome = run(folder.path(), arguments);
        expectGood(outcome);
        std::cout << outcome.out;
    }
}

} // namespace tests
