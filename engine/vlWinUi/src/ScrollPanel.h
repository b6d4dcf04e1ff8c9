#pragma once
#include <QWidget>

class QScrollBar;

namespace vlWinUi {

/** Holds a content that is never made smaller than what it needs: where there is less room, it
 * scrolls. Unlike Qt's scroll area it can hold native windows without making every widget around
 * them one. */
class ScrollPanel final : public QWidget {
public:
    ScrollPanel();

    QWidget* content() const { return content_; }
    /// What the content needs so that nothing scrolls.
    QSize contentMinimum() const;
    /// Scrolls until the widget inside is in view.
    void reveal(const QWidget* focused);
    /// False: it asks for what the content needs.
    void setScrolling(bool scrolling);
    QSize minimumSizeHint() const override { return scrolling_ ? QSize(24, 24) : contentMinimum(); }
    QSize sizeHint() const override { return contentMinimum(); }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void arrange();
    void scroll();

    QWidget* view_;
    QWidget* content_;
    QScrollBar* across_;
    QScrollBar* down_;
    bool scrolling_ = true;
};

} // namespace vlWinUi
