#include "Native.h"
#include "WinUiTest.h"
#include "code/CodeColors.h"
#include "code/CodeView.h"
#include "code/FindBar.h"

#include <vlWinUi/Automation.h>
#include <vlWinUi/CodeEdit.h>
#include <vlWinUi/ThemeManager.h>
#include <vlWinUi/Window.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTextLayout>
#include <QWheelEvent>
#include <fmt/format.h>

namespace vlWinUi {
namespace {

struct CodeEditTest : test::WinUiTest {
    void SetUp() override {
        WinUiTest::SetUp();
        code = &make<CodeEdit>("CODE");
        code->setLanguage(CodeEdit::Language::Lua);
        auto& window = make<Window>("W");
        GridLayout grid(1, 1);
        grid.addComponent(*code, 0, 0);
        window.setRectangle({0, 0, 500, 300});
        window.setLayout(std::move(grid));
        window.load();
        System::settle();
        code->setChangeCallback([this] { ++changes; });
        code->setEditedCallback([this] { ++edits; });
    }
    CodeView& view() const { return widgetAs<CodeView>(*code); }

    static void key(QWidget* to,
                    int key,
                    Qt::KeyboardModifiers held = Qt::NoModifier,
                    const QString& text = {}) {
        QKeyEvent down(QEvent::KeyPress, key, held, text);
        QApplication::sendEvent(to, &down);
    }
    void key(int pressed, Qt::KeyboardModifiers held = Qt::NoModifier, const QString& text = {}) {
        key(&view(), pressed, held, text);
    }
    void type(const QString& text) {
        for (const QChar letter : text)
            key(&view(), 0, Qt::NoModifier, letter);
    }
    void select(int begin, int end) {
        QTextCursor cursor = view().textCursor();
        cursor.setPosition(begin);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        view().setTextCursor(cursor);
    }
    void loseFocus() {
        QFocusEvent out(QEvent::FocusOut);
        QApplication::sendEvent(&view(), &out);
    }

    CodeEdit* code = nullptr;
    int changes = 0;
    int edits = 0;
};

TEST_F(CodeEditTest, TheKeyboardIndentsAndCommentsLines) {
    type("if x then");
    key(Qt::Key_Return);
    key(Qt::Key_Tab);
    type("y");
    key(Qt::Key_Return);
    type("z");
    EXPECT_EQ(code->getText(), "if x then\n    y\n    z");
    select(3, 16);
    key(Qt::Key_Tab);
    EXPECT_EQ(code->getText(), "    if x then\n        y\n    z");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(code->getText(), "if x then\ny\n    z");
    select(0, 17);
    key(Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), "-- if x then\n-- y\n--     z");
    key(Qt::Key_Slash, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), "if x then\ny\n    z");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), "-- if x then\n-- y\n--     z");
    EXPECT_GT(changes, 0);
    loseFocus();
    loseFocus();
    EXPECT_EQ(edits, 1);
    code->setReadOnly(true);
    const std::string before = code->getText();
    key(Qt::Key_Tab);
    key(Qt::Key_Return);
    key(Qt::Key_Slash, Qt::ControlModifier);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), before);
}

TEST_F(CodeEditTest, AFreshTextLeavesTheCursorAndTheViewWhereTheyAre) {
    std::string text;
    for (int i = 0; i < 300; ++i)
        text.append("local line_").append(std::to_string(i)).append("\r\n");
    code->setText(text);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(code->getText().find('\r'), std::string::npos);
    code->goToLine(200);
    for (const std::size_t outside : {std::size_t{0}, std::size_t{302}, ~std::size_t{0}})
        code->goToLine(outside);
    type("x");
    const int top = view().verticalScrollBar()->value();
    EXPECT_GT(top, 100);
    code->setText(code->getText());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(code->getText().find("xlocal"), std::string::npos);
    code->setText("-- one\n-- two\n" + code->getText());
    EXPECT_EQ(code->getLine(), 202U);
    EXPECT_EQ(view().textCursor().block().text(), "local line_199");
    EXPECT_EQ(view().verticalScrollBar()->value(), top + 2);
    code->setText(code->getText() + "-- end");
    EXPECT_EQ(code->getLine(), 202U);
    EXPECT_EQ(view().verticalScrollBar()->value(), top + 2);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(code->getText().ends_with("-- end"));
    view().setTextCursor(QTextCursor(view().document()->findBlockByNumber(4)));
    code->setText("other\n1\n2\n3\n4\n5\n6\nnothing like it");
    EXPECT_EQ(code->getLine(), 5U);
    code->setText("short");
    EXPECT_EQ(code->getText(), "short");
    EXPECT_EQ(code->getLine(), 1U);
}

