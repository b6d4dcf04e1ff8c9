#include "Call.h"
#include "Native.h"
#include "Text.h"
#include "code/CodeView.h"
#include "code/FindBar.h"

#include <vlCommon/ThreadBorder.h>
#include <vlWinUi/CodeEdit.h>

#include <QApplication>

#include <algorithm>

namespace vlWinUi {
namespace {

struct CodeEditNative final : Native {
    CodeEditNative() : Native(new CodeView) {
        listenTo(view().viewport());
        for (auto* part : view().findBar().findChildren<QWidget*>())
            listenTo(part);
        connect(&view(), &QPlainTextEdit::textChanged, this, [this] {
            if (quiet > 0 || view().isColoring()) return;
            touched = true;
            call(changed);
        });
    }
    CodeView& view() const { return *static_cast<CodeView*>(widget); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QPointer<QObject> self = this;
        // The bar inside is no other place.
        const QWidget* focus = QApplication::focusWidget();
        const bool inside = focus != nullptr && focus != widget && view().isAncestorOf(focus);
        const bool left = event->type() == QEvent::FocusOut && !inside &&
                          (watched == widget || focus != widget);
        if (left && std::exchange(touched, false)) call(edited);
        return self.isNull() || Native::eventFilter(watched, event);
    }

    std::function<void()> changed;
    std::function<void()> edited;
    bool touched = false;
};

const CodeRules* rulesOf(CodeEdit::Language language) {
    if (language == CodeEdit::Language::Lua) return &luaRules();
    return language == CodeEdit::Language::Hlsl ? &hlslRules() : nullptr;
}

CodeView& viewOf(const CodeEdit& edit) {
    return nativeAs<CodeEditNative>(edit).view();
}

} // namespace

CodeEdit::CodeEdit(std::string name)
    : Component(std::move(name), TYPE, std::make_unique<CodeEditNative>()) {
}

void CodeEdit::setText(vlMemory::StringView text) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<CodeEditNative>(*this);
    const Quiet quiet(native.quiet);
    native.touched = false;
    native.view().setText(toQt(text).replace("\r\n", "\n").replace('\r', '\n'));
}

std::string CodeEdit::getText() const {
    return fromQt(viewOf(*this).text());
}

void CodeEdit::setLanguage(Language language) {
    vlCommon::assertUiThread();
    auto& native = nativeAs<CodeEditNative>(*this);
    const Quiet quiet(native.quiet);
    native.view().setRules(rulesOf(language));
}

void CodeEdit::setPlaceHolder(vlMemory::StringView text) {
    viewOf(*this).setPlaceholderText(toQt(text));
}

void CodeEdit::setCompletions(std::vector<std::string> words) {
    vlCommon::assertUiThread();
    QStringList taken;
    for (const std::string& word : words) {
        QString text = toQt(word);
        if (!text.isEmpty() && beginsWord(text[0]) && endOfWord(text, 0) == text.size())
            taken.append(std::move(text));
    }
    viewOf(*this).completion().setWords(std::move(taken));
}

void CodeEdit::setReadOnly(bool readOnly) {
    CodeView& view = viewOf(*this);
    if (readOnly) view.completion().close();
    view.setReadOnly(readOnly);
    view.setTabChangesFocus(readOnly);
    if (readOnly)
        view.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void CodeEdit::setProblems(std::vector<CodeProblem> problems) {
    vlCommon::assertUiThread();
    CodeView& view = viewOf(*this);
    std::vector<CodeView::Problem> marked;
    const auto last = static_cast<std::size_t>(view.blockCount());
    for (const CodeProblem& problem : problems) {
        const std::size_t line = std::clamp<std::size_t>(problem.line, 1, last);
        const QTextBlock block = view.document()->findBlockByNumber(static_cast<int>(line) - 1);
        marked.push_back({QTextCursor(block), toQt(problem.message), problem.emphasis});
    }
    view.setProblems(std::move(marked));
}

void CodeEdit::goToLine(std::size_t line) {
    vlCommon::assertUiThread();
    CodeView& view = viewOf(*this);
    if (line < 1 || line > static_cast<std::size_t>(view.blockCount())) return;
    view.goTo(view.document()->findBlockByNumber(static_cast<int>(line) - 1));
}

std::size_t CodeEdit::getLine() const {
    return static_cast<std::size_t>(viewOf(*this).textCursor().blockNumber()) + 1;
}

CodeViewState CodeEdit::getViewState() const {
    return viewOf(*this).state();
}

void CodeEdit::setViewState(const CodeViewState& state) {
    vlCommon::assertUiThread();
    viewOf(*this).setState(state);
}

void CodeEdit::setChangeCallback(std::function<void()> callback) {
    nativeAs<CodeEditNative>(*this).changed = std::move(callback);
}

void CodeEdit::setEditedCallback(std::function<void()> callback) {
    nativeAs<CodeEditNative>(*this).edited = std::move(callback);
}

void CodeEdit::setUndoCallback(std::function<bool(bool)> callback) {
    viewOf(*this).undoWanted = std::move(callback);
}

} // namespace vlWinUi
