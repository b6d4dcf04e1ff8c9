#include "program/ProgramRun.h"
#include "program/Screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdlib>
#include <fstream>

namespace tests {

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

/** The editor with a project open, its viewport drawn. */
class Editor {
public:
    explicit Editor(
            std::vector<std::string> arguments = {source("samples/gallery/gallery.vls").string()},
            const std::map<std::string, std::string>& environment = {})
        : run_(folder_.path(), arguments, environment) {
        opened_ = eventually([this] {
            window_ = screen_.find("Vorlane Editor").value_or(Screen::Window());
            return window_.id != 0 || !run_.isRunning();
        });
    }

    bool isOpen() { return opened_ && window_.id != 0 && run_.isRunning(); }
    const Screen& screen() const { return screen_; }
    const Screen::Window& window() const { return window_; }
    ProgramRun& process() { return run_; }
    const Folder& folder() const { return folder_; }

    /// Colours in the middle of the view: a drawn scene has many, an empty or a stuck one few.
    int viewColors() const {
        const int left = window_.x + 400;
        const int top = window_.y + 150;
        return colorCount(
                screen_.picture(), left, top, window_.width - 400 - 50, window_.height - 150 - 100);
    }
    bool showsScene() const {
        return eventually([this] { return viewColors() > 60; });
    }

    /// "File", its last item.
    void leaveByMenu() const {
        screen_.click(window_.x + 24, window_.y + 13);
        screen_.key("Up");
        screen_.key("Return");
    }
    /// "View", its item at that place from the bottom.
    void viewItem(int fromBottom) const {
        screen_.click(window_.x + 134, window_.y + 13);
        for (int i = 0; i < fromBottom; ++i)
            screen_.key("Up");
        screen_.key("Return");
    }

    void expectLeft() {
        const auto outcome = run_.wait();
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(complaints(outcome.err), "");
        const std::string settings = textOf(folder_.path() / "vlEditor_cfg.json");
        EXPECT_THAT(settings, HasSubstr("\"resourceFolder\""));
        EXPECT_THAT(settings, testing::Not(HasSubstr("gallery")));
    }

private:
    Folder folder_;
    Screen screen_;
    ProgramRun run_;
    Screen::Window window_;
    bool opened_ = false;
};

} // namespace

TEST(EditorWindow, ShowsTheSceneInBothThemesAndLeavesByTheMenu) {
    Editor editor;
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    ASSERT_TRUE(editor.showsScene());
    const auto bar = [&] {
        return colorAt(editor.screen().picture(), editor.window().x + 600, editor.window().y + 13);
    };
    EXPECT_LT(bar().r, 80);
    keep(editor.screen().picture(), "editor_dark");
    editor.viewItem(2);
    EXPECT_TRUE(eventually([&] { return bar().r > 200; }));
    EXPECT_TRUE(editor.showsScene());
    keep(editor.screen().picture(), "editor_light");
    editor.viewItem(3);
    EXPECT_TRUE(eventually([&] { return bar().r < 80; }));
    editor.leaveByMenu();
    editor.expectLeft();
}

TEST(EditorWindow, FollowsItsSizeAndLeavesByItsCross) {
    Editor editor;
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    ASSERT_TRUE(editor.showsScene());
    for (const int width : {900, 700, 1100, 820})
        editor.screen().resize(editor.window(), width, 600);
    EXPECT_TRUE(eventually([&] {
        const auto now = editor.screen().find("Vorlane Editor");
        return now && now->width == 820 && now->height == 600;
    }));
    EXPECT_TRUE(eventually([&] {
        const auto now = *editor.screen().find("Vorlane Editor");
        return colorCount(editor.screen().picture(), now.x + 400, now.y + 150, 380, 350) > 60;
    }));
    editor.screen().close(editor.window());
    editor.expectLeft();
}

TEST(EditorWindow, TheRenderingWindowComesBackAfterItWasClosed) {
    Editor editor;
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    ASSERT_TRUE(editor.showsScene());
    const auto find = [&] { return editor.screen().find("Rendering Logic"); };
    EXPECT_FALSE(find());
    for (int time = 0; time < 2; ++time) {
        editor.screen().click(editor.window().x + 195, editor.window().y + 13);
        editor.screen().key("Up");
        editor.screen().key("Return");
        ASSERT_TRUE(eventually([&] { return find().has_value(); }));
        EXPECT_EQ(find()->width, 400);
        EXPECT_EQ(find()->height, 130);
        editor.screen().close(*find());
        EXPECT_TRUE(eventually([&] { return !find(); }));
    }
    editor.leaveByMenu();
    editor.expectLeft();
}

