#pragma once
#include <vlMemory/String.h>

#include <QString>

namespace vlWinUi {

inline QString toQt(vlMemory::StringView text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) {
    return text.toStdString();
}

/// As Qt shows it where '&' would mark a shortcut letter.
inline QString labelToQt(vlMemory::StringView text) {
    return toQt(text).replace('&', "&&");
}

inline std::string labelFromQt(QString text) {
    return fromQt(text.replace("&&", "&"));
}

/// A tooltip as it is written: Qt takes what looks like marked-up text for such, and wraps nothing
/// else.
QString plainToolTip(const QString& text);

} // namespace vlWinUi
