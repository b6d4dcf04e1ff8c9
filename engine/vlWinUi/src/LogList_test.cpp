#include "ListView.h"
#include "Native.h"
#include "WinUiTest.h"

#include <vlWinUi/EditBox.h>
#include <vlWinUi/ListBox.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QScrollBar>

namespace vlWinUi {
namespace {

/** A list as a log has it, in a window of a size. */
class LogListTest : public test::WinUiTest {
protected:
    void SetUp() override {
        WinUiTest::SetUp();
        list = &make<ListBox>("LOG");
        list->setMultiSelection(true);
        list->setCompact(true);
        list->setFollowEnd(true);
        window = &make<Window>("WINDOW");
        GridLayout layout(1, 1);
        layout.addComponent(*list, 0, 0);
        window->setRectangle({0, 0, 400, 300});
        window->setLayout(std::move(layout));
        window->load();
        System::settle();
    }

    void append(int first, int last) {
        for (int i = first; i <= last; ++i)
            list->append({"line " + std::to_string(i), {}});
    }
    /// What was appended is in view.
    void show() {
        System::processEvents();
        view().doItemsLayout();
    }
    ListView& view() const { return *static_cast<ListView*>(list->native().widget); }
    QScrollBar& bar() const { return *view().verticalScrollBar(); }
    std::string topLine() const {
        return view().indexAt(QPoint(4, 1)).data().toString().toStdString();
    }
    std::string bottomLine() const {
        const int rows = view().model()->rowCount();
        const QRect last = view().visualRect(view().model()->index(rows - 1, 0));
        if (!view().viewport()->rect().contains(last.center())) return "out of view";
        return view().model()->index(rows - 1, 0).data().toString().toStdString();
    }
    void pressWithControl(int key) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::ControlModifier);
        QApplication::sendEvent(&view(), &down);
    }

    ListBox* list = nullptr;
    Window* window = nullptr;
};

TEST_F(LogListTest, EqualLinesInARowFoldIntoOneWithACount) {
    for (const char* line : {"a", "a", "b", "b"})
        list->append({line, {}});
    EXPECT_EQ(list->getEntryCount(), 2U);
    System::processEvents();
    for (const char* line : {"b", "a", "a"})
        list->append({line, {}});
    list->append({"a", {}, Emphasis::Error});
    ASSERT_EQ(list->getEntryCount(), 4U);
    EXPECT_EQ(list->getEntry(0).count, 2U);
    EXPECT_EQ(list->getEntry(1).count, 3U);
    EXPECT_EQ(list->getEntry(2).count, 2U);
    EXPECT_EQ(list->getEntry(3).count, 1U);
}

TEST_F(LogListTest, WhatComesInOneTurnIsShownOnce) {
    int insertions = 0;
    QObject::connect(view().model(), &QAbstractItemModel::rowsInserted, [&] { ++insertions; });
    append(1, 5000);
    System::processEvents();
    EXPECT_EQ(insertions, 1);
}

TEST_F(LogListTest, TheOldestGoBeyondTheBoundAndTheSelectionStaysWithItsEntry) {
    list->setMostEntries(10);
    append(1, 10);
    list->select(7);
    append(11, 14);
    EXPECT_EQ(list->getEntryCount(), 10U);
    EXPECT_EQ(list->getEntry(0).label, "line 5");
    EXPECT_EQ(list->getText(), "line 8");
    EXPECT_EQ(list->getSelectedIndices(), std::vector<std::size_t>{3});
    append(15, 40);
    EXPECT_EQ(list->getSelectedIndex(), std::nullopt);
    EXPECT_EQ(list->getEntry(0).label, "line 31");
    EXPECT_EQ(list->getEntry(9).label, "line 40");
}

TEST_F(LogListTest, TheEndIsFollowedUntilThePersonScrollsAway) {
    list->setMostEntries(200);
    append(1, 150);
    show();
    EXPECT_EQ(bottomLine(), "line 150");
    window->native().widget->resize(400, 200);
    show();
    EXPECT_EQ(bottomLine(), "line 150");

    bar().setValue(bar().maximum() / 2);
    const std::string seen = topLine();
    ASSERT_FALSE(list->isFollowingEnd());
    append(151, 240);
    show();
    EXPECT_EQ(topLine(), seen);
    EXPECT_EQ(list->getEntryCount(), 200U);

    bar().setValue(bar().maximum());
    EXPECT_TRUE(list->isFollowingEnd());
    append(241, 300);
    show();
    EXPECT_EQ(bottomLine(), "line 300");
}

