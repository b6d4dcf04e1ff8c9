#include "code/CodeRules.h"

#include <algorithm>

namespace vlWinUi {

qsizetype endOfWord(QStringView line, qsizetype begin) {
    qsizetype end = begin;
    while (end < line.size() && (beginsWord(line[end]) || line[end].isDigit()))
        ++end;
    return end;
}

qsizetype endOfNumber(QStringView line, qsizetype begin) {
    const bool hexadecimal = line.mid(begin, 2).compare(u"0x", Qt::CaseInsensitive) == 0;
    const QStringView exponent = hexadecimal ? u"pP" : u"eE";
    qsizetype end = begin;
    for (; end < line.size(); ++end) {
        const QChar c = line[end];
        if (c.isLetterOrNumber() || c == u'_') continue;
        // Two points join texts.
        if (c == u'.' && line.mid(end, 2) != QStringView(u"..")) continue;
        const bool sign = (c == u'+' || c == u'-') && end > begin;
        if (!sign || !exponent.contains(line[end - 1])) break;
    }
    return end;
}

qsizetype endOfQuoted(QStringView line, qsizetype begin, QChar quote) {
    for (qsizetype at = begin; at < line.size(); ++at) {
        if (line[at] == u'\\')
            ++at;
        else if (line[at] == quote)
            return at + 1;
    }
    return line.size();
}

} // namespace vlWinUi
