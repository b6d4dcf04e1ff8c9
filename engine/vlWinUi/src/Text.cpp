#include "Text.h"

#include <QTextDocument>

namespace vlWinUi {
namespace {

constexpr qsizetype LONGEST_LINE = 120; ///< that is not wrapped, in characters
constexpr qsizetype LONGEST_TIP = 4000; ///< characters

} // namespace

QString plainToolTip(const QString& text) {
    if (text.size() <= LONGEST_LINE && !Qt::mightBeRichText(text)) return text;
    const QString shown = text.size() > LONGEST_TIP ? text.left(LONGEST_TIP) + QChar(0x2026) : text;
    return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(shown.toHtmlEscaped());
}

} // namespace vlWinUi