TEST_F(LogListTest, WhoseLinesInViewHaveGoneSeesTheOldestThatAreLeft) {
    list->setMostEntries(100);
    append(1, 100);
    show();
    bar().setValue(0);
    append(101, 160);
    show();
    EXPECT_EQ(topLine(), "line 61");
}

TEST_F(LogListTest, ALabelOfSeveralLinesIsOneEntryShownAsLines) {
    list->append({"Syntax error :\nline 3: unexpected symbol\n", {}});
    list->append({"done", {}});
    EXPECT_EQ(list->getEntryCount(), 2U);
    EXPECT_EQ(view().model()->rowCount(), 3);
    EXPECT_EQ(view().model()->index(1, 0).data().toString(), "line 3: unexpected symbol");
    list->setFilter("UNEXPECTED");
    EXPECT_EQ(list->getShownCount(), 1U);
    EXPECT_EQ(view().model()->rowCount(), 2);
    list->append({"unexpected end", {}});
    list->append({"hidden", {}});
    EXPECT_EQ(list->getShownCount(), 2U);
    list->setFilter("");
    EXPECT_EQ(list->getShownCount(), 4U);
}

TEST_F(LogListTest, SeveralLinesAreSelectedAndCopiedInTheirOrder) {
    QApplication::clipboard()->setText("before");
    append(1, 3);
    list->append({"two\nlines", {}});
    System::processEvents();
    list->copySelection();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "before");
    pressWithControl(Qt::Key_A);
    pressWithControl(Qt::Key_C);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
              "line 1\nline 2\nline 3\ntwo\nlines");
    EXPECT_EQ(list->getSelectedIndices(), (std::vector<std::size_t>{0, 1, 2, 3}));
    list->select(1);
    EXPECT_EQ(list->getSelectedText(), "line 2");
}

TEST_F(LogListTest, TheHeaderStandsAboveTheLinesAndGoesWithTheList) {
    auto& filter = make<EditBox>("FILTER");
    list->setHeader(filter, 27);
    System::processEvents();
    EXPECT_EQ(filter.getParent(), list);
    EXPECT_EQ(filter.getWidth(), static_cast<unsigned>(view().viewport()->width()));
    EXPECT_LE(filter.native().widget->geometry().bottom(), view().viewport()->geometry().top());
    ComponentManager::erase("LOG");
    EXPECT_EQ(ComponentManager::get("FILTER"), nullptr);
}

TEST_F(LogListTest, RemovingAndRenamingKeepFilteredRowsRight) {
    list->setEntries({{"rust", {}}, {"stone", {}}, {"trust", {}}, {"rusty", {}}});
    list->select(3);
    list->setFilter("rust");
    list->removeEntry("stone");
    EXPECT_EQ(list->getText(), "rusty");
    list->removeEntry("rust");
    EXPECT_EQ(list->getShownCount(), 2U);
    list->renameEntry("trust", "wood");
    EXPECT_EQ(list->getShownCount(), 1U);
    EXPECT_EQ(view().model()->index(0, 0).data().toString(), "rusty");
    EXPECT_EQ(list->getText(), "rusty");
    EXPECT_EQ(view().selectionModel()->selectedIndexes().size(), 1);
}

using EditBoxKeys = test::WinUiTest;

TEST_F(EditBoxKeys, TabMovesTheFocusUnlessItIsTaken) {
    auto& edit = make<EditBox>("EDIT");
    int told = 0;
    edit.setKeyDownCallback([&](std::uint32_t) { ++told; });
    edit.setTabCallback([&] {
        if (edit.getText().empty()) return false;
        edit.insertAtCursor("nt");
        return true;
    });
    test::press(edit, Qt::Key_Tab);
    EXPECT_EQ(told, 1);
    edit.insertAtCursor("pri");
    EXPECT_EQ(edit.getTextBeforeCursor(), "pri");
    test::press(edit, Qt::Key_Tab);
    EXPECT_EQ(edit.getText(), "print");
    EXPECT_EQ(told, 1);
}

} // namespace
} // namespace vlWinUi
