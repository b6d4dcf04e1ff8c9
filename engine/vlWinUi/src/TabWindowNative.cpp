#include "TabWindowNative.h"

#include "Call.h"
#include "Registry.h"
#include "Style.h"
#include "Text.h"

#include <vlWinUi/ComponentManager.h>
#include <vlWinUi/System.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr const char* FIXED = "vlFixedTab";
constexpr const char* MARK = "vlTabMark"; ///< the emphasis of a marked tab's dot, as a number
constexpr qreal MARK_SIZE = 6;            ///< across, pixels
constexpr qreal MARK_INSET = 7;           ///< of its middle from the tab's right end, pixels
constexpr int LONGEST_LABEL = 200;        ///< characters that are taken
constexpr int NARROWEST_FIELD = 90;       ///< pixels
constexpr int FIELD_ROOM = 24;            ///< around the text of the field, pixels
constexpr int SHORTENED_TAB = 130;        ///< no tab is narrower for want of room, pixels

/** Tabs that have no room scroll before their labels become unreadable. */
class TabBar final : public QTabBar {
protected:
    QSize minimumTabSizeHint(int index) const override {
        QSize size = tabSizeHint(index);
        size.setWidth(std::min(size.width(), SHORTENED_TAB));
        return size;
    }
    void paintEvent(QPaintEvent* event) override {
        QTabBar::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (int i = 0; i < count(); ++i) {
            const auto* page = static_cast<const QWidget*>(tabData(i).value<void*>());
            const QVariant mark = page == nullptr ? QVariant() : page->property(MARK);
            if (!mark.isValid()) continue;
            painter.setBrush(colorOf(static_cast<Emphasis>(mark.toInt())));
            const QRectF tab = tabRect(i);
            painter.drawEllipse(QPointF(tab.right() - MARK_INSET, tab.center().y()),
                                MARK_SIZE / 2,
                                MARK_SIZE / 2);
        }
    }

private:
    static QColor colorOf(Emphasis emphasis) {
        const Shades& shades = Registry::slot()->style->getShades();
        if (emphasis == Emphasis::Error) return shades.error;
        return emphasis == Emphasis::Warning ? shades.warning : shades.muted;
    }
};

} // namespace

TabWindowNative::TabWindowNative() : Native(new QWidget) {
    bar = new TabBar;
    bar->setExpanding(false);
    bar->setDrawBase(false);
    bar->setFocusPolicy(Qt::TabFocus);
    bar->setElideMode(Qt::ElideRight);
    bar->setTabsClosable(true);
    pages = new QStackedWidget;
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar);
    column->addWidget(pages, 1);
    listenTo(bar);
    connect(bar, &QTabBar::currentChanged, this, [this](int index) {
        if (quiet == 0 && index >= 0) askForSwitch(index);
    });
    connect(bar, &QTabBar::tabCloseRequested, this, [this](int index) {
        call(closed, static_cast<std::size_t>(index));
    });
    connect(pages, &QStackedWidget::widgetRemoved, this, [this] { forgetPage(); });
}

QWidget* TabWindowNative::pageAt(int index) const {
    return static_cast<QWidget*>(bar->tabData(index).value<void*>());
}

int TabWindowNative::indexOf(const QWidget* page) const {
    for (int i = 0; i < bar->count(); ++i)
        if (pageAt(i) == page) return i;
    return -1;
}

bool TabWindowNative::isFixed(int index) const {
    const QWidget* page = pageAt(index);
    return page != nullptr && page->property(FIXED).toBool();
}

void TabWindowNative::fix(int index) {
    pageAt(index)->setProperty(FIXED, true);
    // Without its cross it is as narrow as its label.
    QWidget* cross = bar->tabButton(index, QTabBar::RightSide);
    if (cross == nullptr) return;
    bar->setTabButton(index, QTabBar::RightSide, nullptr);
    cross->deleteLater();
}

void TabWindowNative::mark(int index, std::optional<Emphasis> emphasis) {
    const QVariant mark = emphasis ? QVariant(static_cast<int>(*emphasis)) : QVariant();
    QWidget* page = pageAt(index);
    if (page->property(MARK) == mark) return;
    page->setProperty(MARK, mark);
    bar->update();
}

