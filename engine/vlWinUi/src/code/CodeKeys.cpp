// What keys do in code.
#include "code/CodeLines.h"
#include "code/CodeView.h"
#include "code/FindBar.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

namespace vlWinUi {
namespace {

bool isUndo(const QKeyEvent& key) {
    return key.matches(QKeySequence::Undo);
}

bool isRedo(const QKeyEvent& key) {
    const bool control = key.modifiers().testFlag(Qt::ControlModifier);
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    return key.matches(QKeySequence::Redo) || (control && shift && key.key() == Qt::Key_Z) ||
           (control && !shift && key.key() == Qt::Key_Y);
}

/// What the view does with Ctrl, so that no shortcut of the window takes it.
bool isCommand(const QKeyEvent& key) {
    if (key.key() == Qt::Key_F3) return true;
    if (!key.modifiers().testFlag(Qt::ControlModifier)) return false;
    switch (key.key()) {
    case Qt::Key_F:
    case Qt::Key_H:
    case Qt::Key_G:
    case Qt::Key_Slash:
    case Qt::Key_Plus:
    case Qt::Key_Equal:
    case Qt::Key_Minus:
    case Qt::Key_0:
    case Qt::Key_Space:
        return !key.modifiers().testFlag(Qt::AltModifier);
    default:
        return isUndo(key) || isRedo(key);
    }
}

} // namespace

bool CodeView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<const QKeyEvent*>(event);
        if (isCommand(key) || completion_.wants(key)) {
            event->accept();
            return true;
        }
    }
    return QPlainTextEdit::event(event);
}

void CodeView::keyPressEvent(QKeyEvent* event) {
    if (completion_.wants(*event)) {
        completion_.handle(*event);
        event->accept();
        return;
    }
    if (handleCommand(*event) || (!isReadOnly() && handleEdit(*event))) {
        event->accept();
        return;
    }
    const QPointer<CodeView> self = this;
    QPlainTextEdit::keyPressEvent(event);
    const QString typed = event->text();
    const bool letter = !typed.isEmpty() && (beginsWord(typed.back()) || typed.back().isDigit());
    if (self != nullptr && !isReadOnly() && letter) completion_.typed();
}

bool CodeView::handleCommand(const QKeyEvent& key) {
    if (key.key() == Qt::Key_Escape && findBar_.isVisible()) {
        findBar_.close();
        return true;
    }
    if (!isCommand(key)) return false;
    const bool shift = key.modifiers().testFlag(Qt::ShiftModifier);
    switch (key.key()) {
    case Qt::Key_F3:
        findBar_.findNext(shift);
        return true;
    case Qt::Key_F:
        findBar_.open(FindBar::Mode::Find);
        return true;
    case Qt::Key_H:
        findBar_.open(FindBar::Mode::Replace);
        return true;
    case Qt::Key_G:
        findBar_.open(FindBar::Mode::Line);
        return true;
    case Qt::Key_Slash:
        if (!isReadOnly() && highlighter_.getRules() != nullptr)
            CodeLines::toggleComment(textCursor(), highlighter_.getRules()->lineComment);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(1);
        return true;
    case Qt::Key_Minus:
        zoom(-1);
        return true;
    case Qt::Key_0:
        resetZoom();
        return true;
    case Qt::Key_Space:
        if (!isReadOnly()) completion_.open();
        return true;
    default:
        undoOrRedo(isRedo(key));
        return true;
    }
}

bool CodeView::handleEdit(const QKeyEvent& key) {
    const auto held = key.modifiers() & ~Qt::KeypadModifier;
    const bool backTab =
            key.key() == Qt::Key_Backtab || (key.key() == Qt::Key_Tab && held == Qt::ShiftModifier);
    if (backTab) {
        CodeLines::outdent(textCursor());
    } else if (key.key() == Qt::Key_Tab && held == Qt::NoModifier) {
        const QTextCursor cursor = textCursor();
        const bool lines = cursor.selectedText().contains(QChar::ParagraphSeparator);
        if (lines)
            CodeLines::indent(cursor);
        else
            insertPlainText(QString(CodeLines::INDENT, u' '));
    } else if ((key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
               (held == Qt::NoModifier || held == Qt::ShiftModifier)) {
        breakLine();
    } else if (key.text() == QStringLiteral("}")) {
        closeBrace();
    } else {
        return false;
    }
    ensureCursorVisible();
    return true;
}

void CodeView::breakLine() {
    const QTextCursor cursor = textCursor();
    const QTextBlock block = document()->findBlock(cursor.selectionStart());
    const int column = cursor.selectionStart() - block.position();
    const QString before = block.text().left(column);
    int last = column - 1;
    while (last >= 0 && before[last].isSpace())
        --last;
    const bool opens = last >= 0 && highlighter_.hasBracket(block.position() + last, u'{');
    const bool closes = !cursor.hasSelection() && highlighter_.hasBracket(cursor.position(), u'}');
    CodeLines::breakLine(cursor, opens ? CodeLines::INDENT : 0);
    if (!opens || !closes) return;
    // The closing one goes to a line of its own, and the cursor stays between.
    QTextCursor behind = textCursor();
    const int between = behind.position();
    behind.joinPreviousEditBlock();
    CodeLines::breakLine(behind, 0);
    CodeLines::outdent(textCursor());
    behind.endEditBlock();
    behind.setPosition(between);
    setTextCursor(behind);
}

void CodeView::closeBrace() {
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock(); // which the step below can join
    cursor.insertText(QStringLiteral("}"));
    cursor.endEditBlock();
    const int brace = textCursor().position() - 1;
    const auto pair = highlighter_.bracketsAt(brace);
    if (pair.size() == 2) CodeLines::alignTo(document()->findBlock(pair[1]), textCursor());
}

void CodeView::undoOrRedo(bool redoing) {
    const auto asked = undoWanted;
    const QPointer<CodeView> self = this;
    if ((asked && asked(redoing)) || self.isNull() || isReadOnly()) return;
    if (redoing)
        redo();
    else
        undo();
}

void CodeView::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = createStandardContextMenu(event->pos());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const bool redoing : {false, true}) {
        auto* action = menu->findChild<QAction*>(redoing ? "edit-redo" : "edit-undo");
        if (action == nullptr || !undoWanted) continue;
        action->disconnect();
        action->setEnabled(true);
        connect(action, &QAction::triggered, this, [this, redoing] { undoOrRedo(redoing); });
    }
    menu->popup(event->globalPos());
}

} // namespace vlWinUi
