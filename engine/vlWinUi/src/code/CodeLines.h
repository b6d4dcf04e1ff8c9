#pragma once
#include <QTextBlock>
#include <QTextCursor>

namespace vlWinUi {

/** Edits of whole lines, each one step of the undo history. */
namespace CodeLines {

constexpr int INDENT = 4; ///< spaces

/// A line feed, with the blanks that the cursor's line begins with and so many more spaces.
void breakLine(QTextCursor cursor, int moreSpaces);
/// The blanks that a line begins with, for the cursor's line, where the letter before the cursor is
/// the first one; part of the step before.
void alignTo(const QTextBlock& line, QTextCursor cursor);
/// The lines that the selection touches, or the cursor's.
void indent(const QTextCursor& cursor);
void outdent(const QTextCursor& cursor);
/// Makes comments of them, or code again where all are comments.
void toggleComment(const QTextCursor& cursor, const QString& mark);

} // namespace CodeLines

} // namespace vlWinUi
