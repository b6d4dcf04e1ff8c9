#pragma once
#include <QString>

class QWidget;

namespace vlWinUi {

// The theme's style sheet is worn by top-level windows and not by the application: with one of the
// application's, Qt would style a widget and all in it anew each time that it is placed in another,
// while windows are built from the inside to the outside.

/// A top-level window that has no other window as its parent; to be called before it is shown.
void wearSheet(QWidget& window);
/// All windows that wear the sheet wear this one from now on.
void setSheet(const QString& sheet);
/// No window is remembered any more.
void forgetSheets();

} // namespace vlWinUi
