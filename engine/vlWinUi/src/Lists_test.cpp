#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/CheckBox.h>
#include <vlWinUi/ComboBox.h>
#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/TreeView.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <gmock/gmock.h>

namespace vlWinUi {
namespace {

using ComboBoxTest = test::WinUiTest;

TEST_F(ComboBoxTest, NothingIsSelectedUntilSomethingIs) {
    auto& combo = make<ComboBox>("COMBO");
    combo.addEntry("A", 7);
    combo.addEntry("B");
    EXPECT_EQ(combo.getSelectedIndex(), std::nullopt);
    EXPECT_TRUE(combo.selectByLabel("A"));
    EXPECT_EQ(std::any_cast<int>(combo.getEntry(0).data), 7);
    EXPECT_FALSE(combo.selectByLabel("C"));
    EXPECT_EQ(combo.getText(), "A");
}

TEST_F(ComboBoxTest, TheSelectionStaysWithItsEntry) {
    auto& combo = make<ComboBox>("COMBO");
    for (const char* label : {"A", "B", "C"})
        combo.addEntry(label);
    combo.selectByLabel("B");
    combo.removeEntry("A");
    EXPECT_EQ(combo.getText(), "B");
    combo.renameEntry("B", "Bee & Bumble");
    EXPECT_EQ(combo.getText(), "Bee & Bumble");
    combo.removeEntry("Bee & Bumble");
    EXPECT_EQ(combo.getSelectedEntry(), nullptr);
    EXPECT_EQ(combo.getEntryCount(), 1U);
}

TEST_F(ComboBoxTest, OnlyThePersonsChoiceIsTold) {
    auto& combo = make<ComboBox>("COMBO");
    std::vector<std::size_t> told;
    combo.setSelectionCallback([&](std::size_t index) { told.push_back(index); });
    combo.setEntries({{"A", {}}, {"B", {}}});
    combo.select(0);
    test::press(combo, Qt::Key_Down);
    EXPECT_EQ(told, std::vector<std::size_t>{1});
}

TEST_F(ComboBoxTest, MixedValuesAreShownUntilAChoice) {
    auto& combo = make<ComboBox>("COMBO");
    int told = 0;
    combo.setSelectionCallback([&](std::size_t) { ++told; });
    combo.setEntries({{"A", {}}, {"B", {}}});
    combo.select(1);
    combo.setMixed();
    EXPECT_TRUE(combo.isMixed());
    EXPECT_EQ(combo.getText(), "");
    combo.setEntries({{"A", {}}, {"B", {}}, {"C", {}}});
    combo.removeEntry("C");
    EXPECT_TRUE(combo.isMixed());
    EXPECT_EQ(combo.native().widget->accessibleDescription(), "Mixed values");
    EXPECT_EQ(told, 0);
    test::press(combo, Qt::Key_Down);
    EXPECT_FALSE(combo.isMixed());
    EXPECT_EQ(combo.getText(), "A");
    EXPECT_EQ(told, 1);
    combo.setMixed();
    combo.select(0);
    EXPECT_FALSE(combo.isMixed());
    EXPECT_EQ(combo.native().widget->accessibleDescription(), "");
}

using ListBoxTest = test::WinUiTest;

TEST_F(ListBoxTest, TheSelectionStaysWithItsEntryAndOnlyThePersonsIsTold) {
    auto& list = make<ListBox>("LIST");
    int told = 0;
    list.setSelectionCallback([&](auto) { ++told; });
    for (const char* label : {"A", "B", "C"})
        list.addEntry(label, std::string(label));
    list.selectByLabel("B");
    list.removeEntry("A");
    EXPECT_EQ(list.getSelectedIndex(), 0U);
    EXPECT_EQ(std::any_cast<std::string>(list.getEntry(0).data), "B");
    list.removeEntry("B");
    EXPECT_EQ(list.getSelectedEntry(), nullptr);
    EXPECT_EQ(told, 0);
    test::press(list, Qt::Key_Down);
    EXPECT_EQ(list.getText(), "C");
    EXPECT_EQ(told, 1);
}

TEST_F(ListBoxTest, AFilterHidesLinesAndKeepsTheSelection) {
    auto& list = make<ListBox>("LIST");
    list.setEntries({{"Rust", {}}, {"Stone", {}}, {"Trust", {}}});
    list.selectByLabel("Stone");
    list.setFilter("RUST");
    EXPECT_EQ(list.getShownCount(), 2U);
    EXPECT_EQ(list.getText(), "Stone");
    list.setFilter("");
    EXPECT_EQ(list.getShownCount(), 3U);
}

TEST_F(ListBoxTest, AHundredThousandLinesAreShownAndFound) {
    auto& list = make<ListBox>("LIST");
    list.setFollowEnd(true);
    list.setVisible(true);
    for (int i = 0; i < 100'000; ++i)
        list.addEntry("line " + std::to_string(i));
    System::processEvents();
    EXPECT_EQ(list.getEntryCount(), 100'000U);
    EXPECT_TRUE(list.selectByLabel("line 99999"));
    EXPECT_EQ(list.getSelectedIndex(), 99'999U);
}

TEST_F(ListBoxTest, TheFirstOfALabelCountsWhateverComesAndGoes) {
    auto& list = make<ListBox>("LIST");
    for (const int number : {0, 1, 2, 3})
        list.addEntry(number % 2 == 0 ? "A" : "B", number);
    EXPECT_EQ(list.find("B"), 1U);
    list.removeEntry("A");
    EXPECT_EQ(list.find("A"), 1U);
    EXPECT_EQ(std::any_cast<int>(list.getEntry(1).data), 2);
    list.renameEntry("B", "C");
    EXPECT_EQ(list.find("B"), 2U);
    EXPECT_EQ(list.find("C"), 0U);
    list.setEntries({{"B", {}}});
    EXPECT_EQ(list.find("B"), 0U);
    EXPECT_EQ(list.find("A"), std::nullopt);
}

TEST_F(ListBoxTest, AMarkStaysWithItsEntryAndSaysWhy) {
    auto& list = make<ListBox>("LIST");
    list.setEntries({{"Rust", {}}, {"Stone", {}}});
    EXPECT_TRUE(list.setEntryMark("Stone", true, "Not saved yet"));
    EXPECT_FALSE(list.setEntryMark("Sand", true));
    list.renameEntry("Stone", "Sand");
    list.removeEntry("Rust");
    EXPECT_TRUE(list.isEntryMarked("Sand"));
    EXPECT_EQ(list.getEntry(0).label, "Sand");
    const auto& view = widgetAs<QAbstractItemView>(list);
    const QModelIndex row = view.model()->index(0, 0);
    EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole), "Not saved yet");
    const QImage marked = list.native().widget->grab().toImage();
    EXPECT_TRUE(list.setEntryEmphasis("Sand", Emphasis::Error, "Does not hold"));
    EXPECT_EQ(list.getEntry(0).emphasis, Emphasis::Error);
    EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole), "Does not hold\nNot saved yet");
    list.setEntryEmphasis("Sand", Emphasis::None, "No reason");
    EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole), "Not saved yet");
    list.setEntryMark("Sand", false);
    EXPECT_FALSE(list.isEntryMarked("Sand"));
    EXPECT_FALSE(row.data(Qt::AccessibleDescriptionRole).isValid());
    EXPECT_NE(marked, list.native().widget->grab().toImage());
}

