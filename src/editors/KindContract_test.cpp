// What every kind of resource promises, run over the list of all kinds through the widgets and
// messages that a person and a script use.
#include "editors/KindTest.h"

#include <vlWinUi/Button.h>
#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/Notificator.h>
#include <vlWinUi/TabWindow.h>

#include <random>
#include <set>

namespace vlEditor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using vlWinUi::Automation;
using vlWinUi::ComponentManager;
using vlWinUi::ComponentType;

/// What a person can do with the widgets of a kind's own panel, at random.
class RandomUse {
public:
    explicit RandomUse(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
    }

    /// The widgets of the window that make an edit.
    static std::vector<std::string> widgets(const AnyKind& kind, const std::string& base) {
        const std::set<std::string> common{base + "_ADD",
                                           base + "_DEL",
                                           base + std::string(kind.texts().renameButton),
                                           base + std::string(kind.texts().saveButton)};
        std::vector<std::string> found;
        for (const auto* component : ComponentManager::startingWith(base + "_")) {
            const ComponentType type = component->getType();
            const bool edits = type == ComponentType::CheckBox || type == ComponentType::ComboBox ||
                               type == ComponentType::Button || type == ComponentType::CodeEdit;
            const std::string& name = component->getComponentName();
            if (edits && component->isEnabled() && !common.contains(name)) found.push_back(name);
        }
        return found;
    }

    /// Number boxes get numbers first, so that their button has something to say.
    void fillNumbers(const std::string& base) {
        for (auto* component : ComponentManager::startingWith(base + "_")) {
            const std::string& name = component->getComponentName();
            const bool isNumber = component->getType() == ComponentType::EditBox &&
                                  name != base + "_NAME_EDIT" && name != base + "_FILTER";
            if (isNumber)
                component->setText(std::to_string(below(2000)) + "." + std::to_string(below(100)));
        }
    }

    std::mt19937& generator() { return random_; }

private:
    std::mt19937 random_;
};

