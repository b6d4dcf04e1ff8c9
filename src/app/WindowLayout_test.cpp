#include "app/LayoutFile.h"
#include "app/ViewTabs.h"
#include "core/EditorLogger.h"
#include "interfaces/CommonWindowInit.h"
#include "interfaces/InterfaceContainerCreator.h"
#include "interfaces/InterfaceContainerManipulator.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/System.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>

namespace vlEditor {
namespace {

namespace fs = std::filesystem;
using Manipulator = InterfaceContainerManipulator;
using testing::HasSubstr;
using vlWinUi::ComponentManager;

class View final : public Interface {
public:
    View()
        : Interface(*ComponentManager::createOrRetrieve<vlWinUi::Window>(
                  "VIEW_" + std::to_string(next_++))) {}
    std::string title() const override { return "View"; }

private:
    inline static int next_ = 0;
};

/// Tabs drawn in memory, and settings in a folder of the test's own.
class WindowLayoutTest : public testing::Test {
protected:
    WindowLayoutTest() {
        std::string pattern = (fs::temp_directory_path() / "vllayoutXXXXXX").string();
        folder = mkdtemp(pattern.data());
        if (const char* value = std::getenv("XDG_CONFIG_HOME")) before = value;
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        LayoutFile::setEnabled(true);
        vlCommon::ThreadBorder::claimUi();
        vlWinUi::SystemOptions options;
        options.headless = true;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
        for (const ContainerType type : {ContainerType::graph, ContainerType::engineWindow})
            containers().setCreator(type, [] { return std::make_unique<View>(); });
        tabs = ComponentManager::createOrRetrieve<vlWinUi::TabWindow>("TABS");
        CommonWindowInit::setUpTabs(*tabs);
    }
    ~WindowLayoutTest() override {
        InterfaceContainerCreator::destroyInstance();
        EditorLogger::destroyInstance();
        vlWinUi::System::kill();
        LayoutFile::setEnabled(false);
        before.empty() ? unsetenv("XDG_CONFIG_HOME") : setenv("XDG_CONFIG_HOME", before.c_str(), 1);
        fs::remove_all(folder);
    }
    static InterfaceContainerCreator& containers() {
        return InterfaceContainerCreator::getInstance();
    }
    static std::size_t lineCount() { return EditorLogger::getInstance().getKeptLines().size(); }
    static std::string textOf(const std::vector<WindowLayout::Tab>& described) {
        WindowLayout layout;
        layout.tabs = described;
        return layout.toText();
    }
    void write(const std::string& text) const {
        fs::create_directories(folder / "vlEditor");
        std::ofstream(LayoutFile::path(), std::ios::binary) << text;
    }

