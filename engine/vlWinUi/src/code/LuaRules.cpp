#include "code/CodeRules.h"

#include <algorithm>

namespace vlWinUi {
namespace {

/// What a line is begun in; the rest of the state is a long bracket's level or the quote.
enum Inside { Nothing, LongString, LongComment, Quoted };

constexpr int INSIDE_BITS = 2;

int stateOf(Inside inside, int detail) {
    return (detail << INSIDE_BITS) | inside;
}

constexpr QStringView KEYWORDS[] = {u"and",   u"break", u"do",       u"else", u"elseif", u"end",
                                    u"false", u"for",   u"function", u"goto", u"if",     u"in",
                                    u"local", u"nil",   u"not",      u"or",   u"repeat", u"return",
                                    u"then",  u"true",  u"until",    u"while"};

/// What every script finds: libraries, and functions without one.
constexpr QStringView LIBRARY[] = {
        u"assert",   u"coroutine", u"debug",        u"error",  u"getmetatable", u"io",
        u"ipairs",   u"math",      u"next",         u"os",     u"pairs",        u"pcall",
        u"print",    u"rawequal",  u"rawget",       u"rawlen", u"rawset",       u"require",
        u"select",   u"self",      u"setmetatable", u"string", u"table",        u"tonumber",
        u"tostring", u"type",      u"utf8",         u"xpcall"};

/// Of the libraries.
constexpr QStringView MEMBERS[] = {
        u"abs",    u"acos",        u"asin",    u"atan",       u"byte",   u"ceil",
        u"char",   u"clock",       u"close",   u"codepoint",  u"concat", u"cos",
        u"create", u"date",        u"deg",     u"difftime",   u"exp",    u"find",
        u"floor",  u"fmod",        u"format",  u"gmatch",     u"gsub",   u"huge",
        u"insert", u"isyieldable", u"len",     u"log",        u"lower",  u"match",
        u"max",    u"maxinteger",  u"min",     u"mininteger", u"modf",   u"move",
        u"offset", u"pack",        u"pi",      u"rad",        u"random", u"randomseed",
        u"rep",    u"resume",      u"reverse", u"running",    u"sin",    u"sort",
        u"sqrt",   u"status",      u"sub",     u"tan",        u"time",   u"tointeger",
        u"type",   u"ult",         u"unpack",  u"upper",      u"wrap",   u"yield"};

/// The level of a long bracket "[==[" that begins there, or -1.
int levelOf(QStringView line, qsizetype at) {
    qsizetype end = at + 1;
    while (end < line.size() && line[end] == u'=')
        ++end;
    const bool opens = at < line.size() && line[at] == u'[' && end < line.size();
    return opens && line[end] == u'[' ? static_cast<int>(end - at - 1) : -1;
}

class Scanner {
public:
    Scanner(QStringView line, std::vector<Token>& tokens) : line_(line), tokens_(tokens) {}

    int run(int state) {
        const auto inside = static_cast<Inside>(state & ((1 << INSIDE_BITS) - 1));
        const int detail = state >> INSIDE_BITS;
        int next = 0;
        if (inside == LongString || inside == LongComment) next = finishLong(inside, 0, 0, detail);
        if (inside == Quoted) next = finishQuoted(0, 0, QChar(detail));
        while (next == 0 && at_ < line_.size())
            next = scanOne();
        return next;
    }

private:
    void add(qsizetype begin, qsizetype end, TokenKind kind) {
        tokens_.push_back({begin, end - begin, kind});
        at_ = end;
    }
    /// Up to the closing bracket, which is looked for from `inner` on.
    int finishLong(Inside inside, qsizetype begin, qsizetype inner, int level) {
        const TokenKind kind = inside == LongComment ? TokenKind::Comment : TokenKind::String;
        const QString closing = u']' + QString(level, u'=') + u']';
        const qsizetype found = line_.indexOf(closing, inner);
        add(begin, found < 0 ? line_.size() : found + closing.size(), kind);
        return found < 0 ? stateOf(inside, level) : 0;
    }
    /// A backslash at the end of the line takes the text on to the next one.
    int finishQuoted(qsizetype begin, qsizetype inner, QChar quote) {
        add(begin, endOfQuoted(line_, inner, quote), TokenKind::String);
        qsizetype slashes = 0;
        while (slashes < line_.size() && line_[line_.size() - 1 - slashes] == u'\\')
            ++slashes;
        return at_ == line_.size() && slashes % 2 == 1 ? stateOf(Quoted, quote.unicode()) : 0;
    }
    int scanOne() {
        const qsizetype begin = at_;
        const QChar c = line_[begin];
        if (line_.mid(begin).startsWith(u"--")) {
            const int level = levelOf(line_, begin + 2);
            if (level >= 0) return finishLong(LongComment, begin, begin + 4 + level, level);
            add(begin, line_.size(), TokenKind::Comment);
        } else if (const int level = levelOf(line_, begin); level >= 0) {
            return finishLong(LongString, begin, begin + 2 + level, level);
        } else if (c == u'"' || c == u'\'') {
            return finishQuoted(begin, begin + 1, c);
        } else if (beginsWord(c)) {
            at_ = endOfWord(line_, begin);
            const QStringView word = line_.mid(begin, at_ - begin);
            const bool member = begin > 0 && (line_[begin - 1] == u'.' || line_[begin - 1] == u':');
            if (std::ranges::find(KEYWORDS, word) != std::end(KEYWORDS))
                add(begin, at_, TokenKind::Keyword);
            else if (!member && std::ranges::find(LIBRARY, word) != std::end(LIBRARY))
                add(begin, at_, TokenKind::Type);
        } else if (isDigit(c) ||
                   (c == u'.' && begin + 1 < line_.size() && isDigit(line_[begin + 1]))) {
            add(begin, endOfNumber(line_, begin), TokenKind::Number);
        } else if (c == u'.') {
            // Two points join texts, and a number may follow.
            while (at_ < line_.size() && line_[at_] == u'.')
                ++at_;
        } else {
            ++at_;
        }
        return 0;
    }

    QStringView line_;
    std::vector<Token>& tokens_;
    qsizetype at_ = 0;
};

} // namespace

const CodeRules& luaRules() {
    static const std::vector<QStringView> words = [] {
        std::vector<QStringView> all(std::begin(KEYWORDS), std::end(KEYWORDS));
        all.insert(all.end(), std::begin(LIBRARY), std::end(LIBRARY));
        return all;
    }();
    static const CodeRules rules{.lineComment = QStringLiteral("--"),
                                 .scan =
                                         [](QStringView line, int state, std::vector<Token>& to) {
                                             return Scanner(line, to).run(state);
                                         },
                                 .words = words,
                                 .members = MEMBERS,
                                 .memberMarks = QStringLiteral(".:")};
    return rules;
}

} // namespace vlWinUi
