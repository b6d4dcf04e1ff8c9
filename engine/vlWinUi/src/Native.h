#pragma once
#include <vlWinUi/Component.h>

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>

class QMouseEvent;

namespace vlWinUi {

/** The widget behind a component, and what every component does with it. Owned by the component;
 * the widget itself goes at the event loop's next turn, since one of its own events may be running.
 */
struct Native : QObject {
    explicit Native(QWidget* shown);
    ~Native() override;

    /// Where a layout puts what is placed in the component.
    virtual QWidget* content() { return widget; }
    /// Takes the widget out of whatever it is in.
    virtual void takeOutOfView();

    /// Reports clicks on a widget (the component's own, or the part of it that gets the mouse).
    void listenTo(QWidget* part);
    bool eventFilter(QObject* watched, QEvent* event) override;
    void updateToolTip();

    static Component* componentOf(const QObject* widget);
    /// Hands the menu key to the nearest component at or around the widget that wants it.
    static bool askForMenu(const QWidget* at);
    static bool isMenuKey(const QEvent& event);
    QWidget* widget; ///< never null: what it is placed in goes after it
    Component* component = nullptr;
    std::function<void(const ClickEvent&)> click;
    std::function<bool(const KeyEvent&)> keyFilter;
    std::function<void()> menuKey;
    std::unique_ptr<GridLayout> layout;
    std::unique_ptr<RelativeLayout> relativeLayout; ///< one of the two at most
    std::string toolTip;
    std::string shownToolTip;
    std::string shownKeys; ///< that do what the widget does: the tooltip ends with them
    std::string disabledReason;
    int quiet = 0; ///< more than 0: code is changing the widget

private:
    /// True when the key is not to go on, perhaps because the component is gone.
    bool handleKeys(QEvent& event);
};

ClickEvent clickOf(const QMouseEvent& event, bool pressed);

/// The concrete native of a component that made it itself.
template <class N> N& nativeAs(Component& component) {
    return static_cast<N&>(component.native());
}
template <class N> const N& nativeAs(const Component& component) {
    return static_cast<const N&>(component.native());
}
template <class W> W& widgetAs(const Component& component) {
    return *static_cast<W*>(component.native().widget);
}

} // namespace vlWinUi
