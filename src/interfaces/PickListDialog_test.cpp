#include "core/EditorLogger.h"
#include "interfaces/PickListDialog.h"
#include "interfaces/PickLists.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/System.h>

#include <gmock/gmock.h>

namespace vlEditor {
namespace {

using testing::ElementsAre;
using vlWinUi::ComponentManager;

class PickListDialogTest : public testing::Test {
protected:
    PickListDialogTest() {
        vlCommon::ThreadBorder::claimUi();
        vlWinUi::SystemOptions options;
        options.headless = true;
        EXPECT_TRUE(vlWinUi::System::initialize(options));
        PickLists::getInstance().createFirstGroup();
        PickListDialog::createAll();
        list = PickLists::getInstance().find("BLEND_POP_UP_LIST");
        list->addEntries({"glass", "Smoke", "smog"});
        dialog = ComponentManager::get<vlWinUi::Window>("BLEND_POP_UP_LIST");
        box = ComponentManager::get<vlWinUi::ListBox>("BLEND_POP_UP_LISTLISTBOX");
        ok = ComponentManager::get<vlWinUi::Button>("BLEND_POP_UP_LISTOK_BUTTON");
        cancel = ComponentManager::get<vlWinUi::Button>("BLEND_POP_UP_LISTCANCEL_BUTTON");
    }
    ~PickListDialogTest() override {
        PickLists::destroyInstance();
        EditorLogger::destroyInstance();
        vlWinUi::System::kill();
    }
    void open(std::string_view selected = {}) {
        PickListDialog::open(
                "BLEND_POP_UP_LIST",
                *dialog,
                [this](const std::string& entry) { chosen.push_back(entry); },
                selected);
        vlWinUi::System::processEvents();
    }
    std::vector<std::string> shown() const {
        std::vector<std::string> labels;
        for (std::size_t i = 0; i < box->getEntryCount(); ++i)
            labels.push_back(box->getEntry(i).label);
        return labels;
    }

    PickList* list = nullptr;
    vlWinUi::Window* dialog = nullptr;
    vlWinUi::ListBox* box = nullptr;
    vlWinUi::Button* ok = nullptr;
    vlWinUi::Button* cancel = nullptr;
    std::vector<std::string> chosen;
};

TEST_F(PickListDialogTest, StandsAsItIsToBe) {
    open();
    EXPECT_EQ(dialog->getText(), "Blend States");
    EXPECT_EQ(dialog->getWidth(), 200U);
    EXPECT_EQ(dialog->getHeight(), 400U);
    for (const vlWinUi::Button* button : {ok, cancel}) {
        EXPECT_LE(button->getHeight(), 24U);
        EXPECT_GE(button->getHeight(), 20U);
        const int bottom = button->getPositionInScreen().y + static_cast<int>(button->getHeight());
        EXPECT_LE(bottom, dialog->getPositionInScreen().y + 400);
    }
    ASSERT_NE(PickListDialog::find("BLEND_POP_UP_LIST"), nullptr);
    const std::size_t made = ComponentManager::startingWith("").size();
    PickListDialog::createAll();
    EXPECT_EQ(ComponentManager::startingWith("").size(), made);
    EXPECT_FALSE(PickListDialog::open("NO_LIST", *dialog, nullptr));
}

TEST_F(PickListDialogTest, OkHandsTheSelectedEntryOverOnce) {
    open();
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_EQ(ok->getToolTip(), "Select an entry first.");
    ok->click();
    EXPECT_TRUE(dialog->isVisible());
    open("Smoke");
    ok->click();
    EXPECT_FALSE(dialog->isVisible());
    ok->click();
    EXPECT_THAT(chosen, ElementsAre("Smoke"));
    open("glass");
    cancel->click();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_THAT(chosen, ElementsAre("Smoke"));
}

TEST_F(PickListDialogTest, TheLastOpenerGetsTheAnswer) {
    open("glass");
    std::string other;
    PickListDialog::open(
            "BLEND_POP_UP_LIST",
            *dialog,
            [&](const std::string& entry) {
                other = entry;
                open("smog"); // chosen may open the list again
            },
            "Smoke");
    ok->click();
    EXPECT_EQ(other, "Smoke");
    EXPECT_TRUE(chosen.empty());
    ok->click();
    EXPECT_THAT(chosen, ElementsAre("smog"));
}

TEST_F(PickListDialogTest, AnEntryThatVanishesIsNotSelectedAnyMore) {
    open("Smoke");
    list->removeEntry("glass");
    vlWinUi::System::processEvents();
    EXPECT_EQ(box->getText(), "Smoke");
    list->renameEntry("Smoke", "Steam");
    vlWinUi::System::processEvents();
    EXPECT_THAT(shown(), ElementsAre("Steam", "smog"));
    EXPECT_FALSE(ok->isEnabled());
    list->addEntry("new");
    vlWinUi::System::processEvents();
    EXPECT_THAT(shown(), ElementsAre("Steam", "smog", "new"));
    open("new");
    list->removeEntry("new");
    ok->click();
    EXPECT_TRUE(chosen.empty());
}

TEST_F(PickListDialogTest, AHiddenOneShowsWhatChangedOnceItOpens) {
    for (int i = 0; i < 3; ++i)
        list->addEntry(std::to_string(i));
    vlWinUi::System::processEvents();
    EXPECT_EQ(box->getEntryCount(), 0U);
    open("1");
    EXPECT_EQ(box->getEntryCount(), 6U);
    EXPECT_EQ(box->getText(), "1");
}

TEST_F(PickListDialogTest, TypingNarrowsTheEntriesAndGuesses) {
    open("glass");
    PickListDialog& typed = *PickListDialog::find("BLEND_POP_UP_LIST");
    typed.setFilter("SMO");
    EXPECT_THAT(shown(), ElementsAre("Smoke", "smog"));
    EXPECT_EQ(box->getText(), "Smoke");
    EXPECT_EQ(dialog->getText(), "Blend States: SMO");
    typed.setFilter("smog");
    EXPECT_EQ(box->getText(), "smog");
    list->addEntry("more smog");
    vlWinUi::System::processEvents();
    EXPECT_THAT(shown(), ElementsAre("smog", "more smog"));
    typed.setFilter("x");
    EXPECT_FALSE(ok->isEnabled());
    open();
    EXPECT_EQ(shown().size(), 4U);
    EXPECT_FALSE(ok->isEnabled());
}

TEST_F(PickListDialogTest, AListMayEndBeforeItsDialog) {
    open("Smoke");
    PickLists::destroyInstance();
    ok->click();
    EXPECT_THAT(chosen, ElementsAre("Smoke"));
}

} // namespace
} // namespace vlEditor