TEST_F(ListBoxTest, OfSeveralSelectedLinesTheOneThatTheKeyboardIsOnCounts) {
    auto& list = make<ListBox>("LIST");
    list.setMultiSelection(true);
    list.setEntries({{"A", {}}, {"B", {}}, {"C", {}}, {"D", {}}});
    std::vector<std::optional<std::size_t>> told;
    list.setSelectionCallback([&](auto index) { told.push_back(index); });
    list.setSelectedIndices({2, 0, 1, 9});
    EXPECT_EQ(list.getSelectedIndices(), (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(list.getText(), "C");
    list.removeEntry("C");
    EXPECT_EQ(list.getText(), "A");
    list.renameEntry("A", "a");
    list.setFilter("b");
    list.setFilter("");
    EXPECT_EQ(list.getText(), "a");
    EXPECT_EQ(list.getSelectedIndices().size(), 2U);
    list.setEntries({{"D", {}}, {"B", {}}, {"a", {}}});
    EXPECT_EQ(list.getSelectedIndices(), (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(list.getSelectedLineCount(), 2U);
    EXPECT_FALSE(list.isSelected(0));
    EXPECT_TRUE(list.isSelected(2));
    EXPECT_FALSE(list.isSelected(3));
    list.select(0);
    EXPECT_EQ(list.getSelectedIndices(), std::vector<std::size_t>{0});
    EXPECT_TRUE(told.empty());
    QKeyEvent more(QEvent::KeyPress, Qt::Key_Down, Qt::ShiftModifier);
    QApplication::sendEvent(list.native().widget, &more);
    EXPECT_EQ(list.getText(), "B");
    EXPECT_EQ(list.getSelectedIndices().size(), 2U);
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back(), 1U);
}

TEST_F(ListBoxTest, ManyLinesGoOneByOneWithTheListInView) {
    auto& list = make<ListBox>("LIST");
    list.setMultiSelection(true);
    list.setVisible(true);
    constexpr int most = 10'000;
    for (int i = 0; i < most; ++i) {
        list.addEntry("line " + std::to_string(i));
        list.select(static_cast<std::size_t>(i));
    }
    System::processEvents();
    EXPECT_EQ(list.getText(), "line 9999");
    list.selectAll();
    // Neither from an end nor in a row: 7919 has no factor in common with their number.
    for (int i = 0; i < most; ++i)
        EXPECT_TRUE(list.removeEntry("line " + std::to_string(i * 7919 % most)));
    System::processEvents();
    EXPECT_EQ(list.getEntryCount(), 0U);
    EXPECT_EQ(list.getSelectedEntry(), nullptr);
}

using TreeViewTest = test::WinUiTest;

TEST_F(TreeViewTest, ItemsSetAnewKeepExpansionAndSelectionById) {
    auto& tree = make<TreeView>("TREE");
    int told = 0;
    tree.setSelectionCallback([&](const auto&) { ++told; });
    tree.setItems({{3, 2, "leaf"}, {1, 0, "root"}, {2, 1, "node"}});
    EXPECT_TRUE(tree.isExpanded(1));
    EXPECT_FALSE(tree.isExpanded(2));
    tree.setExpanded(1, false);
    tree.select({2});
    EXPECT_TRUE(tree.isExpanded(1));
    tree.setExpanded(2, true);
    tree.setItems({{1, 0, "root"}, {2, 1, "renamed"}, {3, 2, "leaf"}, {4, 2, "new"}});
    EXPECT_TRUE(tree.isExpanded(2));
    EXPECT_EQ(tree.getSelection(), std::vector<std::uint64_t>{2});
    EXPECT_EQ(tree.getText(), "renamed");
    EXPECT_EQ(told, 0);
}

TEST_F(TreeViewTest, ItemsMoveButNeverBelowThemselves) {
    auto& tree = make<TreeView>("TREE");
    for (const TreeItem& item : {TreeItem{1, 0, "a"}, TreeItem{2, 1, "b"}, TreeItem{3, 0, "c"}})
        tree.addItem(item);
    EXPECT_FALSE(tree.moveItem(1, 2));
    EXPECT_TRUE(tree.moveItem(1, 3));
    EXPECT_EQ(tree.getChildren(3), std::vector<std::uint64_t>{1});
    EXPECT_EQ(tree.getChildren(1), std::vector<std::uint64_t>{2});
    EXPECT_TRUE(tree.removeItem(3));
    EXPECT_EQ(tree.getItemCount(), 0U);
}

TEST_F(TreeViewTest, UnusableItemsAreLeftOutWithALine) {
    auto& tree = make<TreeView>("TREE");
    tree.addItem({1, 9, "orphan"});
    tree.setItems({{1, 0, "a"}, {1, 0, "twice"}, {5, 6, "ring"}, {6, 5, "ring"}, {0, 0, "zero"}});
    EXPECT_EQ(tree.getItemCount(), 1U);
    EXPECT_EQ(tree.getLabel(1), "a");
    EXPECT_EQ(lines.size(), 5U);
}

using EditBoxTest = test::WinUiTest;

TEST_F(EditBoxTest, KeysAreToldAsVirtualKeys) {
    auto& edit = make<EditBox>("EDIT");
    std::vector<std::uint32_t> keys;
    edit.setKeyDownCallback([&](std::uint32_t key) { keys.push_back(key); });
    for (const int key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down})
        test::press(edit, key);
    EXPECT_EQ(keys, (std::vector<std::uint32_t>{13, 27, 38, 40}));
}

TEST_F(EditBoxTest, WhatIsOnlyLookedAtShowsItsBeginning) {
    auto& edit = make<EditBox>("EDIT");
    edit.setText("0.3333333432674408");
    EXPECT_EQ(widgetAs<QLineEdit>(edit).cursorPosition(), 0);
}

// Undo belongs to what is being typed, and to the shortcut when that has been entered.
TEST_F(EditBoxTest, UndoIsTheEditsOwnWhileSomethingIsTyped) {
    auto& edit = make<EditBox>("EDIT");
    const auto takesUndo = [&] {
        QKeyEvent asked(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier, "\x1a");
        asked.ignore();
        QApplication::sendEvent(edit.native().widget, &asked);
        return asked.isAccepted();
    };
    edit.setText("1");
    EXPECT_FALSE(takesUndo());
    QKeyEvent digit(QEvent::KeyPress, Qt::Key_2, Qt::NoModifier, "2");
    QApplication::sendEvent(edit.native().widget, &digit);
    EXPECT_TRUE(takesUndo());
    test::press(edit, Qt::Key_Return);
    EXPECT_FALSE(takesUndo());
}

TEST_F(EditBoxTest, AToolTipShowsMarkedUpTextAsItIsWritten) {
    auto& edit = make<EditBox>("EDIT");
    edit.setToolTip("<b>x</b>");
    EXPECT_EQ(edit.getToolTip(), "<b>x</b>");
    EXPECT_THAT(edit.native().widget->toolTip().toStdString(),
                testing::HasSubstr("&lt;b&gt;x&lt;/b&gt;"));
}

TEST_F(EditBoxTest, AProblemIsSaidInTheToolTipUntilItIsGone) {
    auto& edit = make<EditBox>("EDIT");
    edit.setToolTip("The name");
    edit.setProblem("This name is taken");
    EXPECT_EQ(edit.getToolTip(), "This name is taken");
    edit.setProblem("");
    EXPECT_EQ(edit.getToolTip(), "The name");
}

TEST_F(EditBoxTest, MixedValuesAreAPlaceHolderUntilAnEdit) {
    auto& edit = make<EditBox>("EDIT");
    const auto& field = widgetAs<QLineEdit>(edit);
    edit.setNumbers(EditBox::Numbers::Decimals);
    edit.setText("1.5");
    edit.setMixed();
    edit.setPlaceHolder("Name");
    EXPECT_EQ(edit.getText(), "");
    EXPECT_EQ(field.placeholderText(), "Mixed values");
    QKeyEvent digit(QEvent::KeyPress, Qt::Key_2, Qt::NoModifier, "2");
    QApplication::sendEvent(edit.native().widget, &digit);
    EXPECT_FALSE(edit.isMixed());
    EXPECT_EQ(edit.getText(), "2");
    EXPECT_EQ(field.placeholderText(), "Name");
    edit.setMixed();
    edit.setText("");
    EXPECT_FALSE(edit.isMixed());
}

using CheckBoxTest = test::WinUiTest;

TEST_F(CheckBoxTest, OnlyThePersonsTickIsTold) {
    auto& check = make<CheckBox>("CHECK");
    check.setText("Enable");
    std::vector<bool> told;
    check.setCheckCallback([&](bool on) { told.push_back(on); });
    check.setChecked(true);
    check.native().widget->resize(100, 23);
    test::click(check, 8, 11);
    EXPECT_EQ(told, std::vector<bool>{false});
    check.setEnabled(false, "Not now");
    test::click(check, 8, 11);
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(CheckBoxTest, AClickTicksMixedValuesAndTheyDoNotComeBack) {
    auto& check = make<CheckBox>("CHECK");
    std::vector<bool> told;
    check.setCheckCallback([&](bool on) { told.push_back(on); });
    check.native().widget->resize(100, 23);
    check.setMixed();
    EXPECT_TRUE(check.isMixed());
    EXPECT_FALSE(check.isChecked());
    for (int i = 0; i < 3; ++i)
        test::click(check, 8, 11);
    EXPECT_EQ(told, (std::vector<bool>{true, false, true}));
    for (const bool on : {false, true}) {
        check.setMixed();
        check.setChecked(on);
        EXPECT_FALSE(check.isMixed());
        EXPECT_EQ(check.isChecked(), on);
    }
    EXPECT_EQ(told.size(), 3U);
}

} // namespace
} // namespace vlWinUi
