#include "core/EditorLogger.h"
#include "core/EngineHandler.h"
#include "core/MessageOrchestrator.h"
#include "interfaces/CommandCompletion.h"
#include "interfaces/CommandInterpreter.h"
#include "interfaces/CompleteCommandMessage.h"
#include "interfaces/LogEmphasis.h"
#include "interfaces/LogInterface.h"
#include "interfaces/LogInterfaceCreator.h"
#include "interfaces/PickLists.h"

#include <vlCommon/ThreadBorder.h>
#include <vlScripts/Environment.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <gmock/gmock.h>

#include <stdexcept>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using vlWinUi::ComponentManager;
using vlWinUi::Emphasis;

class LogInterfaceTest : public testing::Test {
protected:
    LogInterfaceTest() {
        vlCommon::ThreadBorder::claimUi();
        vlWinUi::SystemOptions options;
        options.headless = true;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
    }
    ~LogInterfaceTest() override {
        EXPECT_TRUE(ComponentManager::startingWith("COMMAND_LINE_").empty());
        CommandInterpreter::destroyInstance();
        PickLists::destroyInstance();
        EditorLogger::destroyInstance();
        MessageOrchestrator::getInstance().discard();
        vlWinUi::System::kill();
    }

    static std::unique_ptr<LogInterface> create() {
        auto made = LogInterfaceCreator::create();
        return std::unique_ptr<LogInterface>(static_cast<LogInterface*>(made.release()));
    }
    template <class T> static T& part(const LogInterface& log, const char* suffix) {
        T* found = ComponentManager::get<T>(log.getRootName() + suffix);
        if (found == nullptr) throw std::runtime_error(std::string("no ") + suffix);
        return *found;
    }
    static std::vector<std::string> shown(const LogInterface& log) {
        const auto& list = part<vlWinUi::ListBox>(log, "_LOG");
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < list.getEntryCount(); ++i)
            lines.push_back(list.getEntry(i).label);
        return lines;
    }
    static void run(LogInterface& log, const std::string& command) {
        part<vlWinUi::EditBox>(log, "_EDIT").setText(command);
        log.handleKey(13);
    }
    static std::string edit(const LogInterface& log) {
        return part<vlWinUi::EditBox>(log, "_EDIT").getText();
    }

    EditorLogger& logger = EditorLogger::getInstance();
};

TEST_F(LogInterfaceTest, IsBuiltAsItsPartsAreNamed) {
    const auto log = create();
    const auto next = create();
    EXPECT_EQ(log->title(), "Log / Commands");
    EXPECT_TRUE(log->getRootName().starts_with("COMMAND_LINE_"));
    EXPECT_NE(log->getRootName(), next->getRootName());
    vlWinUi::Component* root = log->getRoot();
    ASSERT_NE(root, nullptr);
    LogInterface* const* stored = root->getDataAs<LogInterface*>();
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(*stored, log.get());
    EXPECT_EQ(part<vlWinUi::Button>(*log, "_LAUNCH").getText(), "Launch");
    part<vlWinUi::EditBox>(*log, "_FILTER");

    ASSERT_NE(root->getLayout(), nullptr);
    const vlWinUi::GridLayout& grid = *root->getLayout();
    EXPECT_EQ(grid.getColumnCount(), 2U);
    EXPECT_EQ(grid.getRowCount(), 2U);
    EXPECT_EQ(grid.getInternalBorderWidth(), 1U);
    EXPECT_EQ(grid.getColumns()[1].fixedSize, 50.0F);
    EXPECT_EQ(grid.getRows()[1].fixedSize, 30.0F);
    EXPECT_EQ(grid.getPlacement(part<vlWinUi::ListBox>(*log, "_LOG"))->width, 2U);
    EXPECT_EQ(grid.getPlacement(part<vlWinUi::Button>(*log, "_LAUNCH"))->x, 1U);
    EXPECT_EQ(grid.getPlacements().size(), 3U);
}

