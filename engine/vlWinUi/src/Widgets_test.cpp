#include "SurfaceNative.h"
#include "WinUiTest.h"

#include <vlWinUi/Automation.h>
#include <vlWinUi/Button.h>
#include <vlWinUi/Clipboard.h>
#include <vlWinUi/ContextMenu.h>
#include <vlWinUi/FileExplorer.h>
#include <vlWinUi/GroupBox.h>
#include <vlWinUi/MultiLineEdit.h>
#include <vlWinUi/Notificator.h>
#include <vlWinUi/Slider.h>
#include <vlWinUi/Static.h>
#include <vlWinUi/Surface.h>
#include <vlWinUi/ToolBar.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <algorithm>
#include <array>

namespace vlWinUi {
namespace {

/// What the key prints is typed.
void type(const Component& component, const QString& text) {
    for (const QChar letter : text) {
        QKeyEvent down(QEvent::KeyPress, 0, Qt::NoModifier, letter);
        QApplication::sendEvent(component.native().widget, &down);
    }
}

void loseFocus(const Component& component) {
    QFocusEvent out(QEvent::FocusOut);
    QApplication::sendEvent(component.native().widget, &out);
}

struct FileExplorerTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        for (const char* name : {"a.vls", "b.vls"}) {
            QFile file(folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        explorer = &make<FileExplorer>("EXPLORER");
        explorer->setCurrentDir(folder.path().toStdString());
        explorer->addFilter("Scene Files", "vls");
    }
    void open() {
        explorer->open([this](const std::string& path) { chosen.push_back(path); });
    }
    QFileDialog& dialog() { return widgetAs<QFileDialog>(*explorer); }
    void choose(const QString& path) {
        dialog().selectFile(path);
        static_cast<QDialog&>(dialog()).accept();
    }