TEST(EditorWindow, SignalsLeaveInOrder) {
    for (const int number : {SIGTERM, SIGINT}) {
        Editor editor(std::vector<std::string>{});
        ASSERT_TRUE(editor.isOpen()) << editor.process().err();
        editor.process().signal(number);
        editor.expectLeft();
    }
}

TEST(EditorWindow, ClosesATabWhoseViewportDraws) {
    Editor editor;
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    ASSERT_TRUE(editor.showsScene());
    editor.screen().click(editor.window().x + 40, editor.window().y + 40, 3);
    editor.screen().key("Up");
    editor.screen().key("Return");
    EXPECT_TRUE(eventually([&] { return editor.viewColors() < 40; }));
    EXPECT_TRUE(editor.process().isRunning());
    editor.leaveByMenu();
    editor.expectLeft();
}

TEST(EditorWindow, KeepsWhatAPersonMakesOfTabsAndContainers) {
    const Folder home;
    const std::map<std::string, std::string> settings{{"XDG_CONFIG_HOME", home.path().string()}};
    const std::vector<std::string> gallery{source("samples/gallery/gallery.vls").string()};
    const auto kept = [&] { return textOf(home.path() / "vlEditor" / "layout.json"); };
    {
        Editor editor(gallery, settings);
        ASSERT_TRUE(editor.isOpen()) << editor.process().err();
        ASSERT_TRUE(editor.showsScene());
        const Screen& screen = editor.screen();
        const int x = editor.window().x;
        const int y = editor.window().y;
        // The viewport moves into a panel and gets smaller, while it draws.
        screen.click(x + 700, y + 76, 3);
        for (int i = 0; i < 6; ++i)
            screen.key("Down");
        screen.key("Return");
        const auto viewEndsAt = [&](int height) {
            return eventually([&] {
                const auto picture = screen.picture();
                return colorCount(picture, x + 400, y + 100, 300, height - 40) > 60 &&
                       colorCount(picture, x + 400, y + height + 150, 300, 100) < 30;
            });
        };
        EXPECT_TRUE(viewEndsAt(300));
        screen.drag(x + 304, y + 300, x + 384, y + 300);
        screen.doubleClick(x + 30, y + 40);
        screen.type("Gallery");
        screen.key("Return");
        screen.key("ctrl+t");
        // The new container's menu, by the keyboard alone: "Add container left".
        screen.key("shift+F10");
        for (int i = 0; i < 4; ++i)
            screen.key("Down");
        screen.key("Return");
        // A signal would overtake the keys.
        screen.key("ctrl+q");
        editor.expectLeft();
        for (const char* part : {"\"Gallery\"", "\"New Tab\"", "\"size\": 380.0", "\"rows\": true"})
            EXPECT_THAT(kept(), HasSubstr(part));
    }
    const std::string before = kept();
    std::size_t empty = 0;
    for (std::size_t at = before.find("\"view\": \"\""); at != std::string::npos;
         at = before.find("\"view\": \"\"", at + 1))
        ++empty;
    EXPECT_EQ(empty, 3U) << before;
    Editor editor(gallery, settings);
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    editor.screen().key("ctrl+Tab");
    EXPECT_TRUE(eventually([&] {
        return colorCount(editor.screen().picture(),
                          editor.window().x + 420,
                          editor.window().y + 120,
                          500,
                          180) > 60;
    }));
    keep(editor.screen().picture(), "editor_containers");
    editor.screen().key("ctrl+Tab");
    editor.screen().key("ctrl+q");
    editor.expectLeft();
    EXPECT_EQ(kept(), before);
}

TEST(EditorWindow, OpensDespiteABrokenProject) {
    const Folder folder;
    std::ofstream(folder.path() / "broken.vls") << "{\"formatVersion\": 1,";
    Editor editor(std::vector<std::string>{(folder.path() / "broken.vls").string()});
    ASSERT_TRUE(editor.isOpen()) << editor.process().err();
    editor.process().signal(SIGTERM);
    editor.expectLeft();
}

} // namespace tests
