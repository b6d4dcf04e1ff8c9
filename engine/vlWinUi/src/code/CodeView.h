#pragma once
#include "code/CodeHighlighter.h"
#include "code/Completion.h"

#include <vlWinUi/CodeEdit.h>

#include <QPlainTextEdit>
#include <QPointer>
#include <QTextBlock>

#include <functional>
#include <map>
#include <vector>

namespace vlWinUi {

struct Shades;
class FindBar;
class LineNumbers;

/// Of what is wrong to that degree.
QColor colorOf(Emphasis emphasis, const Shades& shades);

/** The widget of a CodeEdit. */
class CodeView final : public QPlainTextEdit {
public:
    struct Problem {
        QTextCursor line; ///< moves with the text
        QString message;
        Emphasis emphasis = Emphasis::None;
    };

    CodeView();

    void setRules(const CodeRules* rules);
    const CodeRules* rules() const { return highlighter_.getRules(); }
    const WordIndex& wordIndex() const { return highlighter_.words(); }
    bool isColoring() const { return highlighter_.isColoring(); }
    bool isQuoted(int position) const { return highlighter_.isQuoted(position); }
    void setText(const QString& text);
    QString text() const;
    Completion& completion() { return completion_; }
    CodeViewState state() const;
    /// What lies outside of the text is brought to its nearest end.
    void setState(const CodeViewState& state);
    void setProblems(std::vector<Problem> problems);
    /// The gravest one of a line, with the messages of all; null when it has none.
    const Problem* problemIn(int block) const;
    /// As a tooltip, for the line at that height of the viewport.
    void showProblem(int y, const QPoint& screen);
    void goTo(const QTextBlock& block);
    /// The margin, and the bar while it is shown, in their places around the text.
    void placeParts();
    void zoom(int steps);
    void resetZoom();
    FindBar& findBar() { return findBar_; }
    /// In the viewport's pixels.
    void forVisibleBlocks(const std::function<void(const QTextBlock&, const QRectF&)>& visit) const;

    /// True takes it away from the view's own history.
    std::function<bool(bool redo)> undoWanted;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool handleCommand(const QKeyEvent& key);
    bool handleEdit(const QKeyEvent& key);
    /// A line feed, one step further in behind an opening brace.
    void breakLine();
    /// The bracket, as far in as the line of the one that it closes.
    void closeBrace();
    void undoOrRedo(bool redo);
    void setFontSize(double points);
    void colorVisible();
    void indexProblems();
    void updateSelections();

    CodeHighlighter highlighter_;
    LineNumbers& numbers_;
    FindBar& findBar_;
    Completion& completion_;
    std::vector<Problem> problems_;
    std::map<int, Problem> problemsByLine_;
    double ownFontSize_ = 0; ///< points
    bool isClearing_ = false;
};

} // namespace vlWinUi