bool TabWindowNative::isMarked(int index) const {
    return pageAt(index)->property(MARK).isValid();
}

void TabWindowNative::insert(int index, QWidget* page, const QString& label) {
    const Quiet guard(quiet);
    finishEdit(false);
    bar->insertTab(index, label);
    bar->setTabData(index, QVariant::fromValue(static_cast<void*>(page)));
    pages->addWidget(page);
    syncBar();
}

bool TabWindowNative::eventFilter(QObject* watched, QEvent* event) {
    const QPointer<QObject> self = this;
    if (field != nullptr && watched == field) {
        const bool leaves = event->type() == QEvent::FocusOut &&
                            static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason;
        if (leaves) finishEdit(true);
        return false;
    }
    if (watched == bar && handleBar(*event)) return true;
    return self.isNull() || Native::eventFilter(watched, event);
}

bool TabWindowNative::handleBar(QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return handleBarMouse(static_cast<QMouseEvent&>(event));
    case QEvent::KeyPress:
        return handleBarKey(static_cast<QKeyEvent&>(event).key());
    case QEvent::Wheel: {
        // Past the last tab it would reach what only a wish of its own should.
        const QPoint turn = static_cast<QWheelEvent&>(event).angleDelta();
        const int by = turn.y() != 0 ? turn.y() : turn.x();
        if (by != 0) step(by > 0 ? -1 : 1, false);
        return true;
    }
    default:
        return false;
    }
}

bool TabWindowNative::handleBarMouse(QMouseEvent& event) {
    const QPoint at = event.position().toPoint();
    if (event.type() == QEvent::MouseMove) {
        if (event.buttons().testFlag(Qt::LeftButton)) dragTo(at);
        return false;
    }
    const QPointer<QObject> self = this;
    const int tab = bar->tabAt(at);
    QWidget* page = tab < 0 ? nullptr : pageAt(tab);
    const bool down = event.type() != QEvent::MouseButtonRelease;
    const bool again = event.type() == QEvent::MouseButtonDblClick && page == pressed;
    const bool middle = event.button() == Qt::MiddleButton;
    const bool closes =
            !down && middle && arrangeable && page != nullptr && page == pressed && !isFixed(tab);
    if (down) {
        pressed = page;
        pressedAt = at;
        dragging = false;
    }
    call(clicked,
         tab < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(tab)),
         clickOf(event, down));
    if (self.isNull()) return true;
    if (again && event.button() == Qt::LeftButton && page != nullptr) {
        edit(indexOf(page));
        return true;
    }
    if (closes) call(closed, static_cast<std::size_t>(indexOf(page)));
    return self.isNull();
}

/// A tab takes a neighbour's place once the mouse is past the neighbour's middle: broad and narrow
/// tabs then do not flicker.
void TabWindowNative::dragTo(const QPoint& at) {
    const int from = pressed == nullptr ? -1 : indexOf(pressed);
    if (from < 0 || isFixed(from) || isEditing() || !arrangeable) return;
    if (!dragging && (at - pressedAt).manhattanLength() < QApplication::startDragDistance()) return;
    dragging = true;
    const int to = bar->tabAt(QPoint(at.x(), bar->height() / 2));
    if (to < 0 || to == from || isFixed(to)) return;
    const int middle = bar->tabRect(to).center().x();
    if (to > from ? at.x() < middle : at.x() > middle) return;
    const Quiet guard(quiet);
    bar->moveTab(from, to);
}

bool TabWindowNative::handleBarKey(int key) {
    if (key == Qt::Key_Left || key == Qt::Key_Right) {
        step(key == Qt::Key_Left ? -1 : 1, false);
        return true;
    }
    if (key != Qt::Key_F2) return false;
    edit(bar->currentIndex());
    return true;
}

