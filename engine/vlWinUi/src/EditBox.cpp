#include "Call.h"
#include "KeyCodes.h"
#include "MixedValues.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/EditBox.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QStyle>

namespace vlWinUi {
namespace {

struct EditBoxNative final : Native {
    EditBoxNative() : Native(new QLineEdit) {
        connect(&edit(), &QLineEdit::textEdited, this, [this] {
            touched = typed = true;
            setMixed(false);
            call(changed);
        });
    }
    QLineEdit& edit() { return *static_cast<QLineEdit*>(widget); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QPointer<QObject> self = this;
        if (event->type() == QEvent::ShortcutOverride &&
            leavesToShortcut(*static_cast<QKeyEvent*>(event))) {
            event->ignore();
            return true;
        }
        if (event->type() == QEvent::FocusOut) typed = false;
        if (event->type() == QEvent::KeyPress) {
            const auto& key = *static_cast<QKeyEvent*>(event);
            if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) typed = false;
            if (key.key() == Qt::Key_Tab && key.modifiers() == Qt::NoModifier && takesTab())
                return true;
            call(keyDown, keyOf(key, true).virtualKey);
        }
        if (!self.isNull() && event->type() == QEvent::FocusOut && std::exchange(touched, false))
            call(edited);
        return self.isNull() || Native::eventFilter(watched, event);
    }

    void setMixed(bool now) {
        mixed = now;
        edit().setPlaceholderText(mixed ? MIXED_VALUES : placeHolder);
        describeAsMixed(edit(), mixed);
    }

    /// Qt's edit keeps undo and redo to itself always. Here what is being typed is undone first;
    /// where there is nothing of that, the keys are those of whoever has the shortcut.
    bool leavesToShortcut(const QKeyEvent& key) {
        if (key.matches(QKeySequence::Undo)) return !typed || !edit().isUndoAvailable();
        if (key.matches(QKeySequence::Redo)) return !typed || !edit().isRedoAvailable();
        return false;
    }

    bool takesTab() const {
        const auto copy = tab;
        return copy && copy();
    }

    std::function<void(std::uint32_t)> keyDown;
    std::function<bool()> tab;
    std::function<void()> changed;
    std::function<void()> edited;
    bool touched = false;
    bool typed = false; ///< since it was shown, entered or reached
    bool mixed = false;
    QString placeHolder;
    std::string problem;
    std::string ownToolTip;
};

const char* patternOf(EditBox::Numbers numbers) {
    return numbers == EditBox::Numbers::Digits ? "[0-9]*"
                                               : "[+-]?[0-9]*\\.?[0-9]*([eE][+-]?[0-9]*)?";
}

} // namespace

EditBox::EditBox(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<EditBoxNative>()) {
}

void EditBox::setText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<EditBoxNative>(*this);
    native.touched = native.typed = false;
    native.setMixed(false);
    const QString shown = toQt(text);
    // Setting the same text anew would throw the cursor to the end under the person's hands.
    if (native.edit().text() == shown) return;
    native.edit().setText(shown);
    // Of what is only looked at, the beginning says more than the end.
    if (!native.edit().hasFocus()) native.edit().setCursorPosition(0);
}

std::string EditBox::getText() const {
    return fromQt(widgetAs<QLineEdit>(*this).text());
}

void EditBox::setPlaceHolder(vlMemory::StringView text) {
    auto& native = nativeAs<EditBoxNative>(*this);
    native.placeHolder = toQt(text);
    native.setMixed(native.mixed);
    if (native.edit().accessibleName().isEmpty())
        native.edit().setAccessibleName(native.placeHolder);
}

void EditBox::setMixed() {
    setText({});
    nativeAs<EditBoxNative>(*this).setMixed(true);
}

bool EditBox::isMixed() const {
    return nativeAs<EditBoxNative>(*this).mixed;
}

void EditBox::setNumbers(Numbers numbers) {
    auto& edit = widgetAs<QLineEdit>(*this);
    const QValidator* old = edit.validator();
    edit.setValidator(numbers == Numbers::Any
                              ? nullptr
                              : new QRegularExpressionValidator(
                                        QRegularExpression(patternOf(numbers)), &edit));
    delete old;
}

void EditBox::setReadOnly(bool readOnly) {
    widgetAs<QLineEdit>(*this).setReadOnly(readOnly);
}

void EditBox::setProblem(vlMemory::StringView text) {
    auto& native = nativeAs<EditBoxNative>(*this);
    if (native.problem == text) return;
    if (native.problem.empty()) native.ownToolTip = native.toolTip;
    native.problem = text;
    setToolTip(text.empty() ? native.ownToolTip : native.problem);
    native.edit().setProperty("problem", !text.empty());
    native.edit().style()->unpolish(&native.edit());
    native.edit().style()->polish(&native.edit());
}

void EditBox::selectAll() {
    widgetAs<QLineEdit>(*this).selectAll();
}

std::string EditBox::getTextBeforeCursor() const {
    const auto& edit = widgetAs<QLineEdit>(*this);
    return fromQt(edit.text().left(edit.cursorPosition()));
}

void EditBox::insertAtCursor(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    widgetAs<QLineEdit>(*this).insert(toQt(text));
}

void EditBox::setTabCallback(std::function<bool()> callback) {
    nativeAs<EditBoxNative>(*this).tab = std::move(callback);
}

void EditBox::setKeyDownCallback(std::function<void(std::uint32_t)> callback) {
    nativeAs<EditBoxNative>(*this).keyDown = std::move(callback);
}

void EditBox::setChangeCallback(std::function<void()> callback) {
    nativeAs<EditBoxNative>(*this).changed = std::move(callback);
}

void EditBox::setEditedCallback(std::function<void()> callback) {
    nativeAs<EditBoxNative>(*this).edited = std::move(callback);
}

} // namespace vlWinUi
