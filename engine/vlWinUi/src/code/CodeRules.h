#pragma once
#include <QString>
#include <QStringView>

#include <cstdint>
#include <span>
#include <vector>

namespace vlWinUi {

enum class TokenKind : std::uint8_t { Keyword, Type, Number, String, Comment, Preprocessor };

/** A part of a line that is coloured. */
struct Token {
    qsizetype begin;
    qsizetype length;
    TokenKind kind;
};

/** How a language is written. */
struct CodeRules {
    QString lineComment;
    /// Cuts a line into tokens, in their order. The state is what the line before gave back, 0 at
    /// the text's begin; what is given back is not negative.
    int (*scan)(QStringView line, int state, std::vector<Token>& tokens);
    /// That can be written anywhere, and those behind one of the marks.
    std::span<const QStringView> words;
    std::span<const QStringView> members;
    QString memberMarks;
};

const CodeRules& luaRules();
const CodeRules& hlslRules();

/// Behind the letters, digits and underscores that begin there.
qsizetype endOfWord(QStringView line, qsizetype begin);
/// Behind a number that begins there: digits, letters, points, and signs behind an exponent's
/// letter.
qsizetype endOfNumber(QStringView line, qsizetype begin);
/// Behind the closing quote, or the line's end where there is none.
qsizetype endOfQuoted(QStringView line, qsizetype begin, QChar quote);

inline bool beginsWord(QChar c) {
    return c.isLetter() || c == u'_';
}
inline bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

} // namespace vlWinUi