TEST_F(CodeEditTest, TheOwnersHistoryIsAskedBeforeTheFieldsOwn) {
    std::string asked;
    bool taken = true;
    code->setUndoCallback([&](bool redo) {
        asked += redo ? 'r' : 'u';
        return taken;
    });
    type("a");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), "a");
    taken = false;
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(code->getText(), "");
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(code->getText(), "a");
    EXPECT_EQ(asked, "uur");
    code->setKeyFilter([](const KeyEvent& pressed) { return pressed.virtualKey == 'Z'; });
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(asked, "uur");
}

TEST_F(CodeEditTest, TheBarFindsReplacesAndGoesToLines) {
    code->setText("One two\none\nthree ONE");
    key(Qt::Key_F, Qt::ControlModifier);
    FindBar& bar = view().findBar();
    EXPECT_TRUE(bar.isVisible());
    auto fields = bar.findChildren<QLineEdit*>();
    for (const char letter : {'o', 'n', 'e'})
        key(fields[0], 0, Qt::NoModifier, QString(QChar(letter)));
    const auto place = [this] { return view().textCursor().selectionStart(); };
    EXPECT_EQ(place(), 0);
    key(fields[0], Qt::Key_Return);
    EXPECT_EQ(place(), 8);
    key(Qt::Key_F3);
    EXPECT_EQ(place(), 18);
    key(Qt::Key_F3);
    EXPECT_EQ(place(), 0);
    key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(place(), 18);
    key(&bar, Qt::Key_Escape);
    EXPECT_FALSE(bar.isVisible());
    key(Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(fields[0]->text(), "ONE");
    fields[1]->setText("one one");
    const auto buttons = bar.findChildren<QPushButton*>();
    buttons[2]->click();
    EXPECT_EQ(code->getText(), "one one two\none one\nthree one one");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(edits, 0);
    key(Qt::Key_Escape);
    EXPECT_FALSE(bar.isVisible());
    key(Qt::Key_G, Qt::ControlModifier);
    fields[0]->setText("99");
    key(fields[0], Qt::Key_Return);
    EXPECT_EQ(code->getLine(), 3U);
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(CodeEditTest, ProblemsOutliveATextThatIsCleared) {
    for (int i = 0; i < 20; ++i) {
        code->setText("a\nb\nc\n{}");
        code->setProblems({{2, "one"}, {3, "two"}, {4, "three"}});
        // Under the sanitizers this shows who still knows cursors that have gone.
        code->setText("");
        EXPECT_NE(view().problemIn(0), nullptr);
        code->setText("d\ne");
        code->goToLine(2);
    }
    code->setProblems({});
    EXPECT_EQ(view().extraSelections().size(), 1) << "the line of the cursor";
}

TEST_F(CodeEditTest, ProblemsMoveWithTheirLines) {
    code->setText("a\nb\nc");
    code->setProblems({{2, "unknown 'b'"}, {9, "no end"}, {2, "unused", Emphasis::Warning}});
    ASSERT_NE(view().problemIn(1), nullptr);
    EXPECT_EQ(view().problemIn(1)->message, "unknown 'b'\nunused");
    EXPECT_EQ(view().problemIn(1)->emphasis, Emphasis::Error);
    EXPECT_NE(view().problemIn(2), nullptr);
    EXPECT_TRUE(view().accessibleDescription().contains("line 2"));
    key(Qt::Key_Return);
    EXPECT_EQ(view().problemIn(1), nullptr);
    EXPECT_NE(view().problemIn(3), nullptr);
    const QImage marked = view().grab().toImage();
    code->setProblems({});
    EXPECT_EQ(view().problemIn(3), nullptr);
    EXPECT_NE(marked, view().grab().toImage());
}

TEST_F(CodeEditTest, ZoomingEndsWhereItBegan) {
    const double before = view().font().pointSizeF();
    key(Qt::Key_Plus, Qt::ControlModifier);
    QWheelEvent wheel({5, 5},
                      {5, 5},
                      {},
                      {0, 120},
                      Qt::NoButton,
                      Qt::ControlModifier,
                      Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(view().viewport(), &wheel);
    EXPECT_EQ(view().font().pointSizeF(), before + 2);
    key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(view().font().pointSizeF(), before + 1);
    key(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(view().font().pointSizeF(), before);
    for (int i = 0; i < 100; ++i)
        key(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_GE(view().font().pointSizeF(), 6);
}

TEST_F(CodeEditTest, BracketsMatchAcrossLinesButNotInTexts) {
    code->setText("f({ -- )\n  \"}\" }) [");
    const auto& marked = view();
    select(2, 2);
    const auto places = [&] {
        std::vector<int> found;
        for (const auto& selection : marked.extraSelections())
            if (selection.format.fontWeight() == QFont::Bold)
                found.push_back(selection.cursor.anchor());
        return found;
    };
    EXPECT_EQ(places(), (std::vector<int>{2, 15}));
    select(17, 17);
    EXPECT_EQ(places(), (std::vector<int>{16, 1}));
    select(19, 19);
    EXPECT_EQ(places(), std::vector<int>{18});
    select(12, 12);
    EXPECT_TRUE(places().empty());
    // Too far off to be looked for: nothing is said about it.
    code->setText(fmt::format("{{{}}}", std::string(30'000, '\n')));
    select(0, 0);
    EXPECT_TRUE(places().empty());
}

TEST_F(CodeEditTest, BracesIndentWhatIsBetweenThem) {
    code->setLanguage(CodeEdit::Language::Hlsl);
    type("if (x) {");
    key(Qt::Key_Return);
    type("y");
    key(Qt::Key_Return);
    type("}");
    EXPECT_EQ(code->getText(), "if (x) {\n    y\n}");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(code->getText().ends_with("}"));
    code->setText("  f() {}");
    select(7, 7);
    key(Qt::Key_Return);
    type("a");
    EXPECT_EQ(code->getText(), "  f() {\n      a\n  }");
    code->setText("// {");
    select(4, 4);
    key(Qt::Key_Return);
    type("}");
    EXPECT_EQ(code->getText(), "// {\n}");
}

struct CompletionTest : CodeEditTest {
    void SetUp() override {
        CodeEditTest::SetUp();
        code->setLanguage(CodeEdit::Language::Hlsl);
    }
    QStringList offered() const { return view().completion().offered(); }
    bool isOpen() const { return view().completion().isOpen(); }
};

TEST_F(CompletionTest, OwnWordsComeBeforeTheLanguagesAndThoseOfTheText) {
    code->setCompletions({"floorColor", "Flower", "no word", "9"});
    code->setText("float floodLight; // floated\n");
    select(29, 29);
    type("f");
    EXPECT_FALSE(isOpen());
    type("lo");
    QStringList words = offered();
    ASSERT_GT(words.size(), 4);
    EXPECT_EQ(words.mid(0, 3), (QStringList{"floorColor", "Flower", "float"}));
    EXPECT_EQ(words.last(), "floodLight");
    EXPECT_TRUE(words.contains("float4x4") && words.contains("floor"));
    EXPECT_FALSE(words.contains("floated"));
    type("od");
    EXPECT_EQ(offered(), QStringList{"floodLight"});
    const int before = changes;
    key(Qt::Key_Tab);
    EXPECT_EQ(code->getText(), "float floodLight; // floated\nfloodLight");
    EXPECT_EQ(changes, before + 1);
    EXPECT_FALSE(isOpen());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(code->getText().ends_with("\nflood")) << code->getText();
}

TEST_F(CompletionTest, KeysMoveTakeAndCloseAndLeaveTheRestToTheText) {
    code->setText("alpha alpine\n");
    select(13, 13);
    type("alp");
    EXPECT_EQ(offered(), (QStringList{"alpha", "alpine"}));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_TRUE(code->getText().ends_with("\nalpine"));
    key(Qt::Key_Return);
    EXPECT_TRUE(code->getText().ends_with("\nalpine\n"));
    // A word that is complete stays what it is at the line's end.
    type("all");
    key(Qt::Key_Return);
    EXPECT_TRUE(code->getText().ends_with("all\n"));
    type("alp");
    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    type("h");
    EXPECT_TRUE(isOpen());
    // Its owner shows it what it has heard of the text.
    code->setText(code->getText());
    code->setReadOnly(false);
    code->setLanguage(CodeEdit::Language::Hlsl);
    EXPECT_TRUE(isOpen());
    key(Qt::Key_Backspace);
    EXPECT_EQ(offered(), (QStringList{"alpha", "alpine"}));
    type(".");
    EXPECT_FALSE(isOpen());
    type("al");
    EXPECT_TRUE(isOpen());
    loseFocus();
    EXPECT_FALSE(isOpen());
    select(2, 2);
    type("p");
    EXPECT_FALSE(isOpen()) << "within a word";
    code->setReadOnly(true);
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_FALSE(isOpen());
}

TEST_F(CompletionTest, OffersWhatFitsThePlace) {
    type("// flo");
    EXPECT_FALSE(isOpen());
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_FALSE(isOpen());
    code->setText("\"flo\" 0xfl");
    select(4, 4);
    type("a");
    EXPECT_FALSE(isOpen());
    select(11, 11);
    type("oa");
    EXPECT_FALSE(isOpen());
    code->setText("colors.");
    select(7, 7);
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_TRUE(offered().contains("SampleLevel"));
    EXPECT_FALSE(offered().contains("return"));
    type("GetD");
    EXPECT_EQ(offered(), QStringList{"GetDimensions"});
    code->setLanguage(CodeEdit::Language::Lua);
    EXPECT_FALSE(isOpen());
    code->setText("");
    type("fu");
    EXPECT_EQ(offered(), QStringList{"function"});
    code->setLanguage(CodeEdit::Language::None);
    code->setText("function ");
    select(9, 9);
    type("fu");
    EXPECT_EQ(offered(), QStringList{"function"});
}

TEST_F(CompletionTest, WordsOfTheTextComeAndGoWithIt) {
    code->setText("delta\ndelta\ndelphi\n");
    select(19, 19);
    type("del");
    EXPECT_EQ(offered(), (QStringList{"delphi", "delta"}));
    code->setText("delta\n");
    select(6, 6);
    type("del");
    EXPECT_EQ(offered(), QStringList{"delta"});
    code->setText("");
    type("del");
    EXPECT_FALSE(isOpen());
}

TEST_F(CompletionTest, TheListStaysWithinTheView) {
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "float4 value" + std::to_string(i) + ";\n";
    code->setText(text);
    const auto* list = view().findChild<QListWidget*>();
    for (const int line : {1, 20, 40}) {
        code->goToLine(static_cast<std::size_t>(line));
        key(Qt::Key_End);
        type(" val");
        ASSERT_TRUE(isOpen());
        EXPECT_TRUE(view().viewport()->geometry().contains(list->geometry())) << line;
        EXPECT_FALSE(list->geometry().intersects(
                view().cursorRect().translated(view().viewport()->pos())))
                << line;
        key(Qt::Key_Escape);
    }
}

TEST_F(CodeEditTest, OneEditShowsSeveralTextsEachAsItWasLeft) {
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "line of text that is longer than the view is wide, so that it scrolls sideways\n";
    code->setText(text);
    code->setViewState({{60, 4}, {58, 2}, 50, 25});
    const CodeViewState left = code->getViewState();
    EXPECT_EQ(left, (CodeViewState{{60, 4}, {58, 2}, 50, 25}));
    code->setText("other");
    code->setViewState({});
    EXPECT_EQ(code->getViewState(), CodeViewState());
    code->setViewState(left);
    EXPECT_EQ(code->getViewState().cursor, (CodeViewState::Place{1, 4}));
    code->setText(text);
    code->setViewState(left);
    EXPECT_EQ(code->getViewState(), left);
    EXPECT_EQ(changes, 0);
}

TEST_F(CodeEditTest, AMegabyteOpensAndStaysUsable) {
    std::string text = "--[==[\n]==]\n";
    while (text.size() < (1U << 20U))
        text += "local function area(w, h) return w * h + 0x1F end -- (two\n";
    QElapsedTimer clock;
    clock.start();
    code->setText(text);
    System::processEvents();
    EXPECT_LT(clock.restart(), 4000);
    code->goToLine(15'000);
    System::processEvents();
    EXPECT_EQ(changes, 0) << "to see more of a text is not to change it";
    EXPECT_FALSE(view().textCursor().block().layout()->formats().empty());
    clock.restart();
    for (const char letter : {'a', 'r', 'e', 'a', '('})
        type(QChar(letter));
    EXPECT_LT(clock.elapsed(), 500);
    code->setText(code->getText() + "--");
    System::processEvents();
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(code->getLine(), 15'000U);
}

TEST_F(CodeEditTest, AutomationTypesAndReads) {
    bool done = false;
    Automation::type("CODE", "x = 1\ny = 2", [&](auto result) { done = result.has_value(); });
    for (int i = 0; i < 10 && !done; ++i)
        System::processEvents();
    EXPECT_TRUE(done);
    EXPECT_EQ(Automation::getText("CODE").value(), "x = 1\ny = 2");
    EXPECT_EQ(changes > 0, true);
}

/// "K1-5 S7-9": kind, begin and end of each token.
std::string scanned(const CodeRules& rules, std::u16string_view line, int& state) {
    std::vector<Token> tokens;
    state = rules.scan(QStringView(line), state, tokens);
    QString said;
    for (const Token& token : tokens)
        said += QStringLiteral(" %1%2-%3")
                        .arg(QChar(u"KTNSCP"[static_cast<int>(token.kind)]))
                        .arg(token.begin)
                        .arg(token.begin + token.length);
    return said.mid(1).toStdString();
}

std::string scanned(const CodeRules& rules, std::u16string_view line) {
    int state = 0;
    return scanned(rules, line, state);
}

TEST(LuaRules, LongTextsAndCommentsEndWithTheirOwnLevel) {
    const CodeRules& lua = luaRules();
    int state = 0;
    EXPECT_EQ(scanned(lua, u"x = [==[ a", state), "S4-10");
    EXPECT_EQ(scanned(lua, u"]] ]=] end", state), "S0-10");
    EXPECT_EQ(scanned(lua, u"]==] end", state), "S0-4 K5-8");
    EXPECT_EQ(state, 0);
    EXPECT_EQ(scanned(lua, u"--[=[ a ]] --", state), "C0-13");
    EXPECT_EQ(scanned(lua, u"]=]1", state), "C0-3 N3-4");
    EXPECT_EQ(scanned(lua, u"--[=x", state), "C0-5");
    EXPECT_EQ(state, 0);
}

TEST(LuaRules, WordsNumbersAndQuotesAreToldApart) {
    const CodeRules& lua = luaRules();
    EXPECT_EQ(scanned(lua, u"local endx = math.type(t.print)"), "K0-5 T13-17");
    EXPECT_EQ(scanned(lua, u"0x1p-4 1e+5..2 .5 a1-2"), "N0-6 N7-11 N13-14 N15-17 N21-22");
    EXPECT_EQ(scanned(lua, u"'a\\'b' \"--\" --x"), "S0-6 S7-11 C12-15");
    int state = 0;
    EXPECT_EQ(scanned(lua, u"'a\\", state), "S0-3");
    EXPECT_EQ(scanned(lua, u"b' end", state), "S0-2 K3-6");
    EXPECT_EQ(state, 0);
    EXPECT_EQ(scanned(lua, u"'never closed", state), "S0-13");
    EXPECT_EQ(state, 0);
}

TEST(HlslRules, CommentsAndDirectivesGoOn) {
    const CodeRules& hlsl = hlslRules();
    int state = 0;
    EXPECT_EQ(scanned(hlsl, u"a /* b", state), "C2-6");
    EXPECT_EQ(scanned(hlsl, u"// */ if", state), "C0-5 K6-8");
    EXPECT_EQ(scanned(hlsl, u"  #define A(x) \\", state), "P0-16");
    EXPECT_EQ(scanned(hlsl, u"  float3(x) // it", state), "P0-12 C12-17");
    EXPECT_EQ(state, 0);
    EXPECT_EQ(scanned(hlsl, u"// on \\", state), "C0-7");
    EXPECT_EQ(scanned(hlsl, u"float", state), "C0-5");
    EXPECT_EQ(state, 0);
}

TEST(HlslRules, TypesHaveTheirSizes) {
    const CodeRules& hlsl = hlslRules();
    EXPECT_EQ(scanned(hlsl, u"float4x4 m; float5 n; a.float3"), "T0-8");
    EXPECT_EQ(scanned(hlsl, u"return uint2(1u, 0.5f);"), "K0-6 T7-12 N13-15 N17-21");
}

TEST_F(CodeEditTest, EveryColourCanBeReadInBothThemes) {
    Theme light("light");
    light.setColor(1, {240, 238, 235, 255});
    light.setColor(5, {30, 30, 30, 255});
    for (const Theme& theme : {Theme("dark"), light}) {
        const Shades shades(theme);
        for (const TokenKind kind : {TokenKind::Keyword,
                                     TokenKind::Type,
                                     TokenKind::Number,
                                     TokenKind::String,
                                     TokenKind::Comment,
                                     TokenKind::Preprocessor})
            EXPECT_GE(contrast(colorOf(kind, shades), shades.field), 4.5);
    }
}

} // namespace
} // namespace vlWinUi
