#include "core/EditorLogger.h"
#include "core/LogMessage.h"
#include "core/MessageOrchestrator.h"

#include <vlGraphics/LogManager.h>
#include <vlWinUi/LogManager.h>

#include <gmock/gmock.h>

#include <thread>

namespace vlEditor {
namespace {

using testing::ElementsAre;

class EditorLoggerTest : public testing::Test {
protected:
    ~EditorLoggerTest() override {
        EditorLogger::destroyInstance();
        MessageOrchestrator::getInstance().discard();
    }
    EditorLogger& logger = EditorLogger::getInstance();
};

struct FakeWindow final : LogWindow {
    void appendLine(const std::string& line) override { lines.push_back(line); }
    std::vector<std::string> lines;
};

TEST_F(EditorLoggerTest, KeepsTheLastHundredLines) {
    for (int i = 1; i <= 101; ++i)
        logger.log(std::to_string(i), "Editor");
    EXPECT_EQ(logger.getKeptLines().size(), 100U);
    EXPECT_EQ(logger.getKeptLines().front(), "[Editor] 2");
    EXPECT_EQ(logger.getKeptLines().back(), "[Editor] 101");
}

TEST_F(EditorLoggerTest, ShowsLinesInEveryRegisteredWindow) {
    FakeWindow one;
    FakeWindow two;
    logger.addWindow(one);
    logger.log("a", "Save");
    logger.addWindow(two);
    logger.log("b", "Save");
    logger.removeWindow(one);
    logger.removeWindow(one);
    logger.log("c", "Save");
    EXPECT_THAT(one.lines, ElementsAre("[Save] a", "[Save] b"));
    EXPECT_THAT(two.lines, ElementsAre("[Save] b", "[Save] c"));
}

TEST_F(EditorLoggerTest, SaysNothingWhileDisabled) {
    logger.attach();
    logger.setEnabled(false);
    logger.log("a", "Editor");
    vlWinUi::LogManager::getInstance().log("b");
    vlGraphics::LogManager::getInstance().log("c");
    logger.setEnabled(true);
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_TRUE(logger.getKeptLines().empty());
}

TEST_F(EditorLoggerTest, ALogMessageKeepsItsSourceOrGetsTheEditors) {
    for (const char* text : {"[GraphicsThread] a", "abc", ""})
        LogMessage(text).runOnUiThread();
    EXPECT_THAT(logger.getKeptLines(),
                ElementsAre("[GraphicsThread] a", "[Editor] abc", "[Editor] "));
}

TEST_F(EditorLoggerTest, LinesOfTheEngineTravelToTheUiThread) {
    logger.attach();
    std::thread([] { vlGraphics::LogManager::getInstance().log("lost\nfound"); }).join();
    EXPECT_TRUE(logger.getKeptLines().empty());
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_THAT(logger.getKeptLines(), ElementsAre("[GraphicsThread] lost\nfound"));
}

TEST_F(EditorLoggerTest, LinesOfTheWidgetLibraryAreSplitAndBlankOnesFold) {
    logger.attach();
    for (const char* text : {"a\n\nb", "c\n", "", "\n", "\n\nd\ne"}) {
        vlWinUi::LogManager::getInstance().log(text);
    }
    EXPECT_THAT(logger.getKeptLines(),
                ElementsAre("[UiThread] a",
                            "[UiThread] \nb",
                            "[UiThread] c",
                            "[UiThread] \n",
                            "[UiThread] \n",
                            "[UiThread] d",
                            "[UiThread] e"));
}

TEST_F(EditorLoggerTest, NothingArrivesOnceDetached) {
    FakeWindow window;
    logger.attach();
    logger.addWindow(window);
    logger.log("a", "Editor");
    logger.detach();
    logger.detach();
    vlWinUi::LogManager::getInstance().log("b");
    vlGraphics::LogManager::getInstance().log("c");
    MessageOrchestrator::getInstance().drainUi();
    EXPECT_TRUE(logger.getKeptLines().empty());
    EXPECT_THAT(window.lines, ElementsAre("[Editor] a"));
}

} // namespace
} // namespace vlEditor