class KindContract : public KindTest {
protected:
    /// Brings the tab that it is on to the front. False where it is hidden all the same.
    static bool reveal(const vlWinUi::Component& component) {
        for (const auto* page = &component; page != nullptr; page = page->getParent()) {
            auto* parent = page->getParent();
            if (parent == nullptr || parent->getType() != ComponentType::TabWindow) continue;
            auto& tabs = static_cast<vlWinUi::TabWindow&>(*parent);
            const auto index = tabs.indexOf(static_cast<const vlWinUi::Window&>(*page));
            if (index && tabs.getSelected() != index) tabs.select(*index);
        }
        vlWinUi::System::processEvents();
        return component.isVisible() && component.isEnabled();
    }
    /// Takes something from the pick list that a button has opened.
    static void pick(RandomUse& random) {
        for (const auto& list : PickLists::getInstance().all()) {
            const auto* dialog = ComponentManager::get(list->getName());
            if (dialog == nullptr || !dialog->isVisible()) continue;
            const std::vector<std::string> entries = items(list->getName() + "LISTBOX");
            if (!entries.empty())
                click(list->getName() + "LISTBOX", entries[random.below(entries.size())]);
            click(list->getName() + (entries.empty() ? "CANCEL_BUTTON" : "OK_BUTTON"));
        }
    }
    void use(const std::string& widget, RandomUse& random) const {
        const vlWinUi::Component& component = *ComponentManager::get(widget);
        if (!reveal(component)) return;
        switch (component.getType()) {
        case ComponentType::CheckBox: {
            const bool wanted = !Automation::isChecked(widget).value_or(false);
            KindTest::use([&](auto done) { Automation::check(widget, wanted, done); });
            break;
        }
        case ComponentType::ComboBox: {
            const auto labels = Automation::getItems(widget).value_or(Automation::Labels());
            if (labels.empty()) return;
            const std::string label = labels[random.below(labels.size())];
            KindTest::use([&](auto done) { Automation::select(widget, label, done); });
            break;
        }
        case ComponentType::CodeEdit:
            type(widget, "return " + std::to_string(random.below(1000)));
            ComponentManager::get(base() + "_NAME_EDIT")->focusWindow();
            settle();
            break;
        default:
            random.fillNumbers(base());
            click(widget);
            pick(random);
        }
        answer();
    }
    /// What a widget asks before it acts: questions with yes, and for no file.
    void answer() const {
        if (vlWinUi::Notificator::isOpen())
            KindTest::use([](auto done) { Automation::confirm(true, done); });
        bool isDone = false;
        Automation::choose("", [&](const auto&) { isDone = true; });
        while (!isDone)
            vlWinUi::System::processEvents();
    }
    /// Another edit of the resource that is selected.
    void editAtRandom(RandomUse& random) const {
        const auto widgets = RandomUse::widgets(kind(), base());
        ASSERT_FALSE(widgets.empty());
        use(widgets[random.below(widgets.size())], random);
    }
    void editMuch(const std::string& name, RandomUse& random) const {
        select(name);
        for (int i = 0; i < 12; ++i)
            editAtRandom(random);
    }
    std::string listName(const std::string& saved) const {
        const auto tree = vlExport::JsonExporter::importIntoTree(text(saved), saved);
        return tree && tree->size() > 0 ? tree->members().back().name : std::string();
    }
    void save(const std::string& name, const std::string& file) const {
        kind().commands().save(name, path(file));
        settle();
    }
    void load(const std::string& file) const {
        click(base() + "_ADD");
        type(texts().creationPart("LOAD_EDIT_"), path(file));
        key(texts().creationPart("LOAD_EDIT_"), 13);
    }
    std::string file(const std::string& stem) const {
        return stem + "." + std::string(texts().extension);
    }
    std::string told(const std::string& line) const { return "[Editor] " + line; }
};

TEST_P(KindContract, CreatesByNameListsItEverywhereAndTellsIt) {
    EXPECT_EQ(window->title(), texts().title);
    create("");
    EXPECT_TRUE(ComponentManager::get(texts().creationPart(""))->isVisible());
    create("a");
    EXPECT_FALSE(ComponentManager::get(texts().creationPart(""))->isVisible());
    const auto second = open();
    EXPECT_THAT(listed(), ElementsAre("a"));
    EXPECT_THAT(items(second->getRootName() + "_LIST"), ElementsAre("a"));
    for (const KindPickList& row : texts().pickLists) {
        if (row.name.empty()) continue;
        EXPECT_TRUE(PickLists::getInstance().find(row.name)->has(std::string(row.entryStart) + "a"))
                << row.name;
    }
    EXPECT_EQ(kind().record("a"), kind().engineRecord("a"));
    EXPECT_FALSE(kind().record("a").isNull());
    if (texts().tellsSuccess) {
        EXPECT_EQ(lines().back(), told(createdLine(texts(), "a")));
    }
    const auto before = lines();
    create("a");
    EXPECT_EQ(lines(), before);
    EXPECT_THAT(listed(), ElementsAre("a"));
}

