#pragma once
#include "Native.h"

#include <vlWinUi/Surface.h>

#include <QImage>
#include <QWindow>

namespace vlWinUi {

class SurfaceWindow;

/** What a Surface stands on: an X window in a container, or a widget that shows pictures. */
struct SurfaceNative final : Native {
    /// The native window's property that says which widget it is in.
    static constexpr const char* WIDGET = "vlWidget";

    static std::unique_ptr<SurfaceNative> make();
    /// What scrolls has moved: native windows inside, which it does not clip, show only what lies
    /// within all that is around them.
    static void clipInside(const QWidget& scrolled);
    explicit SurfaceNative(QWidget* shown, SurfaceWindow* drawnInto);
    ~SurfaceNative() override;

    bool eventFilter(QObject* watched, QEvent* event) override;
    /// Into a hidden window, so that the X window below lives on.
    void takeOutOfView() override;
    double scale() const { return widget->devicePixelRatioF(); }

    QPointer<QObject> windowGuard;
    SurfaceWindow* window = nullptr; ///< null for pictures
    bool exposed = false;
    bool clipped = false;
    QSize size; ///< physical pixels, as last told

    std::function<void(bool)> exposeChanged;
    std::function<void(unsigned, unsigned)> resized;
    std::function<void(bool)> focusChanged;
    std::function<void(const MouseMoveEvent&)> moved;
    std::function<void()> left;
    std::function<void(float)> wheeled;
    std::function<void(const KeyEvent&)> key;
    std::function<void()> lost;

private:
    void handle(QEvent& event);
    void handleMouse(class QMouseEvent& event);
    void tellExposed();
    void tellSize();
};

/** Shows the last picture one to one. */
class PictureWidget final : public QWidget {
public:
    PictureWidget();
    void show(QImage picture);
    const QImage& picture() const { return picture_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage picture_;
};

} // namespace vlWinUi
