#pragma once
#include <vlWinUi/Theme.h>

#include <QColor>
#include <QPalette>
#include <QString>

namespace vlWinUi {

/** Every colour that widgets are drawn in, derived from the five of a theme. */
struct Shades {
    explicit Shades(const Theme& theme);

    QPalette palette() const;
    /// A style sheet with {{name}} for the colours, filled in.
    QString fillIn(QString sheet) const;

    QColor background; ///< of windows and pages
    QColor bar;        ///< tool bars, tab bars, the status line
    QColor field;      ///< what is typed or chosen in: edits, lists, trees
    QColor raised;     ///< buttons
    QColor raisedHover;
    QColor pressed;
    QColor hover;        ///< lines under the mouse
    QColor border;       ///< around fields and groups
    QColor borderStrong; ///< around buttons, and under the mouse
    QColor focus;        ///< ring of what has the keyboard
    QColor accent;       ///< selection
    QColor accentText;   ///< on the accent
    QColor text;
    QColor muted;    ///< place-holders and captions
    QColor disabled; ///< text of what is disabled
    QColor problem;  ///< around a wrong content
    QColor error;    ///< text of what went wrong
    QColor warning;  ///< text of what may go wrong
};

/// How well one can be read on the other, 1 to 21.
double contrast(const QColor& a, const QColor& b);

} // namespace vlWinUi