    QTemporaryDir folder;
    FileExplorer* explorer = nullptr;
    std::vector<std::string> chosen;
};

TEST_F(FileExplorerTest, AChoiceIsToldAndTheNextOpeningStartsThere) {
    ASSERT_TRUE(QDir(folder.path()).mkdir("inner"));
    ASSERT_TRUE(QFile::copy(folder.filePath("a.vls"), folder.filePath("inner/c.vls")));
    open();
    EXPECT_EQ(dialog().directory().path(), folder.path());
    EXPECT_EQ(dialog().nameFilters(), (QStringList{"Scene Files (*.vls)", "All files (*)"}));
    choose(folder.filePath("inner/c.vls"));
    EXPECT_EQ(chosen, std::vector<std::string>{folder.filePath("inner/c.vls").toStdString()});
    EXPECT_EQ(explorer->getCurrentSelection(), chosen.front());
    EXPECT_EQ(explorer->getCurrentDir(), folder.filePath("inner").toStdString());
    open();
    EXPECT_EQ(dialog().directory().path(), folder.filePath("inner"));
    dialog().reject();
    EXPECT_EQ(chosen.size(), 1U);
    explorer->setFollowSelfDir(false);
    open();
    choose(folder.filePath("b.vls"));
    EXPECT_EQ(explorer->getCurrentDir(), folder.filePath("inner").toStdString());
}

TEST_F(FileExplorerTest, SavingTakesANameThatIsNotThereAndAddsNothing) {
    explorer->setMode(FileExplorer::Mode::Save);
    open();
    choose(folder.filePath("new"));
    EXPECT_EQ(chosen, std::vector<std::string>{folder.filePath("new").toStdString()});
    explorer->setMode(FileExplorer::Mode::Directory);
    open();
    EXPECT_EQ(dialog().fileMode(), QFileDialog::Directory);
    choose(folder.path());
    EXPECT_EQ(chosen.back(), folder.path().toStdString());
}

TEST_F(FileExplorerTest, TheModeOfEachOpeningAndTheSelectionCanBeSet) {
    explorer->setCurrentSelection("/made/up.vls");
    EXPECT_EQ(explorer->getCurrentSelection(), "/made/up.vls");
    EXPECT_TRUE(chosen.empty());
    using Mode = FileExplorer::Mode;
    const std::pair<Mode, QFileDialog::FileMode> modes[] = {
            {Mode::Directory, QFileDialog::Directory},
            {Mode::Save, QFileDialog::AnyFile},
            {Mode::Open, QFileDialog::ExistingFile},
    };
    for (const auto& [mode, expected] : modes) {
        explorer->setMode(mode);
        open();
        EXPECT_EQ(dialog().fileMode(), expected);
        dialog().reject();
    }
    EXPECT_EQ(dialog().acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(explorer->getCurrentSelection(), "/made/up.vls");
}

struct NotificatorTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        make<Window>("W").load();
    }
};

TEST_F(NotificatorTest, OnlyAYesAccepts) {
    auto& window = make<Window>("W");
    int accepted = 0;
    EXPECT_FALSE(Notificator::isOpen());
    Notificator::answer(true);
    for (const bool yes : {false, true}) {
        Notificator::confirm("Erase <b>it</b>?", window, [&] { ++accepted; });
        EXPECT_TRUE(Notificator::isOpen());
        Notificator::answer(yes);
        System::processEvents();
        EXPECT_FALSE(Notificator::isOpen());
    }
    EXPECT_EQ(accepted, 1);
}

TEST_F(NotificatorTest, AQuestionWithANameOfAnyLengthFitsTheScreen) {
    auto& window = make<Window>("W");
    const std::string question = "Erase '" + std::string(4000, 'x') + "'?";
    Notificator::confirm(question, window, [] {});
    System::processEvents();
    EXPECT_EQ(Notificator::getText(), question);
    const QWidget* dialog = window.native().widget->findChild<QWidget*>("vlNotificator");
    ASSERT_NE(dialog, nullptr);
    EXPECT_LT(dialog->width(), 800);
    EXPECT_LT(dialog->height(), 700);
    Notificator::answer(false);
}

TEST_F(NotificatorTest, TheOneInFrontIsAnsweredFirst) {
    auto& window = make<Window>("W");
    std::string order;
    Notificator::confirm("First?", window, [&] { order += '1'; });
    Notificator::confirm("Second?", window, [&] { order += '2'; });
    Notificator::inform("Third.", window);
    for (const bool yes : {false, true, true}) {
        ASSERT_TRUE(Notificator::isOpen());
        Notificator::answer(yes);
        System::processEvents();
    }
    EXPECT_EQ(order, "21");
    EXPECT_FALSE(Notificator::isOpen());
}

TEST_F(NotificatorTest, DetailsStandUnderTheTextAsWritten) {
    auto& window = make<Window>("W");
    Notificator::setDetails("nobody sees it");
    EXPECT_EQ(Notificator::getText(), "");
    Notificator::confirm("Erase?", window, nullptr);
    Notificator::setDetails("Used by <b>2</b>:\nrust & stone");
    EXPECT_EQ(Notificator::getText(), "Erase?");
    EXPECT_EQ(Notificator::getDetails(), "Used by <b>2</b>:\nrust & stone");
    const auto* box =
            QApplication::activeModalWidget()->findChild<QLabel*>("qt_msgbox_informativelabel");
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "Used by &lt;b&gt;2&lt;/b&gt;:<br>rust &amp; stone");
    Notificator::setDetails({});
    EXPECT_EQ(Notificator::getDetails(), "");
    Notificator::answer(false);
}

TEST_F(NotificatorTest, AQuestionGoesWithItsWindow) {
    bool accepted = false;
    Notificator::confirm("Still there?", make<Window>("W"), [&] { accepted = true; });
    ComponentManager::erase("W");
    System::processEvents();
    EXPECT_FALSE(Notificator::isOpen());
    EXPECT_FALSE(accepted);
}

using ClipboardTest = test::WinUiTest;

TEST_F(ClipboardTest, WhatIsSetIsThereToPaste) {
    Clipboard::setText("über\nzwei");
    EXPECT_EQ(Clipboard::getText(), "über\nzwei");
    Clipboard::setText({});
    EXPECT_EQ(Clipboard::getText(), "");
}