TEST_F(LogInterfaceTest, ANewWindowShowsTheKeptLinesAndThenEveryLine) {
    for (int i = 1; i <= 101; ++i)
        logger.log(std::to_string(i), "Editor");
    const auto log = create();
    EXPECT_EQ(shown(*log).front(), "[Editor] 2");
    EXPECT_EQ(shown(*log).back(), "[Editor] 101");
    auto other = create();
    logger.addLine("[Save] both");
    EXPECT_EQ(shown(*log).back(), "[Save] both");
    EXPECT_EQ(shown(*other).back(), "[Save] both");
    other.reset();
    logger.addLine("[Save] one");
    EXPECT_EQ(shown(*log).size(), 102U);
}

TEST_F(LogInterfaceTest, OutlivesTheLogger) {
    auto log = create();
    EditorLogger::destroyInstance();
    log.reset();
    EXPECT_FALSE(EditorLogger::hasInstance());
    EditorLogger::getInstance();
}

TEST_F(LogInterfaceTest, CommandsAreEchoedAndErrorsTold) {
    const auto log = create();
    run(*log, "");
    EXPECT_TRUE(log->getHistory().getCommands().empty());
    EXPECT_TRUE(shown(*log).empty());
    run(*log, "x = = 1");
    ASSERT_EQ(shown(*log).size(), 2U);
    EXPECT_EQ(shown(*log)[0], "[Editor] x = = 1");
    EXPECT_TRUE(shown(*log)[1].starts_with("[CommandLineInterpreter] Syntax error :\n"));
    EXPECT_THAT(shown(*log)[1], testing::HasSubstr("VLEDITOR_COMMAND"));
    EXPECT_EQ(edit(*log), "");
    part<vlWinUi::EditBox>(*log, "_EDIT").setText("x = 1");
    part<vlWinUi::Button>(*log, "_LAUNCH").click();
    EXPECT_EQ(shown(*log).back(), "[Editor] x = 1");
    EXPECT_THAT(log->getHistory().getCommands(), ElementsAre("x = = 1", "x = 1"));
}

TEST_F(LogInterfaceTest, TheHistoryIsWalkedAndWhatWasTypedComesBack) {
    const auto log = create();
    log->handleKey(38);
    for (int i = 1; i <= 101; ++i)
        run(*log, "a = " + std::to_string(i));
    EXPECT_EQ(log->getHistory().getCommands().size(), 100U);
    part<vlWinUi::EditBox>(*log, "_EDIT").setText("typed");
    log->handleKey(40);
    EXPECT_EQ(edit(*log), "typed");
    log->handleKey(38);
    EXPECT_EQ(edit(*log), "a = 101");
    for (int i = 0; i < 200; ++i)
        log->handleKey(38);
    EXPECT_EQ(edit(*log), "a = 2");
    log->handleKey(40);
    EXPECT_EQ(edit(*log), "a = 3");
    for (int i = 0; i < 200; ++i)
        log->handleKey(40);
    EXPECT_EQ(edit(*log), "typed");
    log->handleKey(27);
    EXPECT_EQ(edit(*log), "");
}

TEST_F(LogInterfaceTest, TheFilterLeavesWhatContainsIt) {
    const auto log = create();
    for (const char* line : {"[Save] rust", "[Save] stone", "[Editor] Rust"})
        logger.addLine(line);
    log->setFilter("RUST");
    EXPECT_EQ(part<vlWinUi::ListBox>(*log, "_LOG").getShownCount(), 2U);
    logger.addLine("[Save] more rust");
    logger.addLine("[Save] wood");
    EXPECT_EQ(part<vlWinUi::ListBox>(*log, "_LOG").getShownCount(), 3U);
}

TEST_F(LogInterfaceTest, NamesAreCompletedAsFarAsTheyAgree) {
    const auto log = create();
    auto& command = part<vlWinUi::EditBox>(*log, "_EDIT");
    command.setText("");
    command.insertAtCursor("f(pr");
    log->offerCompletions("pr", {"print", "printer"});
    EXPECT_EQ(command.getText(), "f(print");
    log->offerCompletions("print", {"print", "printer"});
    EXPECT_EQ(command.getText(), "f(print");
    auto* menu = ComponentManager::get<vlWinUi::ContextMenu>(log->getRootName() + "_COMPLETIONS");
    ASSERT_NE(menu, nullptr);
    menu->getMenu().find("printer")->trigger();
    EXPECT_EQ(command.getText(), "f(printer");
    // An answer that comes too late changes nothing.
    command.setText("other");
    log->offerCompletions("pr", {"print"});
    EXPECT_EQ(command.getText(), "other");
}

