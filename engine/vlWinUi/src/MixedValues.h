#pragma once
#include <QString>
#include <QWidget>

namespace vlWinUi {

inline const QString MIXED_VALUES = QStringLiteral("Mixed values");

/// Tells a screen reader what a field shows that stands for several values.
inline void describeAsMixed(QWidget& field, bool mixed) {
    field.setAccessibleDescription(mixed ? MIXED_VALUES : QString());
}

} // namespace vlWinUi