using StaticTest = test::WinUiTest;

TEST_F(StaticTest, OfAPathTheEndCanBeSeen) {
    auto& label = make<Static>("LABEL");
    QWidget& widget = *label.native().widget;
    widget.resize(120, 20);
    const auto picture = [&](char last) {
        label.setText(std::string(60, 'a').append(1, last));
        return widget.grab().toImage();
    };
    EXPECT_EQ(picture('X'), picture('O'));
    label.setPath(true);
    EXPECT_NE(picture('X'), picture('O'));
}

struct MultiLineEditTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        text = &make<MultiLineEdit>("TEXT");
        text->setChangeCallback([this] { ++changes; });
        text->setEditedCallback([this] { ++edits; });
    }

    MultiLineEdit* text = nullptr;
    int changes = 0;
    int edits = 0;
};

TEST_F(MultiLineEditTest, OnlyWhatThePersonTypesIsToldAndOnceItIsDone) {
    text->setText("one\ntwo");
    loseFocus(*text);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(edits, 0);
    type(*text, "ab");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(text->getText(), "abone\ntwo");
    loseFocus(*text);
    loseFocus(*text);
    EXPECT_EQ(edits, 1);
    text->setReadOnly(true);
    type(*text, "c");
    EXPECT_EQ(changes, 2);
}

TEST_F(MultiLineEditTest, TheSameTextSetAnewLeavesTheCursorWhereItIs) {
    auto& edit = widgetAs<QPlainTextEdit>(*text);
    text->setText("one\ntwo\nthree");
    text->goToLine(3);
    EXPECT_EQ(edit.textCursor().blockNumber(), 2);
    for (const std::size_t outside : {std::size_t{0}, std::size_t{4}, ~std::size_t{0}})
        text->goToLine(outside);
    text->setText("one\ntwo\nthree");
    EXPECT_EQ(edit.textCursor().blockNumber(), 2);
}

TEST_F(MultiLineEditTest, LongLinesAreBrokenIfWantedAndStayOneLine) {
    const std::string line(4000, 'x');
    const auto& edit = widgetAs<QPlainTextEdit>(*text);
    const auto scrolls = [&] {
        System::processEvents();
        return edit.horizontalScrollBar()->maximum() > 0;
    };
    Window& window = make<Window>("WINDOW");
    window.setRectangle({0, 0, 300, 200});
    GridLayout layout(1, 1);
    layout.addComponent(*text, 0, 0);
    window.setLayout(std::move(layout));
    window.load();
    text->setText(line);
    EXPECT_TRUE(scrolls());
    text->setWrapping(true);
    EXPECT_FALSE(scrolls());
    EXPECT_EQ(text->getText(), line);
}

TEST_F(MultiLineEditTest, AKeyMayEraseTheField) {
    std::vector<std::uint32_t> keys;
    text->setKeyDownCallback([&](std::uint32_t key) {
        keys.push_back(key);
        ComponentManager::erase("TEXT");
    });
    test::press(*text, Qt::Key_Return);
    System::processEvents();
    EXPECT_EQ(keys, std::vector<std::uint32_t>{13});
    EXPECT_EQ(ComponentManager::get("TEXT"), nullptr);
}

using GroupBoxTest = test::WinUiTest;

TEST_F(GroupBoxTest, ALowGroupShowsItsLineWhole) {
    auto& window = make<Window>("W");
    auto& group = make<GroupBox>("GROUP");
    auto& button = make<Button>("BUTTON");
    group.setText("Name");
    GridLayout inner(1, 1);
    inner.addComponent(button, 0, 0);
    group.setLayout(std::move(inner));
    GridLayout outer(1, 2);
    outer.setFixedSizeRow(0, 65);
    outer.addComponent(group, 0, 0);
    window.setLayout(std::move(outer));
    window.setRectangle({0, 0, 200, 200});
    window.load();
    System::settle();
    EXPECT_GE(button.getHeight(), 24U);
    const QWidget& frame = *group.native().widget;
    EXPECT_LE(frame.height(), 65);
    EXPECT_TRUE(frame.contentsRect().contains(button.native().widget->geometry()));
}

