#pragma once
#include "code/CodeRules.h"

#include <QListWidget>
#include <QStringList>

#include <span>

class QKeyEvent;

namespace vlWinUi {

class CodeView;

/** Offers words that go on with what is typed in code: from two letters on, or when asked for. The
 *  list stands inside the view below the word, and takes no keyboard focus. */
class Completion final : public QObject {
public:
    explicit Completion(CodeView& view);

    /// Offered before the language's words and those of the text.
    void setWords(QStringList words) { words_ = std::move(words); }
    bool isOpen() const { return !list_.isHidden(); }
    /// What is offered, from the top; for tests.
    QStringList offered() const;
    /// A letter was typed.
    void typed();
    /// Asked for: also without a letter before the cursor.
    void open();
    void close();
    /// Whether the key means the open list.
    bool wants(const QKeyEvent& key) const;
    /// What such a key does; false leaves it to the view, and the list is closed.
    bool handle(const QKeyEvent& key);
    /// The cursor or what is in view has changed.
    void follow();

private:
    /// How many letters of a word stand before the cursor; -1 inside a number, text or comment.
    int prefixLength() const;
    QStringList candidates(const QString& prefix) const;
    /// Those that can stand where the cursor is.
    std::span<const QStringView> languageWords(const QString& prefix) const;
    bool isComplete(const QString& prefix) const;
    void offer(bool asked);
    void place();
    void take();

    CodeView& view_;
    QListWidget& list_;
    QStringList words_;
    int begin_ = 0;      ///< of the word, in the document
    bool asked_ = false; ///< by the key, not by typing
};

} // namespace vlWinUi
