#include "WinUiTest.h"

#include <vlWinUi/Automation.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/FileExplorer.h>
#include <vlWinUi/InputSystem.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/MultiLineEdit.h>
#include <vlWinUi/Notificator.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/TabWindow.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/TreeView.h>
#include <vlWinUi/Window.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace vlWinUi {
namespace {

using Labels = Automation::Labels;
using testing::ElementsAre;
using testing::HasSubstr;

class AutomationTest : public test::WinUiTest {
protected:
    void show(const std::vector<Component*>& parts) {
        auto& window = make<Window>("WINDOW");
        GridLayout layout(1, static_cast<unsigned>(parts.size()));
        for (unsigned row = 0; row < parts.size(); ++row)
            layout.addComponent(*parts[row], 0, row);
        window.setLayout(std::move(layout));
        window.setRectangle({10, 10, 400, 400});
        window.setVisible(true);
        System::settle();
    }

    /// Empty on success, otherwise the refusal.
    template <class F> std::string use(F act) {
        std::optional<vlCommon::Result<>> result;
        act([&](vlCommon::Result<> told) { result = std::move(told); });
        for (int turn = 0; turn < 1000 && !result; ++turn)
            System::processEvents();
        if (!result) return "no answer";
        return *result ? std::string() : result->error().message;
    }
    std::string click(const std::string& name,
                      Automation::Button button = Automation::Button::Left,
                      const std::string& item = {}) {
        return use([&](auto done) { Automation::click(name, button, item, done); });
    }
    std::string type(const std::string& name, const std::string& text) {
        return use([&](auto done) { Automation::type(name, text, done); });
    }
    std::string key(const std::string& name, std::uint32_t code, const Labels& held = {}) {
        return use([&](auto done) { Automation::key(name, code, held, done); });
    }
    std::string select(const std::string& name, const std::string& label) {
        return use([&](auto done) { Automation::select(name, label, done); });
    }
    std::string menu(const std::string& name, const Labels& path) {
        return use([&](auto done) { Automation::menu(name, path, done); });
    }
};

TEST_F(AutomationTest, AClickReachesOnlyWhatAPersonCouldClick) {
    int clicks = 0;
    auto& button = make<Button>("BUTTON");
    button.setButtonClickCallback([&] { ++clicks; });
    EXPECT_EQ(click("BUTTON"), "'BUTTON' is not visible");
    show({&button});
    EXPECT_EQ(click("BUTTON"), "");
    EXPECT_EQ(click("BUTTON"), "");
    EXPECT_EQ(clicks, 2);
    button.setEnabled(false, "Not now");
    EXPECT_EQ(click("BUTTON"), "'BUTTON' is disabled");
    EXPECT_EQ(click("OTHER"), "'OTHER' does not exist");
    EXPECT_EQ(clicks, 2);
}

TEST_F(AutomationTest, ADragBeginsInItsComponent) {
    int clicks = 0;
    auto& first = make<Button>("FIRST");
    auto& second = make<Button>("SECOND");
    second.setButtonClickCallback([&] { ++clicks; });
    show({&first, &second});
    const auto send = [&](const std::string& name, int y, Automation::Phase phase) {
        return use([&](auto done) {
            Automation::mouse(name, {5, y}, Automation::Button::Left, phase, done);
        });
    };
    const auto top = [](const char* name) { return Automation::getRectangle(name)->y; };
    const int below = top("SECOND") - top("FIRST") + 5;
    EXPECT_EQ(send("FIRST", below, Automation::Phase::Press),
              "'FIRST' is not to be seen at (5, " + std::to_string(below) + ")");
    EXPECT_EQ(send("SECOND", 5, Automation::Phase::Press), "");
    EXPECT_EQ(send("FIRST", below, Automation::Phase::Release), "");
    EXPECT_EQ(clicks, 1);
}

TEST_F(AutomationTest, ADialogKeepsClicksFromWhatIsBehindIt) {
    int clicks = 0;
    int accepted = 0;
    auto& button = make<Button>("BUTTON");
    button.setButtonClickCallback([&] {
        ++clicks;
        Notificator::confirm("Sure?", button, [&] { ++accepted; });
    });
    show({&button});
    const auto confirm = [&](bool yes) {
        return use([&](auto done) { Automation::confirm(yes, done); });
    };
    EXPECT_EQ(confirm(true), "no confirmation is open");
    EXPECT_EQ(click("BUTTON"), "");
    EXPECT_THAT(click("BUTTON"), HasSubstr("is behind the dialog"));
    EXPECT_EQ(confirm(true), "");
    EXPECT_EQ(accepted, 1);
    EXPECT_EQ(click("BUTTON"), "");
    EXPECT_EQ(confirm(false), "");
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(accepted, 1);
    EXPECT_FALSE(Notificator::isOpen());
}

TEST_F(AutomationTest, TypingReplacesTheTextAndObeysTheField) {
    auto& edit = make<EditBox>("EDIT");
    auto& number = make<EditBox>("NUMBER");
    auto& page = make<MultiLineEdit>("LINES");
    number.setNumbers(EditBox::Numbers::Digits);
    int changes = 0;
    std::vector<std::uint32_t> keys;
    edit.setChangeCallback([&] { ++changes; });
    edit.setKeyDownCallback([&](std::uint32_t code) { keys.push_back(code); });
    show({&edit, &number, &page});
    edit.setText("before");
    EXPECT_EQ(type("EDIT", "Gr\xC3\xBC\xC3\x9F dich, Welt 2!"), "");
    EXPECT_EQ(edit.getText(), "Gr\xC3\xBC\xC3\x9F dich, Welt 2!");
    EXPECT_GT(changes, 2);
    EXPECT_EQ(type("NUMBER", "1a2"), "");
    EXPECT_EQ(number.getText(), "12");
    EXPECT_EQ(type("LINES", "a\n  b"), "");
    EXPECT_EQ(page.getText(), "a\n  b");
    EXPECT_EQ(type("EDIT", "a\nb"), "'EDIT' takes one line only");
    keys.clear();
    for (const std::uint32_t code : {13U, 38U, 40U})
        EXPECT_EQ(key("EDIT", code), "");
    EXPECT_THAT(keys, ElementsAre(13U, 38U, 40U));
    EXPECT_EQ(key("EDIT", 'A', {"ctrl"}), "");
    EXPECT_EQ(key("EDIT", 8), "");
    EXPECT_EQ(edit.getText(), "");
    EXPECT_EQ(key("EDIT", 7), "'EDIT' has no key of code 7");
    edit.setReadOnly(true);
    EXPECT_EQ(type("EDIT", "x"), "'EDIT' is read-only");
}

TEST_F(AutomationTest, ChoosesFromListsCombosTabsAndTrees) {
    auto& list = make<ListBox>("LIST");
    auto& combo = make<ComboBox>("COMBO");
    auto& tabs = make<TabWindow>("TABS");
    auto& tree = make<TreeView>("TREE");
    for (int i = 0; i < 200; ++i)
        list.addEntry("line " + std::to_string(i));
    for (const char* label : {"red", "green", "blue"})
        combo.addEntry(label);
    tabs.addTab("First & only");
    tabs.addTab("Second");
    tree.setItems({{1, 0, "root"}, {2, 1, "child"}, {3, 2, "grandchild"}});
    std::string told;
    list.setSelectionCallback([&](auto row) { told = list.getEntry(*row).label; });
    combo.setSelectionCallback([&](std::size_t row) { told = combo.getEntry(row).label; });
    tree.setSelectionCallback([&](const auto& ids) { told = tree.getLabel(ids.front()); });
    tabs.setTabSwitchCallback([&](std::size_t, std::size_t to) {
        told = tabs.getTabLabel(to);
        return true;
    });
    show({&list, &combo, &tabs, &tree});
    const struct {
        const char* name;
        const char* label;
    } choices[] = {
            {"LIST", "line 150"}, {"COMBO", "blue"}, {"TABS", "Second"}, {"TREE", "grandchild"}};
    for (const auto& [name, label] : choices) {
        EXPECT_EQ(select(name, label), "");
        EXPECT_EQ(told, label);
        EXPECT_THAT(Automation::getSelected(name).value_or(Labels{}), ElementsAre(label));
        EXPECT_THAT(select(name, "nothing"), HasSubstr("'" + std::string(name) + "' has no"));
    }
    EXPECT_THAT(*Automation::getItems("TREE"), ElementsAre("root", "  child", "    grandchild"));
    EXPECT_THAT(*Automation::getItems("TABS"), ElementsAre("First & only", "Second"));
    EXPECT_THAT(*Automation::getItems("COMBO"), ElementsAre("red", "green", "blue"));
    EXPECT_EQ(Automation::getItems("LIST")->size(), 200U);
    EXPECT_FALSE(Automation::getItems("WINDOW"));
}

TEST_F(AutomationTest, ATabOutOfTheBarsRoomIsScrolledTo) {
    auto& tabs = make<TabWindow>("TABS");
    for (int i = 0; i < 40; ++i)
        tabs.addTab("Tab " + std::to_string(i));
    show({&tabs});
    for (const char* label : {"Tab 39", "Tab 20", "Tab 0", "Tab 12"}) {
        EXPECT_EQ(select("TABS", label), "");
        EXPECT_EQ(tabs.getText(), label);
    }
}

TEST_F(AutomationTest, MenusAreWalkedByTheirLabels) {
    auto& bar = make<ToolBar>("BAR");
    std::string chosen;
    Menu& file = bar.addMenu("File");
    Menu* more = nullptr;
    file.addItem("Save & Close", [&] { chosen = "save"; });
    more = &file.addMenu("More");
    more->addItem("Deep", [&] { chosen = "deep"; });
    MenuItem& off = file.addItem("Off", [&] { chosen = "off"; });
    off.setEnabled(false);
    show({&bar});
    EXPECT_EQ(menu("BAR", {"File", "Save & Close"}), "");
    EXPECT_EQ(chosen, "save");
    EXPECT_EQ(menu("BAR", {"File", "More", "Deep"}), "");
    EXPECT_EQ(chosen, "deep");
    EXPECT_EQ(menu("BAR", {"File", "Off"}), "'BAR' has 'Off' disabled");
    EXPECT_EQ(menu("BAR", {"File", "None"}), "'BAR' has no item 'None'");
    EXPECT_EQ(menu("BAR", {"File", "Save & Close"}), "");
    EXPECT_EQ(chosen, "save");
    EXPECT_THAT(*Automation::getItems("BAR", {"File"}), ElementsAre("Save & Close", "More", "Off"));
    EXPECT_FALSE(*Automation::isEnabled("BAR", {"File", "Off"}));
}

TEST_F(AutomationTest, AContextMenuIsChosenFromWhileItIsOpen) {
    auto& tabs = make<TabWindow>("TABS");
    auto& menuOfTab = make<ContextMenu>("MENU");
    int closed = 0;
    menuOfTab.addItem("Close", [&] { ++closed; });
    tabs.addTab("First");
    tabs.addTab("Second");
    tabs.setTabClickCallback([&](auto index, const ClickEvent& event) {
        if (index == 1U && event.button == ClickEvent::RIGHT && !event.pressed)
            menuOfTab.open(event.screen);
    });
    show({&tabs});
    EXPECT_EQ(menu("MENU", {"Close"}), "'MENU' is not visible");
    EXPECT_EQ(click("TABS", Automation::Button::Right, "Second"), "");
    EXPECT_EQ(menu("MENU", {"Close"}), "");
    EXPECT_EQ(closed, 1);
}

TEST_F(AutomationTest, TheMenuKeyAsksForAMenu) {
    auto& list = make<ListBox>("LIST");
    auto& around = make<Window>("AROUND");
    int ofList = 0;
    int ofWindow = 0;
    list.setMenuCallback([&](Point) { ++ofList; });
    around.setMenuKeyCallback([&] { ++ofWindow; });
    auto& label = make<Static>("LABEL");
    label.setFocusable(true);
    GridLayout grid(1, 1);
    grid.addComponent(label, 0, 0);
    around.setLayout(std::move(grid));
    show({&list, &around});
    EXPECT_EQ(key("LIST", 93), "");
    EXPECT_EQ(ofList, 1);
    EXPECT_EQ(key("LABEL", 93), "");
    EXPECT_EQ(ofWindow, 1);
}

TEST_F(AutomationTest, AFileDialogGetsItsPath) {
    auto& explorer = make<FileExplorer>("EXPLORER");
    auto& button = make<Button>("BUTTON");
    show({&button});
    const auto folder = std::filesystem::temp_directory_path() / "vl_automation_test";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "there.txt") << "x";
    std::string chosen;
    const auto choose = [&](const std::filesystem::path& path) {
        return use([&](auto done) { Automation::choose(path.string(), done); });
    };
    EXPECT_EQ(choose(folder / "there.txt"), "no file dialog is open");
    explorer.setMode(FileExplorer::Mode::Open);
    explorer.open([&](const std::string& path) { chosen = path; });
    EXPECT_THAT(choose(folder / "missing.txt"), HasSubstr("does not exist"));
    EXPECT_EQ(choose(folder / "there.txt"), "");
    EXPECT_EQ(chosen, (folder / "there.txt").string());
    explorer.open([&](const std::string&) { chosen = "cancelled all the same"; });
    EXPECT_EQ(choose({}), "");
    EXPECT_EQ(chosen, (folder / "there.txt").string());
    explorer.setMode(FileExplorer::Mode::Save);
    explorer.open([&](const std::string& path) { chosen = path; });
    EXPECT_EQ(choose(folder / "new.txt"), "");
    EXPECT_EQ(chosen, (folder / "new.txt").string());
    std::filesystem::remove_all(folder);
}