using SliderTest = test::WinUiTest;

TEST_F(SliderTest, TheValueStaysInItsRangeAndOnlyThePersonsPullIsTold) {
    auto& slider = make<Slider>("SLIDER");
    std::vector<int> told;
    slider.setSlideCallback([&](int value) { told.push_back(value); });
    slider.setRange(-10, 10);
    slider.setCurrent(50);
    EXPECT_EQ(slider.getCurrent(), 10);
    slider.setRange(-10, 5);
    EXPECT_EQ(slider.getText(), "5");
    slider.setText("-3");
    slider.setText("no number");
    slider.setText("99999999999");
    EXPECT_EQ(slider.getCurrent(), -3);
    slider.setRange(7, 2);
    EXPECT_EQ(slider.getMax(), 7);
    slider.setRange(0, 9);
    EXPECT_TRUE(told.empty());
    test::press(slider, Qt::Key_Left);
    EXPECT_EQ(told, std::vector<int>{6});
}

struct SurfaceTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        surface = &make<Surface>("SURFACE");
        surface->native().widget->resize(6, 4);
    }
    template <class Event> void send(Event event) {
        QApplication::sendEvent(surface->native().widget, &event);
    }

    Surface* surface = nullptr;
};

TEST_F(SurfaceTest, APictureIsShownOneToOneAndOnlyBorrowed) {
    const std::array blue{std::byte{200}, std::byte{30}, std::byte{10}, std::byte{0}};
    std::vector<std::byte> picture(3 * 2 * blue.size());
    for (std::size_t i = 0; i < picture.size(); ++i)
        picture[i] = blue[i % blue.size()];
    surface->presentPicture(3, 2, picture);
    std::ranges::fill(picture, std::byte{0});
    const QImage seen = surface->native().widget->grab().toImage();
    EXPECT_EQ(seen.pixelColor(2, 1), QColor(10, 30, 200));
    EXPECT_EQ(seen.pixelColor(3, 1), QColor(Qt::black));
    EXPECT_EQ(seen.pixelColor(2, 2), QColor(Qt::black));
    surface->presentPicture(0, 0, {});
    surface->presentPicture(1U << 31U, 1U << 31U, picture);
    EXPECT_EQ(lines.size(), 2U);
    EXPECT_EQ(surface->native().widget->grab().toImage().pixelColor(0, 0), QColor(10, 30, 200));
}

TEST_F(SurfaceTest, SizeExposureAndInputAreTold) {
    std::vector<std::string> told;
    surface->setExposeCallback([&](bool exposed) { told.emplace_back(exposed ? "seen" : "gone"); });
    surface->setResizeCallback([&](unsigned width, unsigned height) {
        told.push_back(std::to_string(width) + "x" + std::to_string(height));
    });
    surface->setMouseMoveCallback([&](const MouseMoveEvent& move) {
        told.push_back("move " + std::to_string(move.x) + (move.right ? " right" : ""));
    });
    surface->setClickCallback([&](const ClickEvent& click) {
        told.push_back((click.pressed ? "down " : "up ") + std::to_string(click.button));
    });
    surface->setWheelCallback([&](float notches) { told.push_back(std::to_string(notches)); });
    surface->setVisible(true);
    surface->native().widget->resize(60, 40);
    System::processEvents();
    EXPECT_EQ(surface->getWidth(), 60U);
    EXPECT_EQ(told, (std::vector<std::string>{"6x4", "seen", "60x40"}));
    told.clear();
    const QPointF at(5, 6);
    send(QMouseEvent(QEvent::MouseMove, at, at, Qt::NoButton, Qt::RightButton, Qt::NoModifier));
    send(QMouseEvent(
            QEvent::MouseButtonPress, at, at, Qt::RightButton, Qt::RightButton, Qt::NoModifier));
    send(QMouseEvent(
            QEvent::MouseButtonRelease, at, at, Qt::RightButton, Qt::NoButton, Qt::NoModifier));
    send(QWheelEvent(at, at, {}, {0, -60}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false));
    surface->setVisible(false);
    EXPECT_EQ(told,
              (std::vector<std::string>{"move 5 right",
                                        "down " + std::to_string(ClickEvent::RIGHT),
                                        "up " + std::to_string(ClickEvent::RIGHT),
                                        "-0.500000",
                                        "gone"}));
}