TEST_P(KindContract, TakesStrangeNamesAndRefusesWhatTheEngineRefuses) {
    const std::vector<std::string> good{
            "it's \"quoted\"", "a/b\\c", "\xF0\x9F\x98\x80", " ", "$basename$"};
    for (const std::string& name : good)
        create(name);
    EXPECT_EQ(listed(), good);
    for (const std::string& name : good)
        erase(name);
    EXPECT_THAT(listed(), ElementsAre());
    for (const std::string& name : {std::string(10'000, 'x'), std::string("line\nfeed")}) {
        kind().commands().create(name);
        settle();
        EXPECT_EQ(lines().back(), told(couldNotCreateLine(texts(), name)));
    }
    EXPECT_TRUE(kind().names().empty());
}

// Each widget of the panel makes one change, which the engine, the record and a second window agree
// on, and which one undo takes back.
TEST_P(KindContract, EveryWidgetMakesOneChangeThatUndoTakesBack) {
    RandomUse random(7);
    create("a");
    const auto second = open();
    const std::string other = second->getRootName();
    click(other + "_LIST", "a");
    select("a");
    // One may bring forth others.
    std::set<std::string> used;
    const auto next = [&] {
        for (const std::string& widget : RandomUse::widgets(kind(), base()))
            if (used.insert(widget).second) return widget;
        return std::string();
    };
    for (std::string widget = next(); !widget.empty(); widget = next()) {
        SCOPED_TRACE(widget);
        const std::string before = declaration("a");
        const std::size_t depth = History::getInstance().getDepth();
        use(widget, random);
        expectInStep();
        const std::string after = declaration("a");
        if (after == before) continue;
        EXPECT_EQ(History::getInstance().getDepth(), depth + 1);
        const std::string twin = other + widget.substr(base().size());
        EXPECT_EQ(Automation::getText(twin).value_or(""), Automation::getText(widget).value_or(""));
        undo();
        EXPECT_EQ(declaration("a"), before);
        expectInStep();
        redo();
        EXPECT_EQ(declaration("a"), after);
        expectInStep();
    }
}

TEST_P(KindContract, ARenameOverAUsedNameReplacesItsBearerOnBothSides) {
    RandomUse random(11);
    create("a");
    create("b");
    editMuch("a", random);
    const State before = state();
    const vlExport::Node settings = settingsOf("a");
    rename("a", "b");
    EXPECT_THAT(listed(), ElementsAre("b"));
    EXPECT_TRUE(kind().engineRecord("a").isNull());
    EXPECT_EQ(settingsOf("b"), settings);
    expectInStep();
    undo();
    EXPECT_EQ(state(), before);
    expectInStep();
    redo();
    EXPECT_THAT(kind().names(), ElementsAre("b"));
    rename("b", "");
    EXPECT_THAT(listed(), ElementsAre("b"));
}

TEST_P(KindContract, ErasesWithItsWindowOpenAndBringsItBack) {
    RandomUse random(13);
    create("a");
    create("b");
    editMuch("a", random);
    const std::string settings = declaration("a");
    click(base() + "_LIST", "a");
    key(base() + "_LIST", 46);
    KindTest::use([](auto done) { Automation::confirm(false, done); });
    EXPECT_THAT(listed(), ElementsAre("a", "b"));
    erase("a");
    EXPECT_THAT(listed(), ElementsAre("b"));
    EXPECT_TRUE(kind().engineRecord("a").isNull());
    for (const KindPickList& row : texts().pickLists) {
        if (row.name.empty()) continue;
        EXPECT_FALSE(
                PickLists::getInstance().find(row.name)->has(std::string(row.entryStart) + "a"));
    }
    undo();
    EXPECT_EQ(declaration("a"), settings);
    expectInStep();
    redo();
    EXPECT_TRUE(kind().record("a").isNull());
}

TEST_P(KindContract, SavesAndLoadsByteForByteAndInPlace) {
    RandomUse random(17);
    create("a");
    editMuch("a", random);
    EXPECT_TRUE(kind().isChanged("a"));
    save("a", file("first"));
    EXPECT_FALSE(kind().isChanged("a"));
    if (texts().tellsSuccess) {
        EXPECT_EQ(lines().back(), told(savedLine(texts(), "a", path(file("first")))));
    }
    const std::string saved = declaration("a");
    do
        editMuch("a", random);
    while (!kind().isChanged("a"));
    const std::string edited = declaration("a");
    load(file("first"));
    EXPECT_THAT(listed(), ElementsAre("a"));
    EXPECT_EQ(declaration("a"), saved);
    EXPECT_FALSE(kind().isChanged("a"));
    expectInStep();
    if (texts().tellsSuccess) {
        EXPECT_EQ(lines().back(), told(loadedLine(texts(), "a")));
    }
    save("a", file("first_again"));
    std::string again = text(file("first_again"));
    // Where a kind keeps text beside the declaration, it is named after it.
    for (std::size_t at; (at = again.find("first_again")) != std::string::npos;)
        again.replace(at, 11, "first");
    EXPECT_EQ(text(file("first")), again);
    undo();
    EXPECT_EQ(declaration("a"), edited);
    EXPECT_TRUE(kind().isChanged("a"));
}

TEST_P(KindContract, WhatCannotBeLoadedOrSavedGivesItsLineAndChangesNothing) {
    create("a");
    const State before = state();
    std::filesystem::create_directory(path("folder"));
    for (const char* name : {"missing", "folder"}) {
        const std::size_t count = lines().size();
        load(name);
        ASSERT_GT(lines().size(), count);
        EXPECT_THAT(lines().back(), HasSubstr(name));
    }
    std::filesystem::create_directory(path(file("folder")));
    save("a", file("folder"));
    EXPECT_EQ(lines().back(), told(notSavedLine(texts(), "a", path(file("folder")))));
    save("a", "nowhere/" + file("x"));
    EXPECT_EQ(lines().back(), told(notSavedLine(texts(), "a", path("nowhere/" + file("x")))));
    EXPECT_EQ(state(), before);
}

TEST_P(KindContract, WhatGoesWhileItsFileIsChosenDoesNotComeBack) {
    create("a");
    click(base() + std::string(texts().saveButton));
    kind().commands().erase("a");
    settle();
    KindTest::use([&](auto done) { Automation::choose(path(file("a")), done); });
    EXPECT_EQ(text(file("a")), "");
    EXPECT_TRUE(kind().engineRecord("a").isNull());
    EXPECT_THAT(lines().back(), HasSubstr("Could not save"));
}

TEST_P(KindContract, LoadsWhatIsGoodOfAFaultyFile) {
    create("a");
    const std::string good = declaration("a");
    save("a", file("a"));
    const std::string list = listName(file("a"));
    const auto named = [&](const std::string& name) {
        std::string one = good;
        one.replace(one.find("\"a\""), 3, '"' + name + '"');
        return one;
    };
    write(file("faulty"),
          "{\"formatVersion\": 1, \"" + list + "\": [" + named("b") + ", " + named("b") +
                  ", {\"name\": 5}, 7, {\"name\": \"\"}, {\"nameless\": true}, " + named("c") +
                  "]}");
    const std::size_t count = lines().size();
    load(file("faulty"));
    EXPECT_THAT(kind().names(), ElementsAre("a", "b", "c"));
    expectInStep();
    const auto told = lines();
    EXPECT_GE(told.size(), count + 5);
    EXPECT_THAT(told, Contains(HasSubstr("is in this file already")));
    undo();
    EXPECT_THAT(kind().names(), ElementsAre("a"));
}

TEST_P(KindContract, DuplicatesCopiesAndPastes) {
    RandomUse random(19);
    create("a");
    create("plain");
    editMuch("a", random);
    select("a");
    key(base() + "_LIST", 'D', {"ctrl"});
    key(base() + "_LIST", 'D', {"ctrl"});
    EXPECT_THAT(listed(), ElementsAre("a", "plain", "a_2", "a_3"));
    EXPECT_EQ(settingsOf("a_3"), settingsOf("a"));
    key(base() + "_LIST", 'C', {"ctrl"});
    select("plain");
    key(base() + "_LIST", 'V', {"ctrl"});
    EXPECT_EQ(settingsOf("plain"), settingsOf("a"));
    expectInStep();
    const State before = state();
    kind().commands().paste("plain", "no declaration");
    settle();
    EXPECT_EQ(lines().back(),
              told("The clipboard holds no settings of a " + texts().thing() + "."));
    EXPECT_EQ(state(), before);
}

TEST_P(KindContract, SeveralSelectedAreEditedAsOneGesture) {
    RandomUse random(23);
    for (const char* name : {"a", "b", "c"})
        create(name);
    editMuch("a", random);
    click(base() + "_LIST", "a");
    key(base() + "_LIST", 'A', {"ctrl"});
    const State before = state();
    const std::size_t depth = History::getInstance().getDepth();
    for (const std::string& widget : RandomUse::widgets(kind(), base())) {
        // Texts are edited one at a time.
        if (ComponentManager::get(widget)->getType() == ComponentType::CodeEdit) continue;
        use(widget, random);
        expectInStep();
    }
    while (History::getInstance().getDepth() > depth)
        undo();
    EXPECT_EQ(state(), before);
    key(base() + "_LIST", 46);
    KindTest::use([](auto done) { Automation::confirm(true, done); });
    EXPECT_THAT(listed(), ElementsAre());
    EXPECT_EQ(History::getInstance().getDepth(), depth + 1);
    undo();
    EXPECT_EQ(state(), before);
    expectInStep();
}

// What the filter hides is out of a person's sight, and out of reach of what they do.
TEST_P(KindContract, WhatTheFilterHidesIsLeftAlone) {
    create("one");
    create("two");
    const auto nameBox = [this] { return ComponentManager::get(base() + "_NAME_EDIT")->getText(); };
    type(base() + "_FILTER", "one");
    EXPECT_EQ(nameBox(), "");
    type(base() + "_NAME_EDIT", "other");
    click(base() + std::string(texts().renameButton));
    click(base() + "_DEL");
    EXPECT_FALSE(vlWinUi::Notificator::isOpen());
    EXPECT_THAT(kind().names(), ElementsAre("one", "two"));

    rename("one", "three");
    EXPECT_THAT(kind().names(), ElementsAre("three", "two"));
    EXPECT_EQ(nameBox(), "") << "nothing is selected any more";
    create("four");
    EXPECT_EQ(ComponentManager::get(base() + "_FILTER")->getText(), "");
    EXPECT_EQ(nameBox(), "four");
}

TEST_P(KindContract, TheWindowOfAReplacedResourceShowsWhatReplacedIt) {
    RandomUse random(37);
    create("a");
    editMuch("a", random);
    create("b");
    auto second = open();
    const auto shownIn = [](const std::string& root) {
        std::string all;
        for (const auto* component : ComponentManager::startingWith(root + "_")) {
            const ComponentType type = component->getType();
            const std::string& name = component->getComponentName();
            if (type == ComponentType::EditBox || type == ComponentType::CodeEdit ||
                type == ComponentType::ComboBox)
                all += component->getText() + '|';
            if (type == ComponentType::CheckBox)
                all += Automation::isChecked(name).value_or(false) ? "on|" : "off|";
        }
        return all;
    };
    click(second->getRootName() + "_LIST", "b");
    select("a");
    rename("a", "b");
    auto fresh = open();
    click(fresh->getRootName() + "_LIST", "b");
    EXPECT_EQ(shownIn(second->getRootName()), shownIn(fresh->getRootName()));
}

TEST_P(KindContract, ManySelectedAreShownWhenAllHaveChanged) {
    RandomUse random(41);
    for (int i = 0; i < 40; ++i)
        kind().commands().create(std::string("n").append(std::to_string(i)));
    settle();
    select("n0");
    key(base() + "_LIST", 'A', {"ctrl"});
    const std::size_t depth = History::getInstance().getDepth();
    for (const std::string& widget : RandomUse::widgets(kind(), base())) {
        if (ComponentManager::get(widget)->getType() != ComponentType::CheckBox) continue;
        const bool was = Automation::isChecked(widget).value_or(false);
        use(widget, random);
        expectInStep();
        undo();
        EXPECT_EQ(Automation::isChecked(widget).value_or(false), was) << widget;
    }
    EXPECT_EQ(History::getInstance().getDepth(), depth);
    key(base() + "_LIST", 46);
    KindTest::use([](auto done) { Automation::confirm(true, done); });
    EXPECT_EQ(ComponentManager::get(base() + "_NAME_EDIT")->getText(), "");
}

// Whatever a person does, undo leads back through the very states that there were, and redo forth.
TEST_P(KindContract, UndoAndRedoLeadThroughTheStatesThatThereWere) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        SCOPED_TRACE(seed);
        RandomUse random(seed);
        History& history = History::getInstance();
        std::vector<State> states{state()};
        const std::vector<std::string> pool{"a", "b", "c", "d"};
        const auto anyName = [&] { return pool[random.below(pool.size())]; };
        for (int step = 0; step < 40; ++step) {
            const auto names = kind().names();
            const std::size_t depth = history.getDepth();
            const std::size_t what = random.below(10);
            if (names.empty() || what == 0) {
                create(anyName());
            } else {
                const std::string name = names[random.below(names.size())];
                select(name);
                if (what == 1) rename(name, anyName());
                if (what == 2) erase(name);
                if (what == 3) key(base() + "_LIST", 'D', {"ctrl"});
                if (what > 3) editAtRandom(random);
            }
            expectInStep();
            if (history.getDepth() > depth) states.push_back(state());
            ASSERT_EQ(state(), states.back());
        }
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            undo();
            ASSERT_EQ(state(), states[i]) << "undone to " << i;
            expectInStep();
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            redo();
            ASSERT_EQ(state(), states[i]) << "made again to " << i;
            expectInStep();
        }
        for (const std::string& name : kind().names())
            kind().commands().erase(name);
        settle();
        history.clear();
    }
}

