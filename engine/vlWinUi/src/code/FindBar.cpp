#include "code/FindBar.h"

#include "code/CodeView.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBlock>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int SIDE_ROOM = 4; ///< pixels

template <class W> W* add(QHBoxLayout& row, W* widget, const char* name, int stretch = 0) {
    widget->setAccessibleName(name);
    row.addWidget(widget, stretch);
    return widget;
}

} // namespace

FindBar::FindBar(CodeView& view) : QWidget(&view), view_(view) {
    setAttribute(Qt::WA_StyledBackground);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    auto& row = *new QHBoxLayout(this);
    row.setContentsMargins(SIDE_ROOM, 2, SIDE_ROOM, 2);
    row.setSpacing(SIDE_ROOM);
    caption_ = new QLabel;
    row.addWidget(caption_);
    wanted_ = add(row, new QLineEdit, "Find", 2);
    exact_ = add(row, new QCheckBox("Match case"), "Match case");
    next_ = add(row, new QPushButton("Next"), "Find the next one");
    replacement_ = add(row, new QLineEdit, "Replace with", 2);
    replacement_->setPlaceholderText("Replace with");
    replace_ = add(row, new QPushButton("Replace"), "Replace this one");
    replaceAll_ = add(row, new QPushButton("All"), "Replace all");
    outcome_ = new QLabel;
    outcome_->setMinimumWidth(1);
    row.addWidget(outcome_, 1);
    next_->setToolTip("F3; back with Shift+F3");
    for (auto* button : {next_, replace_, replaceAll_})
        button->setAutoDefault(false);
    connect(next_, &QPushButton::clicked, this, [this] { accept(false); });
    connect(replace_, &QPushButton::clicked, this, [this] { replaceOne(); });
    connect(replaceAll_, &QPushButton::clicked, this, [this] { replaceAll(); });
    connect(wanted_, &QLineEdit::textEdited, this, [this] {
        // From where the match begins, so that each letter makes it longer and does not leave it.
        if (mode_ != Mode::Line) find(false, view_.textCursor().selectionStart());
    });
    hide();
}

void FindBar::open(Mode mode) {
    mode_ = mode;
    const bool line = mode == Mode::Line;
    const bool replace = mode == Mode::Replace && !view_.isReadOnly();
    caption_->setText(line ? "Go to line" : "Find");
    wanted_->setAccessibleName(caption_->text());
    next_->setText(line ? "Go" : "Next");
    exact_->setVisible(!line);
    for (QWidget* part : {static_cast<QWidget*>(replacement_),
                          static_cast<QWidget*>(replace_),
                          static_cast<QWidget*>(replaceAll_)})
        part->setVisible(replace);
    const QString selected = view_.textCursor().selectedText();
    if (line)
        wanted_->setText(QString::number(view_.textCursor().blockNumber() + 1));
    else if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        wanted_->setText(selected);
    wanted_->selectAll();
    say({});
    show();
    view_.placeParts();
    wanted_->setFocus(Qt::ShortcutFocusReason);
}

void FindBar::close() {
    hide();
    view_.placeParts();
    view_.setFocus(Qt::OtherFocusReason);
}

bool FindBar::findNext(bool backwards) {
    if (mode_ == Mode::Line || wanted_->text().isEmpty()) return false;
    const QTextCursor cursor = view_.textCursor();
    find(backwards, backwards ? cursor.selectionStart() : cursor.selectionEnd());
    return outcome_->text().isEmpty();
}

void FindBar::find(bool backwards, int from) {
    if (wanted_->text().isEmpty()) return say({});
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindBackward, backwards);
    flags.setFlag(QTextDocument::FindCaseSensitively, exact_->isChecked());
    const QTextDocument& document = *view_.document();
    QTextCursor found = document.find(wanted_->text(), from, flags);
    if (found.isNull())
        found = document.find(
                wanted_->text(), backwards ? document.characterCount() - 1 : 0, flags);
    say(found.isNull() ? "Not found" : QString());
    if (!found.isNull()) view_.setTextCursor(found);
}

QString FindBar::selectedMatch() const {
    const QString selected = view_.textCursor().selectedText();
    const auto sensitivity = exact_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
    return selected.compare(wanted_->text(), sensitivity) == 0 ? selected : QString();
}

void FindBar::replaceOne() {
    if (view_.isReadOnly() || wanted_->text().isEmpty()) return;
    if (!selectedMatch().isEmpty()) view_.textCursor().insertText(replacement_->text());
    findNext();
}

void FindBar::replaceAll() {
    if (view_.isReadOnly() || wanted_->text().isEmpty()) return;
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindCaseSensitively, exact_->isChecked());
    QTextCursor edit(view_.document());
    int count = 0;
    edit.beginEditBlock();
    for (int from = 0;; ++count) {
        QTextCursor found = view_.document()->find(wanted_->text(), from, flags);
        if (found.isNull()) break;
        found.insertText(replacement_->text());
        from = found.position();
    }
    edit.endEditBlock();
    say(count == 0 ? QStringLiteral("Not found") : QStringLiteral("%1 replaced").arg(count));
}

void FindBar::accept(bool backwards) {
    if (mode_ != Mode::Line) {
        findNext(backwards);
        return;
    }
    bool isNumber = false;
    const int line = wanted_->text().trimmed().toInt(&isNumber);
    if (!isNumber || line < 1) return say("Not a line");
    const int last = view_.document()->blockCount();
    view_.goTo(view_.document()->findBlockByNumber(std::min(line, last) - 1));
    close();
}

void FindBar::say(const QString& text) {
    outcome_->setText(text);
    outcome_->setAccessibleName(text);
}

bool FindBar::event(QEvent* event) {
    // Escape would otherwise close the window that the code stands in.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool control = event->modifiers().testFlag(Qt::ControlModifier);
    // What the bar leaves does not go on to the code under it.
    event->accept();
    if (event->key() == Qt::Key_Escape) return close();
    if (event->key() == Qt::Key_F3) return static_cast<void>(findNext(shift));
    if (control && event->key() == Qt::Key_F) return open(Mode::Find);
    if (control && event->key() == Qt::Key_H) return open(Mode::Replace);
    if (control && event->key() == Qt::Key_G) return open(Mode::Line);
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return;
    if (replacement_->hasFocus())
        replaceOne();
    else
        accept(shift);
}

} // namespace vlWinUi
