#pragma once
#include "Native.h"

#include <vlWinUi/KeyEvent.h>

#include <optional>

namespace vlWinUi {

class ElidedLabel;
class ScrollPanel;
class Window;

/** The widgets of a Window: a panel for what is placed in it and, once asked for, a status line
 * below. */
struct WindowNative final : Native {
    WindowNative();

    QWidget* content() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Where a top-level window is to appear; called before it is shown the first time.
    void place();
    void setStatus(const QString& text);
    void setHint(const QString& text);
    void addToStatusBar(QWidget& part, int width);

    ScrollPanel* panel = nullptr;
    QWidget* statusBar = nullptr; ///< null until first used, as is the label in it
    ElidedLabel* status = nullptr;
    QString statusText;
    QString hint;
    Rectangle rectangle;
    bool visibleOnLoad = true;
    bool placed = false;
    bool statusQueued = false;
    QPointer<QWidget> owner;
    std::function<void(unsigned, unsigned)> resized;
    std::function<void()> left;
    std::function<void(const KeyEvent&)> key;

private:
    void makeStatusBar();
    void showStatusSoon();
    bool handleKey(class QKeyEvent& event);
};

} // namespace vlWinUi
