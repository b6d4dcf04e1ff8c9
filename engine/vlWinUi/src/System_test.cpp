#include "Shades.h"
#include "WinUiTest.h"

#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/ThemeManager.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/Window.h>

#include <atomic>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace vlWinUi {
namespace {

using SystemTest = test::WinUiTest;

TEST_F(SystemTest, NotificationsOfSeveralThreadsBecomeFewCallsAndNoneIsLost) {
    std::atomic<int> posted = 0;
    int seen = 0;
    int calls = 0;
    System::setRunCallback([&] {
        ++calls;
        seen = posted;
        return true;
    });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int n = 0; n < 10'000; ++n) {
                ++posted;
                System::notifyEvent();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    System::processEvents();
    EXPECT_EQ(seen, 40'000);
    EXPECT_LE(calls, 2);
}

TEST_F(SystemTest, WhatIsNotifiedInsideTheCallbackAsksForAnotherTurn) {
    int calls = 0;
    System::setRunCallback([&] {
        if (++calls < 3)
            System::notifyEvent();
        else
            System::prepareForShutdown();
        return true;
    });
    System::run();
    EXPECT_EQ(calls, 3);
}

TEST_F(SystemTest, CallsComeWithTheirTurnsAndTimes) {
    using namespace std::chrono_literals;
    std::vector<int> order;
    const auto begin = std::chrono::steady_clock::now();
    System::runAfter(20ms, [&] { order.push_back(2); });
    System::runLater([&] { order.push_back(1); });
    EXPECT_TRUE(order.empty());
    while (order.size() < 2)
        System::processEvents();
    EXPECT_EQ(order, (std::vector{1, 2}));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
}

TEST_F(SystemTest, AFalseRunCallbackEndsTheLoop) {
    System::setRunCallback([] { return false; });
    System::run();
}

TEST(SystemLife, NotifyingIsSafeBeforeAndAfterALife) {
    std::atomic<bool> done = false;
    std::thread late([&] {
        while (!done)
            System::notifyEvent();
    });
    int calls = 0;
    for (int life = 0; life < 3; ++life) {
        ASSERT_TRUE(System::initialize({.headless = true}));
        System::setRunCallback([&] {
            ++calls;
            System::prepareForShutdown();
            return true;
        });
        System::run();
        System::kill();
    }
    done = true;
    late.join();
    EXPECT_GE(calls, 3);
}

TEST(SystemLife, NoDisplayIsOneClearError) {
    const auto keep = [](const char* name) {
        const char* value = std::getenv(name);
        return value == nullptr ? std::string() : std::string(value);
    };
    const std::string display = keep("DISPLAY");
    const std::string wayland = keep("WAYLAND_DISPLAY");
    const std::string platform = keep("QT_QPA_PLATFORM");
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        unsetenv(name);
    const auto none = System::initialize();
    setenv("DISPLAY", ":4711", 1);
    const auto dead = System::initialize();
    unsetenv("DISPLAY");
    if (!display.empty()) setenv("DISPLAY", display.c_str(), 1);
    if (!wayland.empty()) setenv("WAYLAND_DISPLAY", wayland.c_str(), 1);
    if (!platform.empty()) setenv("QT_QPA_PLATFORM", platform.c_str(), 1);

    ASSERT_FALSE(none);
    EXPECT_NE(none.error().message.find("neither DISPLAY"), std::string::npos);
    ASSERT_FALSE(dead);
    EXPECT_NE(dead.error().message.find(":4711"), std::string::npos);
    EXPECT_FALSE(System::isInitialized());
    EXPECT_EQ(ComponentManager::createOrRetrieve<Window>("WINDOW"), nullptr);
}

TEST_F(SystemTest, ASignalArrivesInTheLoop) {
    bool terminated = false;
    System::setTerminationCallback([&] {
        terminated = true;
        System::prepareForShutdown();
    });
    std::raise(SIGTERM);
    EXPECT_FALSE(terminated);
    System::run();
    EXPECT_TRUE(terminated);
}

TEST_F(SystemTest, NumbersInTextStayC) {
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST_F(SystemTest, ADisabledMenuItemSaysWhyAndCannotBeChosen) {
    auto& bar = make<ToolBar>("BAR");
    int saved = 0;
    Menu& file = bar.addMenu("File", 200);
    MenuItem& save = file.addItem("Save & Close", [&] { ++saved; });
    EXPECT_EQ(save.getLabel(), "Save & Close");
    save.setEnabled(false, "Nothing to save");
    save.trigger();
    EXPECT_EQ(saved, 0);
    EXPECT_EQ(save.getToolTip(), "Nothing to save");
    save.setEnabled(true);
    bar.findMenu("File")->find("Save & Close")->trigger();
    EXPECT_EQ(saved, 1);
}

TEST_F(SystemTest, AMenuItemMayClearItsMenu) {
    auto& menu = make<ContextMenu>("MENU");
    menu.addItem("Clear", [&] { menu.getMenu().clear(); }).trigger();
    System::processEvents();
    EXPECT_EQ(menu.getMenu().getItemCount(), 0U);
}

TEST_F(SystemTest, APictureMustHaveItsBytes) {
    auto& surface = make<Surface>("SURFACE");
    EXPECT_EQ(surface.nativeHandle(), SurfaceHandle{});
    const std::vector<std::byte> bytes(2 * 2 * 4);
    surface.presentPicture(2, 2, bytes);
    EXPECT_TRUE(lines.empty());
    surface.presentPicture(3, 2, bytes);
    EXPECT_EQ(lines.size(), 1U);
}

TEST_F(SystemTest, TextIsReadableInBothThemes) {
    Theme& theme = ThemeManager::createOrRetrieve("EDITOR_DARK");
    const Color sets[][Theme::COLOR_COUNT] = {
            {{12, 12, 12}, {138, 56, 54}, {81, 69, 21}, {163, 139, 43}, {191, 191, 191}},
            {{248, 246, 245}, {127, 167, 211}, {81, 69, 21}, {163, 139, 43}, {64, 64, 64}},
    };
    for (const auto& colors : sets) {
        for (std::size_t i = 0; i < Theme::COLOR_COUNT; ++i)
            theme.setColor(i + 1, colors[i]);
        ThemeManager::setActiveTheme(theme);
        EXPECT_EQ(ThemeManager::getActiveTheme(), &theme);
        const Shades shades(theme);
        for (const QColor& ground : {shades.background,
                                     shades.bar,
                                     shades.field,
                                     shades.raised,
                                     shades.raisedHover,
                                     shades.hover}) {
            EXPECT_GE(contrast(shades.text, ground), 4.5) << ground.name().toStdString();
            EXPECT_GE(contrast(shades.muted, ground), 3.0) << ground.name().toStdString();
        }
        for (const QColor& color : {shades.muted, shades.error, shades.warning})
            EXPECT_GE(contrast(color, shades.field), 4.5) << color.name().toStdString();
        EXPECT_GE(contrast(shades.accentText, shades.accent), 4.5);
        EXPECT_LT(contrast(shades.disabled, shades.background),
                  contrast(shades.muted, shades.background));
    }
}

} // namespace
} // namespace vlWinUi