bool TabWindowNative::step(int by, bool around) {
    const int count = bar->count();
    int at = bar->currentIndex();
    for (int i = 0; i < count; ++i) {
        at += by;
        if (around) at = (at + count) % count;
        if (at < 0 || at >= count) return false;
        if (isFixed(at)) continue;
        bar->setCurrentIndex(at);
        return true;
    }
    return false;
}

void TabWindowNative::askForSwitch(int to) {
    const QPointer<QObject> self = this;
    finishEdit(true);
    const QPointer<QWidget> wanted = pageAt(to);
    const int from = indexOf(pages->currentWidget());
    if (from == to || wanted == nullptr) return;
    const auto ask = switching;
    const bool allowed = !ask || ask(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
    if (self.isNull()) return;
    if (allowed && wanted != nullptr && pages->indexOf(wanted) >= 0)
        pages->setCurrentWidget(wanted);
    syncBar();
}

void TabWindowNative::forgetPage() {
    const Quiet guard(quiet);
    finishEdit(false);
    for (int i = bar->count() - 1; i >= 0; --i)
        if (pages->indexOf(pageAt(i)) < 0) bar->removeTab(i);
    syncBar();
}

void TabWindowNative::syncBar() {
    const Quiet guard(quiet);
    bar->setCurrentIndex(indexOf(pages->currentWidget()));
}

void TabWindowNative::edit(int index) {
    if (index < 0 || isFixed(index) || !arrangeable) return;
    finishEdit(true);
    EditBox* edit = makeField();
    if (edit == nullptr) return;
    edited = pageAt(index);
    edit->setText(labelFromQt(bar->tabText(index)));
    edit->selectAll();
    placeField();
    field->raise();
    field->show();
    field->setFocus(Qt::OtherFocusReason);
}

void TabWindowNative::placeField() {
    const int index = edited == nullptr ? -1 : indexOf(edited);
    if (index < 0 || field == nullptr) return;
    const QRect tab = bar->tabRect(index);
    const QString text = toQt(static_cast<const EditBox*>(componentOf(field))->getText());
    const int needed = field->fontMetrics().horizontalAdvance(text) + FIELD_ROOM;
    const int width = std::min(std::max({NARROWEST_FIELD, tab.width() - 6, needed}), bar->width());
    const int left = std::clamp(tab.left() + 3, 0, std::max(0, bar->width() - width));
    field->setGeometry(left, tab.top() + 3, width, tab.height() - 5);
}

EditBox* TabWindowNative::makeField() {
    auto* edit =
            ComponentManager::createOrRetrieve<EditBox>(component->getComponentName() + "_RENAME");
    if (edit == nullptr || edit->native().widget == field) return edit;
    field = edit->native().widget;
    edit->setAccessibleName("Name of the tab");
    edit->setKeyDownCallback([this](std::uint32_t key) {
        if (key == 13) finishEdit(true);
        if (key == 27) finishEdit(false);
    });
    edit->setChangeCallback([this] { placeField(); });
    field->setParent(bar);
    field->installEventFilter(this);
    return edit;
}

void TabWindowNative::finishEdit(bool accept) {
    if (!isEditing()) return;
    const int index = indexOf(edited);
    edited = nullptr;
    if (field == nullptr) return;
    const auto* edit = static_cast<const EditBox*>(componentOf(field));
    if (edit == nullptr) return;
    const QString label = toQt(edit->getText()).simplified().left(LONGEST_LABEL);
    const bool hadFocus = field->hasFocus();
    field->hide();
    if (hadFocus) bar->setFocus(Qt::OtherFocusReason);
    if (!accept || index < 0 || label == toQt(labelFromQt(bar->tabText(index)))) return;
    if (label.isEmpty()) return System::showHint("A tab needs a name: it keeps the one it has.");
    const auto ask = renamed;
    const QPointer<QObject> self = this;
    const QPointer<QWidget> page = pageAt(index);
    if (ask && !ask(static_cast<std::size_t>(index), fromQt(label))) return;
    if (self.isNull() || page == nullptr) return;
    static_cast<TabWindow*>(component)->renameTab(static_cast<std::size_t>(indexOf(page)),
                                                  fromQt(label));
}

} // namespace vlWinUi