TEST_F(LogInterfaceTest, ResourcesAreCompletedWithinQuotes) {
    PickLists::getInstance().createFirstGroup();
    PickLists::getInstance().find("MATERIAL_POP_UP_LIST")->addEntry("rusty metal");
    const auto log = create();
    auto& command = part<vlWinUi::EditBox>(*log, "_EDIT");
    EXPECT_FALSE(log->complete());
    command.setText("");
    command.insertAtCursor("set('rus");
    EXPECT_TRUE(log->complete());
    EXPECT_EQ(command.getText(), "set('rusty metal");
}

/** With an environment that the commands run in. */
class CommandLineTest : public LogInterfaceTest {
protected:
    CommandLineTest() {
        logger.attach();
        EngineHandler::getInstance().setScriptEnvironment(&environment);
        environment.interpreter().addFunction("note.number", [this](auto arguments) {
            noted.push_back(arguments[0].asInteger().value_or(-1));
            return vlCommon::Result<vlScripts::Values>();
        });
    }
    ~CommandLineTest() override { EngineHandler::destroyInstance(); }

    static void round() {
        MessageOrchestrator::getInstance().drainGraphics();
        MessageOrchestrator::getInstance().drainUi();
    }

    vlScripts::Environment environment;
    std::vector<std::int64_t> noted;
};

TEST_F(CommandLineTest, TwoQuickCommandsBothRun) {
    const auto log = create();
    run(*log, "note.number(1)");
    run(*log, "note.number(2)");
    round();
    EXPECT_THAT(noted, ElementsAre(1, 2));
}

TEST_F(CommandLineTest, AValueIsShownAndAFailureIsTold) {
    const auto log = create();
    run(*log, "= 1 + 2 -- three");
    round();
    EXPECT_EQ(shown(*log).back(), "[GraphicsThread] 3");
    run(*log, "nobody()");
    round();
    EXPECT_TRUE(shown(*log).back().starts_with("[CommandLineInterpreter] VLEDITOR_COMMAND:1:"));
}

TEST_F(CommandLineTest, NamesOfTheEnvironmentAreCompleted) {
    const auto log = create();
    auto& command = part<vlWinUi::EditBox>(*log, "_EDIT");
    run(*log, "notes = {}");
    round();
    for (const auto& [typed, completed] : {std::pair("x = note.n", "x = note.number"),
                                           std::pair("not", "note"),
                                           std::pair("nobody.kn", "nobody.kn")}) {
        command.setText("");
        command.insertAtCursor(typed);
        EXPECT_TRUE(log->complete());
        round();
        EXPECT_EQ(command.getText(), completed);
    }
    command.setText("");
    EXPECT_FALSE(log->complete());
}

TEST(CommandCompletion, FindsTheNameBeforeTheCursor) {
    const auto place = CommandCompletion::find("x = vl.scene:ad");
    ASSERT_TRUE(place);
    EXPECT_THAT(place->tables, ElementsAre("vl", "scene"));
    EXPECT_EQ(place->begin, "ad");
    EXPECT_FALSE(place->quoted);
    EXPECT_THAT(CommandCompletion::find("vl.")->tables, ElementsAre("vl"));
    EXPECT_EQ(CommandCompletion::find("a('b', \"it's \\\"x")->begin, "it's \\\"x");
    EXPECT_FALSE(CommandCompletion::find("f('a') "));
    for (const char* text : {"", "x + ", "3", "2.", "f().a", ".x"})
        EXPECT_FALSE(CommandCompletion::find(text)) << text;
}

TEST(LogEmphasis, WordsSayHowMuchALineStandsOut) {
    for (const char* line : {"[GraphicsThread] shader 'a': ERROR: no such file",
                             "[Editor] Loading 'a' failed: no such file",
                             "[CommandLineInterpreter] anything"})
        EXPECT_EQ(emphasisOf(line), Emphasis::Error) << line;
    EXPECT_EQ(emphasisOf("[UiThread] tree 'a': item 1 is left out"), Emphasis::Warning);
    for (const char* line : {"[Editor] terror(errorless)", "[Save] a", ""})
        EXPECT_EQ(emphasisOf(line), Emphasis::None) << line;
}

} // namespace
} // namespace vlEditor
