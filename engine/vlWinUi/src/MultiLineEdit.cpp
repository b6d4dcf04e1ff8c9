#include "Call.h"
#include "KeyCodes.h"
#include "Native.h"
#include "Text.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/MultiLineEdit.h>

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QTextBlock>

namespace vlWinUi {
namespace {

struct MultiLineEditNative final : Native {
    MultiLineEditNative() : Native(new QPlainTextEdit) {
        edit().setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        edit().setLineWrapMode(QPlainTextEdit::NoWrap);
        edit().setTabStopDistance(4 * edit().fontMetrics().horizontalAdvance(' '));
        listenTo(edit().viewport());
        connect(&edit(), &QPlainTextEdit::textChanged, this, [this] {
            if (quiet > 0) return;
            touched = true;
            call(changed);
        });
    }
    QPlainTextEdit& edit() { return *static_cast<QPlainTextEdit*>(widget); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QPointer<QObject> self = this;
        if (watched == widget && event->type() == QEvent::KeyPress)
            call(keyDown, keyOf(*static_cast<QKeyEvent*>(event), true).virtualKey);
        if (!self.isNull() && event->type() == QEvent::FocusOut && std::exchange(touched, false))
            call(edited);
        return self.isNull() || Native::eventFilter(watched, event);
    }

    std::function<void(std::uint32_t)> keyDown;
    std::function<void()> changed;
    std::function<void()> edited;
    bool touched = false;
};

} // namespace

MultiLineEdit::MultiLineEdit(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<MultiLineEditNative>()) {
}

void MultiLineEdit::setText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<MultiLineEditNative>(*this);
    const Quiet quiet(native.quiet);
    native.touched = false;
    const QString shown = toQt(text);
    if (native.edit().toPlainText() != shown) native.edit().setPlainText(shown);
}

std::string MultiLineEdit::getText() const {
    return fromQt(widgetAs<QPlainTextEdit>(*this).toPlainText());
}

void MultiLineEdit::setPlaceHolder(vlMemory::StringView text) {
    widgetAs<QPlainTextEdit>(*this).setPlaceholderText(toQt(text));
}

void MultiLineEdit::setReadOnly(bool readOnly) {
    widgetAs<QPlainTextEdit>(*this).setReadOnly(readOnly);
}

void MultiLineEdit::setWrapping(bool wrapping) {
    widgetAs<QPlainTextEdit>(*this).setLineWrapMode(wrapping ? QPlainTextEdit::WidgetWidth
                                                             : QPlainTextEdit::NoWrap);
}

void MultiLineEdit::goToLine(std::size_t line) {
    auto& edit = widgetAs<QPlainTextEdit>(*this);
    const QTextBlock block = edit.document()->findBlockByNumber(static_cast<int>(line) - 1);
    if (!block.isValid()) return;
    edit.setTextCursor(QTextCursor(block));
    edit.centerCursor();
}

void MultiLineEdit::setKeyDownCallback(std::function<void(std::uint32_t)> callback) {
    nativeAs<MultiLineEditNative>(*this).keyDown = std::move(callback);
}

void MultiLineEdit::setChangeCallback(std::function<void()> callback) {
    nativeAs<MultiLineEditNative>(*this).changed = std::move(callback);
}

void MultiLineEdit::setEditedCallback(std::function<void()> callback) {
    nativeAs<MultiLineEditNative>(*this).edited = std::move(callback);
}

} // namespace vlWinUi
