#pragma once
#include <QWidget>

#include <functional>

namespace vlWinUi {

/** The border between two columns or rows, to be dragged. It lies over the gap that is kept free
 * between components and shows itself while the mouse is on it. */
class SplitHandle final : public QWidget {
public:
    SplitHandle(QWidget* parent, bool betweenColumns);

    std::function<void()> pressed;
    /// Pixels since the press, along the axis.
    std::function<void(int)> moved;
    std::function<void()> released;
    std::function<void()> doubleClicked;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    int along(const QMouseEvent& event) const;

    bool betweenColumns_;
    bool dragging_ = false;
    int from_ = 0;
};

} // namespace vlWinUi
