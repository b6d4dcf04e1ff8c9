#include "ScrollPanel.h"

#include "SurfaceNative.h"

#include <QApplication>
#include <QLayout>
#include <QScrollBar>
#include <QWheelEvent>

namespace vlWinUi {
namespace {

void setUp(QScrollBar& bar, int needed, int room) {
    bar.setRange(0, std::max(0, needed - room));
    bar.setPageStep(room);
    bar.setSingleStep(20);
    bar.setVisible(needed > room);
}

} // namespace

ScrollPanel::ScrollPanel()
    : view_(new QWidget(this)), content_(new QWidget(view_)),
      across_(new QScrollBar(Qt::Horizontal, this)), down_(new QScrollBar(Qt::Vertical, this)) {
    across_->hide();
    down_->hide();
    content_->installEventFilter(this);
    connect(across_, &QScrollBar::valueChanged, this, [this] { scroll(); });
    connect(down_, &QScrollBar::valueChanged, this, [this] { scroll(); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        reveal(now);
    });
}

QSize ScrollPanel::contentMinimum() const {
    return content_->layout() == nullptr ? QSize(0, 0) : content_->layout()->minimumSize();
}

void ScrollPanel::setScrolling(bool scrolling) {
    scrolling_ = scrolling;
    updateGeometry();
}

bool ScrollPanel::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) arrange();
    return QWidget::event(event);
}

bool ScrollPanel::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::ChildAdded) {
        arrange();
        updateGeometry();
    }
    return false;
}

void ScrollPanel::resizeEvent(QResizeEvent*) {
    arrange();
}

void ScrollPanel::arrange() {
    const QSize needed = contentMinimum();
    const int thickness = down_->sizeHint().width();
    QSize room = size();
    // One bar takes room that may make the other necessary.
    const bool tall = needed.height() > room.height();
    if (needed.width() > room.width() - (tall ? thickness : 0)) room.rheight() -= thickness;
    if (needed.height() > room.height()) room.rwidth() -= thickness;
    room = room.expandedTo(QSize(0, 0));
    view_->setGeometry(QRect(QPoint(0, 0), room));
    setUp(*across_, needed.width(), room.width());
    setUp(*down_, needed.height(), room.height());
    across_->setGeometry(0, room.height(), room.width(), thickness);
    down_->setGeometry(room.width(), 0, thickness, room.height());
    content_->resize(room.expandedTo(needed));
    scroll();
}

void ScrollPanel::scroll() {
    content_->move(across_->isHidden() ? 0 : -across_->value(),
                   down_->isHidden() ? 0 : -down_->value());
    SurfaceNative::clipInside(*content_);
}

void ScrollPanel::reveal(const QWidget* focused) {
    if (focused == nullptr || down_->isHidden() || !content_->isAncestorOf(focused)) return;
    const int top = focused->mapTo(content_, QPoint(0, 0)).y();
    const int bottom = top + focused->height();
    if (top < down_->value())
        down_->setValue(top - 8);
    else if (bottom > down_->value() + view_->height())
        down_->setValue(bottom - view_->height() + 8);
}

void ScrollPanel::wheelEvent(QWheelEvent* event) {
    QScrollBar* bar = down_->isHidden() ? across_ : down_;
    if (bar->isHidden()) {
        event->ignore();
        return;
    }
    bar->setValue(bar->value() - event->angleDelta().y() / 2);
    event->accept();
}

} // namespace vlWinUi