TEST_P(KindContract, AnUndoKeepsWhatCameBetween) {
    RandomUse random(29);
    create("a");
    editMuch("a", random);
    const State edited = state();
    // Both are asked for before either has come home.
    kind().commands().rename("a", "b");
    History::getInstance().undo();
    kind().commands().duplicate("b");
    settle();
    expectInStep();
    while (History::getInstance().canUndo())
        undo();
    EXPECT_TRUE(state().empty());
}

// A resource may take a name that an undo needs without being in the history, as a script's do.
TEST_P(KindContract, AnUndoThatReplacesSomethingCanBeUndone) {
    RandomUse random(31);
    const auto slipIn = [&](const std::string& name) {
        History& history = History::getInstance();
        const std::size_t depth = history.getDepth();
        create("stranger");
        editMuch("stranger", random);
        kind().commands().rename("stranger", name);
        settle();
        const State slipped = state();
        while (history.getDepth() > depth) {
            // Undone in the history alone.
            history.undo();
            MessageOrchestrator::getInstance().drainGraphics();
            MessageOrchestrator::getInstance().drainUi();
            MessageOrchestrator::getInstance().discard();
        }
        EXPECT_EQ(state(), slipped);
        return slipped;
    };
    create("a");
    rename("a", "b");
    const State renamed = slipIn("a");
    undo(); // b would be called a again
    EXPECT_THAT(kind().names(), ElementsAre("a"));
    expectInStep();
    undo();
    EXPECT_EQ(state(), renamed);
    expectInStep();

    erase("a");
    const State again = slipIn("a");
    undo(); // the erased one would come again
    expectInStep();
    undo();
    EXPECT_EQ(state(), again);
    expectInStep();
}

INSTANTIATE_TEST_SUITE_P(AllKinds,
                         KindContract,
                         testing::ValuesIn(allKinds().begin(), allKinds().end()),
                         [](const auto& kind) { return std::string(kind.param->texts().kind); });

} // namespace
} // namespace vlEditor
