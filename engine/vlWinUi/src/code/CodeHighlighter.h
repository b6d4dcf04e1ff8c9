#pragma once
#include "code/CodeRules.h"
#include "code/WordIndex.h"

#include <QSyntaxHighlighter>

#include <memory>
#include <vector>

namespace vlWinUi {

/** Colours the lines in view, and knows where the brackets are of all. Every line is scanned, since
 *  the next one depends on it, which is quick; to colour it is not, and waits until it is shown. */
class CodeHighlighter final : public QSyntaxHighlighter {
public:
    /// A bracket in the code itself, not in a text or a comment.
    struct Bracket {
        int at; ///< in the line
        char16_t letter;
    };

    explicit CodeHighlighter(QTextDocument* document);

    /// Null colours nothing.
    void setRules(const CodeRules* rules);
    const CodeRules* getRules() const { return rules_; }
    /// Colours what is not yet, from one block to another.
    void show(int firstBlock, int lastBlock);
    /// Meanwhile the document says that it changes, which it does not.
    bool isColoring() const { return coloring_; }
    /// The theme is another one.
    void colorAnew();
    /// The bracket at that place of the document and the one that belongs to it; where that is
    /// missing or of another kind, only the one. Empty without a bracket there, and where that is
    /// too far off to look for.
    std::vector<int> bracketsAt(int position) const;
    /// Whether that bracket stands there, in the code itself.
    bool hasBracket(int position, QChar letter) const;
    /// Whether the letter there is part of a text or a comment.
    bool isQuoted(int position) const;
    /// The names in the code, not in texts and comments, that are long enough to be worth offering.
    const WordIndex& words() const { return *words_; }

protected:
    void highlightBlock(const QString& text) override;

private:
    const CodeRules* rules_ = nullptr;
    int firstShown_ = 0;
    int lastShown_ = 0;
    int generation_ = 1; ///< of the colours
    bool coloring_ = false;
    std::vector<Token> tokens_;
    std::shared_ptr<WordIndex> words_; ///< shared with the lines, which may live longer
};

} // namespace vlWinUi
