#include "code/CodeLines.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace vlWinUi {
namespace {

int blanksBefore(const QString& line) {
    const auto first = std::ranges::find_if(
            line, [](QChar letter) { return letter != u' ' && letter != u'\t'; });
    return static_cast<int>(first - line.begin());
}

bool isBlank(const QString& line) {
    return blanksBefore(line) == line.size();
}

void forLines(const QTextCursor& cursor, const std::function<void(const QTextBlock&)>& visit) {
    const QTextDocument& document = *cursor.document();
    const QTextBlock first = document.findBlock(cursor.selectionStart());
    QTextBlock last = document.findBlock(cursor.selectionEnd());
    // A selection that ends at a line's begin does not touch it.
    if (last != first && last.position() == cursor.selectionEnd()) last = last.previous();
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        visit(block);
        if (block == last) break;
    }
}

void replace(const QTextBlock& block, int begin, int count, const QString& text) {
    QTextCursor edit(block);
    edit.setPosition(block.position() + begin);
    edit.setPosition(block.position() + begin + count, QTextCursor::KeepAnchor);
    edit.insertText(text);
}

void editLines(const QTextCursor& cursor, const std::function<void(const QTextBlock&)>& edit) {
    QTextCursor step(cursor);
    step.beginEditBlock();
    forLines(cursor, edit);
    step.endEditBlock();
}

} // namespace

void CodeLines::breakLine(QTextCursor cursor, int moreSpaces) {
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const QString before = cursor.block().text().left(cursor.positionInBlock());
    cursor.insertText(u'\n' + before.left(blanksBefore(before)) + QString(moreSpaces, u' '));
    cursor.endEditBlock();
}

void CodeLines::alignTo(const QTextBlock& line, QTextCursor cursor) {
    const QString text = cursor.block().text();
    const int blanks = blanksBefore(text);
    const QString wanted = line.text().left(blanksBefore(line.text()));
    if (blanks != cursor.positionInBlock() - 1 || text.left(blanks) == wanted) return;
    cursor.joinPreviousEditBlock();
    replace(cursor.block(), 0, blanks, wanted);
    cursor.endEditBlock();
}

void CodeLines::indent(const QTextCursor& cursor) {
    editLines(cursor, [](const QTextBlock& block) {
        if (!isBlank(block.text())) replace(block, 0, 0, QString(INDENT, u' '));
    });
}

void CodeLines::outdent(const QTextCursor& cursor) {
    editLines(cursor, [](const QTextBlock& block) {
        const QString line = block.text();
        if (line.startsWith(u'\t')) return replace(block, 0, 1, {});
        int blanks = 0;
        while (blanks < std::min<qsizetype>(line.size(), INDENT) && line[blanks] == u' ')
            ++blanks;
        if (blanks > 0) replace(block, 0, blanks, {});
    });
}

void CodeLines::toggleComment(const QTextCursor& cursor, const QString& mark) {
    if (mark.isEmpty()) return;
    bool any = false;
    bool all = true;
    int column = std::numeric_limits<int>::max();
    forLines(cursor, [&](const QTextBlock& block) {
        const QString line = block.text();
        if (isBlank(line)) return;
        any = true;
        all = all && QStringView(line).mid(blanksBefore(line)).startsWith(mark);
        column = std::min(column, blanksBefore(line));
    });
    if (!any) return;
    editLines(cursor, [&](const QTextBlock& block) {
        const QString line = block.text();
        if (isBlank(line)) return;
        if (!all) return replace(block, column, 0, mark + u' ');
        const int begin = blanksBefore(line);
        const auto behind = begin + mark.size();
        const int blank = behind < line.size() && line[behind] == u' ' ? 1 : 0;
        replace(block, begin, static_cast<int>(mark.size()) + blank, {});
    });
}

} // namespace vlWinUi
