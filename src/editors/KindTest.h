#pragma once
#include "core/EditorLogger.h"
#include "core/MessageOrchestrator.h"
#include "editors/AllKinds.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/PickLists.h"
#include "interfaces/history/History.h"

#include <vlCommon/ThreadBorder.h>
#include <vlExport/JsonExporter.h>
#include <vlGraphics/System.h>
#include <vlKestrion/System.h>
#include <vlResources/ResourceManager.h>
#include <vlWinUi/Automation.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>
#include <vlWinUi/Window.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace vlEditor {

/** A kind with a real engine and a real window, both threads' halves run in turn by the test. */
class KindTest : public testing::TestWithParam<const AnyKind*> {
protected:
    /// A resource's declaration by name, as text.
    using State = std::map<std::string, std::string>;

    static void SetUpTestSuite() {
        vlCommon::ThreadBorder::claimUi();
        vlGraphics::Configuration configuration;
        configuration.presenting = false;
        const auto started = vlKestrion::System::initialize(configuration);
        ASSERT_TRUE(started) << started.error().message;
    }
    static void TearDownTestSuite() {
        EXPECT_EQ(vlGraphics::System::getValidationMessageCount(), 0U);
        vlKestrion::System::shutdown();
    }

    KindTest() : folder_(std::filesystem::temp_directory_path() / "vlEditor_kinds_XXXXXX") {
        std::string name = folder_.string();
        if (::mkdtemp(name.data()) == nullptr) ADD_FAILURE() << "no folder " << name;
        folder_ = name;
        vlResources::ResourceManager::getInstance().setWorkingPath(folder_.string());
        vlWinUi::SystemOptions options;
        options.headless = true;
        options.nativeDialogs = false;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
        PickLists::getInstance().createFirstGroup();
        PickLists::getInstance().createSecondGroup();
        PickListDialog::createAll();
        window = open();
    }
    ~KindTest() override {
        for (const AnyKind* kind : allKinds()) {
            for (const std::string& name : kind->names())
                kind->commands().erase(name);
        }
        settle();
        window.reset();
        History::destroyInstance();
        PickLists::destroyInstance();
        EditorLogger::destroyInstance();
        vlWinUi::System::kill();
        std::filesystem::remove_all(folder_);
    }

    static const AnyKind& kind() { return *GetParam(); }
    static const KindTexts& texts() { return kind().texts(); }
    static std::unique_ptr<Interface> open() {
        auto made = kind().createInterface();
        auto& root = *vlWinUi::ComponentManager::get<vlWinUi::Window>(made->getRootName());
        root.setRectangle({0, 0, 1600, 1200});
        root.load();
        vlWinUi::System::processEvents();
        return made;
    }

    /// Until neither thread has anything to do.
    static void settle() {
        auto& queues = MessageOrchestrator::getInstance();
        for (std::uint64_t before = ~std::uint64_t{0}; before != queues.getPostedCount();) {
            before = queues.getPostedCount();
            queues.drainGraphics();
            queues.drainUi();
            vlWinUi::System::processEvents();
        }
    }
    /// Does something as a person and waits until it was dealt with.
    template <class Act> static void use(Act act) {
        bool isDone = false;
        act([&](const vlCommon::Result<>& result) {
            isDone = true;
            EXPECT_TRUE(result) << (result ? "" : result.error().message);
        });
        for (int turn = 0; turn < 1000 && !isDone; ++turn)
            vlWinUi::System::processEvents();
        EXPECT_TRUE(isDone);
        settle();
    }
    static void click(const std::string& name, const std::string& item = {}) {
        using vlWinUi::Automation;
        use([&](auto done) { Automation::click(name, Automation::Button::Left, item, done); });
    }
    static void type(const std::string& name, const std::string& text) {
        use([&](auto done) { vlWinUi::Automation::type(name, text, done); });
    }
    static void
    key(const std::string& name, std::uint32_t code, std::vector<std::string> held = {}) {
        use([&](auto done) { vlWinUi::Automation::key(name, code, held, done); });
    }

    const std::string& base() const { return window->getRootName(); }
    void select(const std::string& name) const { click(base() + "_LIST", name); }
    void create(const std::string& name) const {
        click(base() + "_ADD");
        type(texts().creationPart("NAME_EDIT_"), name);
        key(texts().creationPart("NAME_EDIT_"), 13);
    }
    void erase(const std::string& name) const {
        select(name);
        click(base() + "_DEL");
        use([](auto done) { vlWinUi::Automation::confirm(true, done); });
    }
    void rename(const std::string& name, const std::string& newName) const {
        select(name);
        type(base() + "_NAME_EDIT", newName);
        click(base() + std::string(texts().renameButton));
    }
    static void undo() {
        History::getInstance().undo();
        settle();
    }
    static void redo() {
        History::getInstance().redo();
        settle();
    }

    std::vector<std::string> listed() const { return items(base() + "_LIST"); }
    static std::vector<std::string> items(const std::string& name) {
        const auto* list = vlWinUi::ComponentManager::get<vlWinUi::ListBox>(name);
        std::vector<std::string> labels;
        for (std::size_t i = 0; i < list->getEntryCount(); ++i)
            labels.push_back(list->getEntry(i).label);
        return labels;
    }
    static std::vector<std::string> lines() {
        const auto& kept = EditorLogger::getInstance().getKeptLines();
        return {kept.begin(), kept.end()};
    }
    static std::string declaration(const std::string& name) {
        return vlExport::JsonExporter::exportTreeIntoString(kind().declaration(name));
    }
    static vlExport::Node settingsOf(const std::string& name) {
        vlExport::Node tree = kind().declaration(name);
        tree.remove("name");
        return tree;
    }
    static std::string shown(const vlExport::Node& tree) {
        return vlExport::JsonExporter::exportTreeIntoString(tree);
    }
    static State state() {
        State all;
        for (const std::string& name : kind().names())
            all.emplace(name, declaration(name));
        return all;
    }
    /// The UI's record says what the engine has.
    static void expectInStep() {
        for (const std::string& name : kind().names())
            EXPECT_EQ(shown(asInEngine(kind().record(name))),
                      shown(asInEngine(kind().engineRecord(name))));
    }
    /// Where a record shows something otherwise than the engine has it, the latter stands beside it
    /// in a member of its own.
    static vlExport::Node asInEngine(vlExport::Node tree) {
        if (const vlExport::Node* engine = tree.find("engine")) {
            const vlExport::Node kept = *engine;
            for (const vlExport::Member& member : kept.members())
                tree.remove(member.name);
        }
        for (vlExport::Node& element : tree.elements())
            element = asInEngine(element);
        for (vlExport::Member& member : tree.members())
            member.value = asInEngine(member.value);
        return tree;
    }

    std::string path(const std::string& file) const { return (folder_ / file).string(); }
    std::string text(const std::string& file) const {
        std::ostringstream content;
        content << std::ifstream(folder_ / file).rdbuf();
        return content.str();
    }
    void write(const std::string& file, const std::string& content) const {
        std::ofstream(folder_ / file) << content;
    }

    std::unique_ptr<Interface> window;

private:
    std::filesystem::path folder_;
};

} // namespace vlEditor