TEST_F(AutomationTest, ACheckBoxAndAWindowObey) {
    auto& box = make<CheckBox>("BOX");
    box.setText("A text");
    int told = 0;
    box.setCheckCallback([&](bool) { ++told; });
    show({&box});
    const auto check = [&](bool on) {
        return use([&](auto done) { Automation::check("BOX", on, done); });
    };
    EXPECT_EQ(check(true), "");
    EXPECT_EQ(check(true), "");
    EXPECT_TRUE(*Automation::isChecked("BOX"));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(use([](auto done) { Automation::resize("WINDOW", 500, 300, done); }), "");
    EXPECT_EQ(Automation::getRectangle("WINDOW")->width, 500);
    const auto picture = Automation::takePicture("WINDOW");
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 500U);
    EXPECT_EQ(picture->pixels.size(), 500U * 300 * 3);
    std::string closed;
    InputSystem::setCloseCallback([&](Component& window) {
        closed = window.getComponentName();
        return true;
    });
    EXPECT_EQ(use([](auto done) { Automation::close("WINDOW", done); }), "");
    EXPECT_EQ(closed, "WINDOW");
}

TEST_F(AutomationTest, AtTheEndOfTheLoopWhatWasDoneIsToldAndNothingElseIs) {
    auto& button = make<Button>("BUTTON");
    int clicks = 0;
    button.setButtonClickCallback([&] {
        ++clicks;
        System::prepareForShutdown();
    });
    show({&button});
    std::vector<std::string> told;
    const auto note = [&](const char* name) {
        return [&told, name](vlCommon::Result<> result) {
            if (result) told.emplace_back(name);
        };
    };
    Automation::click("BUTTON", Automation::Button::Left, {}, note("first"));
    Automation::invoke([&] { Automation::stop(); });
    Automation::click("BUTTON", Automation::Button::Left, {}, note("second"));
    for (int turn = 0; turn < 10; ++turn)
        System::processEvents();
    EXPECT_EQ(clicks, 1);
    EXPECT_THAT(told, ElementsAre("first"));
    std::thread([] { Automation::invoke([] {}); }).join();
}

} // namespace
} // namespace vlWinUi