using MenuTest = test::WinUiTest;

TEST_F(MenuTest, AMenuOpensWithWhatItsCallbackSaysAndCloses) {
    auto& context = make<ContextMenu>("MENU");
    Menu& menu = context.getMenu();
    std::string chosen;
    menu.setOpenCallback([&] {
        menu.clear();
        menu.addItem("Rename", [&] { chosen = "Rename"; });
        menu.addSeparator();
        Menu& more = menu.addMenu("More & more");
        more.addItem("Inner", [&] { chosen = "Inner"; });
        EXPECT_EQ(more.getLabel(), "More & more");
    });
    for (int opened = 0; opened < 2; ++opened) {
        context.open({10, 10});
        EXPECT_TRUE(context.isVisible());
        EXPECT_EQ(menu.getItemCount(), 1U);
        EXPECT_EQ(widgetAs<QMenu>(context).actions().size(), 3);
        context.close();
        EXPECT_FALSE(context.isVisible());
        System::processEvents();
    }
    EXPECT_EQ(menu.find("Inner"), nullptr);
    menu.getItem(0).trigger();
    EXPECT_EQ(chosen, "Rename");
    EXPECT_THROW(menu.getItem(1), std::out_of_range);
}

TEST_F(MenuTest, TheKeyboardChoosesALineThatIsEnabledAndSeen) {
    auto& context = make<ContextMenu>("MENU");
    std::string chosen;
    const auto choose = [&](const char* label) { chosen += label; };
    context.addItem("A", [&] { choose("A"); }).setEnabled(false, "Not now");
    context.addItem("B", [&] { choose("B"); }).setVisible(false);
    context.addItem("C", [&] { choose("C"); }).setChecked(true);
    context.open({10, 10});
    for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return})
        test::press(context, key);
    EXPECT_EQ(chosen, "C");
    EXPECT_FALSE(context.isVisible());
}

TEST_F(MenuTest, ABarsItemIsChosenByAClickAndMayEraseTheBar) {
    auto& window = make<Window>("W");
    auto& bar = make<ToolBar>("BAR");
    int runs = 0;
    Menu& file = bar.addMenu("File", 200);
    MenuItem& run = bar.addItem("Run", [&] {
        ++runs;
        ComponentManager::erase("BAR");
    });
    EXPECT_EQ(bar.findMenu("File"), &file);
    EXPECT_EQ(bar.findMenu("Run"), nullptr);
    run.setToolTip("Runs it");
    EXPECT_EQ(run.getToolTip(), "Runs it");
    run.setLabel("Run & stop");
    run.setDetail("(F5 & F6)");
    EXPECT_EQ(run.getLabel(), "Run & stop");
    EXPECT_EQ(Automation::getItems("BAR").value(), (Automation::Labels{"File", "Run & stop"}));
    EXPECT_EQ(widgetAs<QMenuBar>(bar).actions().last()->text(), "Run && stop  (F5 && F6)");
    GridLayout grid(1, 1);
    grid.addComponent(bar, 0, 0);
    window.setLayout(std::move(grid));
    window.setRectangle({0, 0, 400, 60});
    window.load();
    System::processEvents();
    auto& widget = widgetAs<QMenuBar>(bar);
    const QPoint at = widget.actionGeometry(widget.actions().last()).center();
    test::click(bar, at.x(), at.y());
    System::processEvents();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(ComponentManager::get("BAR"), nullptr);
}

} // namespace
} // namespace vlWinUi
