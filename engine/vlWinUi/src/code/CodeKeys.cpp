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
        return !key.modifiers().testFlag(Qt::AltModifier);
    default:
        return isUndo(key) || isRedo(key);
    }
}

} // namespace

bool CodeView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        isCommand(*static_cast<const QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QPlainTextEdit::event(event);
}

void CodeView::keyPressEvent(QKeyEvent* event) {
    if (handleCommand(*event) || (!isReadOnly() && handleEdit(*event)))
        event->accept();
    else
        QPlainTextEdit::keyPressEvent(event);
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
        CodeLines::breakLine(textCursor());
    } else {
        return false;
    }
    ensureCursorVisible();
    return true;
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