    fs::path folder;
    std::string before;
    vlWinUi::TabWindow* tabs = nullptr;
};

TEST_F(WindowLayoutTest, EverythingComesBackAsItWas) {
    ViewTabs::createFirst(*tabs);
    vlWinUi::Window& page = *tabs->getPage(0);
    vlWinUi::Window& engine = *Manipulator::getContainers(page)[1];
    Manipulator::addContainer(engine, ContainerSide::under);
    vlWinUi::Window& left = Manipulator::addContainer(engine, ContainerSide::left);
    Manipulator::setFixedHeight(left, 250);
    containers().createInterface(left, ContainerType::graph);
    CommonWindowInit::addNewTabTab(*tabs);
    CommonWindowInit::createNewTab(*tabs, true);
    tabs->renameTab(1, "Lights & \"more\" é");
    tabs->moveTab(1, 0);

    WindowLayout layout;
    layout.rectangle = vlWinUi::Rectangle{-20, 30, 900, 700};
    layout.selectedTab = 1;
    layout.tabs = ViewTabs::describe(*tabs);
    ASSERT_EQ(layout.tabs.size(), 2U);
    LayoutFile::save(layout);

    const auto kept = LayoutFile::load();
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->toText(), layout.toText());
    EXPECT_EQ(kept->rectangle, layout.rectangle);
    auto& again = *ComponentManager::createOrRetrieve<vlWinUi::TabWindow>("AGAIN");
    ViewTabs::create(again, kept->tabs);
    EXPECT_EQ(textOf(ViewTabs::describe(again)), textOf(layout.tabs));
    EXPECT_EQ(again.getTabLabel(0), "Lights & \"more\" é");
    EXPECT_EQ(Manipulator::getContainers(*again.getPage(1)).size(), 4U);
    EXPECT_THAT(EditorLogger::getInstance().getKeptLines(), testing::IsEmpty());
}

TEST_F(WindowLayoutTest, ABrokenFileIsOneLineAndTheDefaultLayout) {
    EXPECT_FALSE(LayoutFile::load());
    EXPECT_EQ(lineCount(), 0U);
    const auto tab = [](const std::string& content) {
        return R"({"formatVersion": 1, "tabs": [{"label": "A", )" + content + "}]}";
    };
    const std::string good = tab(R"("parts": [{"size": 1, "view": "Engine View"}])");
    write(good);
    EXPECT_TRUE(LayoutFile::load());
    std::string deep = R"({"size": 1})";
    for (int i = 0; i < 60; ++i)
        deep = R"({"size": 1, "parts": [)" + deep + "]}";
    std::string many = R"({"size": 1})";
    for (int i = 0; i < 300; ++i)
        many += R"(, {"size": 1})";
    std::size_t lines = 0;
    for (const std::string& text : {std::string("{"),
                                    std::string("[]"),
                                    std::string(),
                                    std::string(R"({"formatVersion": 2, "tabs": []})"),
                                    std::string(R"({"formatVersion": 1, "tabs": []})"),
                                    good.substr(0, good.size() - 1) + R"(, "selectedTab": 1})",
                                    tab(R"("parts": [])"),
                                    tab(R"("parts": [{"size": -1}])"),
                                    tab(R"("parts": [{"size": 1e30}])"),
                                    tab(R"("parts": [{"size": "wide"}])"),
                                    tab("\"parts\": [" + deep + "]"),
                                    tab("\"parts\": [" + many + "]"),
                                    std::string(LayoutFile::largestFile + 1, ' ')}) {
        write(text);
        EXPECT_FALSE(LayoutFile::load()) << text.substr(0, 200);
        EXPECT_EQ(lineCount(), ++lines) << text.substr(0, 200);
        EXPECT_THAT(EditorLogger::getInstance().getKeptLines().back(), HasSubstr("layout.json"));
        EXPECT_FALSE(fs::exists(LayoutFile::path()));
        EXPECT_EQ(fs::file_size(LayoutFile::path() + ".refused"), text.size());
    }
}

TEST_F(WindowLayoutTest, AViewThatNobodyKnowsLeavesItsContainerEmpty) {
    const auto layout = WindowLayout::fromText(
            R"({"formatVersion": 1, "tabs": [{"label": "A", "parts":
               [{"size": 1, "view": "Moon View"}, {"size": 2, "view": "Log View"}]}]})",
            "test");
    ASSERT_TRUE(layout);
    ViewTabs::create(*tabs, layout->tabs);
    const auto& lines = EditorLogger::getInstance().getKeptLines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "[Editor] There is no view called 'Moon View'.");
    EXPECT_EQ(Manipulator::getContainers(*tabs->getPage(0)).size(), 2U);
}

TEST_F(WindowLayoutTest, NothingIsReadOrWrittenUnlessEnabled) {
    ViewTabs::createFirst(*tabs);
    WindowLayout layout;
    layout.tabs = ViewTabs::describe(*tabs);
    LayoutFile::setEnabled(false);
    LayoutFile::save(layout);
    EXPECT_FALSE(fs::exists(LayoutFile::path()));
    write(layout.toText());
    EXPECT_FALSE(LayoutFile::load());
}

TEST_F(WindowLayoutTest, AResetLeavesTheFirstTabAlone) {
    ViewTabs::createFirst(*tabs);
    const std::string first = textOf(ViewTabs::describe(*tabs));
    CommonWindowInit::addNewTabTab(*tabs);
    CommonWindowInit::createNewTab(*tabs, true);
    Manipulator::addContainer(*Manipulator::getContainers(*tabs->getPage(0))[0],
                              ContainerSide::above);
    ViewTabs::reset(*tabs);
    EXPECT_EQ(textOf(ViewTabs::describe(*tabs)), first);
    EXPECT_EQ(tabs->getTabCount(), 2U);
    EXPECT_EQ(tabs->getSelected(), 0U);
    EXPECT_TRUE(tabs->isTabFixed(1));
}

} // namespace
} // namespace vlEditor
