#pragma once
#include "Native.h"

#include <vlWinUi/EditBox.h>
#include <vlWinUi/TabWindow.h>

#include <QStackedWidget>
#include <QTabBar>

#include <optional>

class QMouseEvent;

namespace vlWinUi {

/** The bar, which has the order of the tabs, and the pages, which each tab knows. */
struct TabWindowNative final : Native {
    TabWindowNative();

    bool eventFilter(QObject* watched, QEvent* event) override;

    bool has(std::size_t index) const { return index < static_cast<std::size_t>(bar->count()); }
    QWidget* pageAt(int index) const;
    int indexOf(const QWidget* page) const;
    bool isFixed(int index) const;
    void fix(int index);
    void insert(int index, QWidget* page, const QString& label);
    /// The pages decide, the bar follows.
    void syncBar();
    void edit(int index);
    void mark(int index, std::optional<Emphasis> emphasis);
    bool isMarked(int index) const;
    bool isEditing() const { return !edited.isNull(); }
    /// To the neighbour that is not fixed, as a person; false when there is none.
    bool step(int by, bool around);

    QTabBar* bar = nullptr;
    QStackedWidget* pages = nullptr;
    bool arrangeable = true;
    std::uint64_t nextPage = 0;
    std::function<bool(std::size_t, std::size_t)> switching;
    std::function<void(std::optional<std::size_t>, const ClickEvent&)> clicked;
    std::function<bool(std::size_t, const std::string&)> renamed;
    std::function<void(std::size_t)> closed;

private:
    void askForSwitch(int to);
    /// The page may also have been erased by its own name.
    void forgetPage();
    bool handleBar(QEvent& event);
    bool handleBarMouse(QMouseEvent& event);
    bool handleBarKey(int key);
    void dragTo(const QPoint& at);
    EditBox* makeField();
    /// Over the tab, and as wide as its text needs.
    void placeField();
    void finishEdit(bool accept);

    QPointer<QWidget> pressed; ///< the page of the tab that a button went down on
    QPointer<QWidget> edited;  ///< the page of the tab that is being renamed
    QPointer<QWidget> field;   ///< of the edit for that, once first used
    QPoint pressedAt;
    bool dragging = false;
};

} // namespace vlWinUi
