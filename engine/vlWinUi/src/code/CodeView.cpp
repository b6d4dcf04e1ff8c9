#include "code/CodeView.h"

#include "Registry.h"
#include "Style.h"
#include "code/CodeLines.h"
#include "code/FindBar.h"
#include "code/LineNumbers.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace vlWinUi {
namespace {

constexpr int AHEAD = 50;      ///< lines coloured around those in view
constexpr double SMALLEST = 6; ///< points
constexpr double LARGEST = 48; ///< points
constexpr std::size_t MOST_PROBLEMS = 1000;

const Shades& shades() {
    return Registry::slot()->style->getShades();
}

/// The part that differs, from the begin to the ends.
struct Difference {
    qsizetype begin, oldEnd, newEnd;
};

Difference differenceOf(const QString& before, const QString& after) {
    const auto [a, b] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const qsizetype begin = a - before.begin();
    qsizetype same = 0;
    const qsizetype most = std::min(before.size(), after.size()) - begin;
    while (same < most && before[before.size() - 1 - same] == after[after.size() - 1 - same])
        ++same;
    return {begin, before.size() - same, after.size() - same};
}

} // namespace

QColor colorOf(Emphasis emphasis, const Shades& shades) {
    if (emphasis == Emphasis::Error) return shades.error;
    return emphasis == Emphasis::Warning ? shades.warning : shades.muted;
}

CodeView::CodeView()
    : highlighter_(document()), numbers_(*new LineNumbers(*this)), findBar_(*new FindBar(*this)),
      completion_(*new Completion(*this)) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ownFontSize_ = font().pointSizeF();
    setLineWrapMode(NoWrap);
    setProperty("code", true);
    connect(this, &QPlainTextEdit::blockCountChanged, this, [this] {
        placeParts();
        if (!problems_.empty()) indexProblems();
    });
    connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& area, int dy) {
        if (dy != 0)
            numbers_.scroll(0, dy);
        else
            numbers_.update(0, area.y(), numbers_.width(), area.height());
        colorVisible();
    });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        updateSelections();
        numbers_.update();
        completion_.follow();
    });
    for (QScrollBar* bar : {verticalScrollBar(), horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, [this] { completion_.follow(); });
    setFontSize(ownFontSize_);
}

void CodeView::setRules(const CodeRules* rules) {
    if (rules != highlighter_.getRules()) completion_.close();
    highlighter_.setRules(rules);
}

QString CodeView::text() const {
    // toPlainText() would make spaces of those that do not break.
    QString text = document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

void CodeView::setText(const QString& text) {
    const QString before = this->text();
    if (before == text) return;
    completion_.close();
    if (before.isEmpty() || text.isEmpty()) {
        isClearing_ = true;
        setPlainText(text);
        isClearing_ = false;
        problems_.empty() ? updateSelections() : indexProblems();
        return;
    }
    const Difference changed = differenceOf(before, text);
    const int top = verticalScrollBar()->value();
    const int linesBefore = blockCount();
    QTextCursor edit(document());
    edit.setPosition(static_cast<int>(changed.begin));
    const bool above = edit.blockNumber() < top;
    edit.setPosition(static_cast<int>(changed.oldEnd), QTextCursor::KeepAnchor);
    const bool whollyAbove = above && edit.blockNumber() < top;
    QTextCursor cursor = textCursor();
    const int line = cursor.blockNumber();
    const int column = cursor.positionInBlock();
    const bool inside = cursor.position() > changed.begin && cursor.position() < changed.oldEnd;
    edit.insertText(text.mid(changed.begin, changed.newEnd - changed.begin));
    if (inside) {
        const QTextBlock at = document()->findBlockByNumber(std::min(line, blockCount() - 1));
        cursor.setPosition(at.position() + std::min(column, at.length() - 1));
        setTextCursor(cursor);
    }
    document()->clearUndoRedoStacks();
    verticalScrollBar()->setValue(whollyAbove ? top + blockCount() - linesBefore : top);
}

CodeViewState CodeView::state() const {
    const auto placeOf = [this](int position) {
        const QTextBlock block = document()->findBlock(position);
        return CodeViewState::Place{static_cast<std::size_t>(block.blockNumber()) + 1,
                                    static_cast<std::size_t>(position - block.position())};
    };
    return {.cursor = placeOf(textCursor().position()),
            .anchor = placeOf(textCursor().anchor()),
            .topLine = static_cast<std::size_t>(firstVisibleBlock().blockNumber()) + 1,
            .scrolledRight = horizontalScrollBar()->value()};
}

void CodeView::setState(const CodeViewState& state) {
    completion_.close();
    const auto positionOf = [this](const CodeViewState::Place& place) {
        const auto line =
                std::clamp<std::size_t>(place.line, 1, static_cast<std::size_t>(blockCount()));
        const QTextBlock block = document()->findBlockByNumber(static_cast<int>(line) - 1);
        const auto longest = static_cast<std::size_t>(block.length()) - 1;
        return block.position() + static_cast<int>(std::min(place.column, longest));
    };
    QTextCursor cursor(document());
    cursor.setPosition(positionOf(state.anchor));
    cursor.setPosition(positionOf(state.cursor), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
    const auto top = std::min(state.topLine, static_cast<std::size_t>(blockCount()));
    verticalScrollBar()->setValue(std::max(static_cast<int>(top) - 1, 0));
    horizontalScrollBar()->setValue(state.scrolledRight);
}

void CodeView::setProblems(std::vector<Problem> problems) {
    problems_ = std::move(problems);
    if (problems_.size() > MOST_PROBLEMS) problems_.resize(MOST_PROBLEMS);
    indexProblems();
}

void CodeView::indexProblems() {
    problemsByLine_.clear();
    for (const Problem& problem : problems_) {
        const auto [at, added] = problemsByLine_.try_emplace(problem.line.blockNumber(), problem);
        if (added) continue;
        at->second.message += u'\n' + problem.message;
        at->second.emphasis = std::max(at->second.emphasis, problem.emphasis);
    }
    QString described;
    if (!problemsByLine_.empty()) {
        const auto& [block, problem] = *problemsByLine_.begin();
        described = QStringLiteral("%1 lines with problems, first line %2: %3")
                            .arg(problemsByLine_.size())
                            .arg(block + 1)
                            .arg(problem.message);
    }
    setAccessibleDescription(described);
    updateSelections();
    numbers_.update();
}

const CodeView::Problem* CodeView::problemIn(int block) const {
    const auto found = problemsByLine_.find(block);
    return found == problemsByLine_.end() ? nullptr : &found->second;
}

void CodeView::showProblem(int y, const QPoint& screen) {
    const QTextBlock block = cursorForPosition(QPoint(0, y)).block();
    const Problem* problem = problemIn(block.blockNumber());
    const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
    if (problem == nullptr || y > place.bottom()) {
        QToolTip::showText(screen, toolTip(), this);
        return;
    }
    const QString wrapped = QStringLiteral("<p style='white-space:pre-wrap'>%1</p>");
    QToolTip::showText(screen, wrapped.arg(problem->message.toHtmlEscaped()), this);
}

void CodeView::goTo(const QTextBlock& block) {
    setTextCursor(QTextCursor(block));
    centerCursor();
}

void CodeView::forVisibleBlocks(
        const std::function<void(const QTextBlock&, const QRectF&)>& visit) const {
    QTextBlock block = firstVisibleBlock();
    QRectF place = blockBoundingGeometry(block).translated(contentOffset());
    while (block.isValid() && place.top() <= viewport()->height()) {
        if (block.isVisible()) visit(block, place);
        block = block.next();
        place = QRectF(place.bottomLeft(), blockBoundingRect(block).size());
    }
}

void CodeView::colorVisible() {
    const int first = firstVisibleBlock().blockNumber();
    const int lines = viewport()->height() / std::max(fontMetrics().lineSpacing(), 1);
    highlighter_.show(std::max(first - AHEAD, 0), first + lines + AHEAD);
}

void CodeView::updateSelections() {
    // A document that is being cleared forgets its cursors and remembers them again afterwards,
    // also those that have gone meanwhile.
    if (isClearing_) return;
    QList<QTextEdit::ExtraSelection> selections;
    QTextEdit::ExtraSelection line;
    line.format.setBackground(shades().bar);
    line.format.setProperty(QTextFormat::FullWidthSelection, true);
    line.cursor = textCursor();
    line.cursor.clearSelection();
    selections.append(line);
    for (const auto& [block, problem] : problemsByLine_) {
        QTextEdit::ExtraSelection marked;
        marked.cursor = problem.line;
        const QString text = marked.cursor.block().text();
        const auto code =
                std::ranges::find_if_not(text, [](QChar letter) { return letter.isSpace(); });
        marked.cursor.movePosition(QTextCursor::StartOfBlock);
        marked.cursor.movePosition(QTextCursor::NextCharacter,
                                   QTextCursor::MoveAnchor,
                                   static_cast<int>(code - text.begin()));
        marked.cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        marked.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        marked.format.setUnderlineColor(colorOf(problem.emphasis, shades()));
        selections.append(marked);
    }
    const int position = textCursor().position();
    auto brackets = highlighter_.bracketsAt(position);
    if (brackets.empty() && position > 0) brackets = highlighter_.bracketsAt(position - 1);
    for (const int at : brackets) {
        QTextEdit::ExtraSelection bracket;
        bracket.cursor = QTextCursor(document());
        bracket.cursor.setPosition(at);
        bracket.cursor.setPosition(at + 1, QTextCursor::KeepAnchor);
        bracket.format.setBackground(brackets.size() == 2 ? shades().raisedHover : shades().bar);
        bracket.format.setForeground(brackets.size() == 2 ? shades().text : shades().error);
        bracket.format.setFontWeight(QFont::Bold);
        selections.append(bracket);
    }
    setExtraSelections(selections);
}

void CodeView::zoom(int steps) {
    setFontSize(std::clamp(font().pointSizeF() + steps, SMALLEST, LARGEST));
}

void CodeView::resetZoom() {
    setFontSize(ownFontSize_);
}

void CodeView::setFontSize(double points) {
    QFont sized = font();
    sized.setPointSizeF(points);
    setFont(sized);
    setTabStopDistance(CodeLines::INDENT * fontMetrics().horizontalAdvance(' '));
    placeParts();
    numbers_.update();
}

void CodeView::placeParts() {
    const int gutter = numbers_.wantedWidth();
    const int bar = findBar_.isHidden() ? 0 : findBar_.sizeHint().height();
    setViewportMargins(gutter, 0, 0, bar);
    const QRect rows = viewport()->geometry();
    numbers_.setGeometry(rows.x() - gutter, rows.y(), gutter, rows.height());
    findBar_.setGeometry(rows.x() - gutter, rows.bottom() + 1, rows.width() + gutter, bar);
}

bool CodeView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QPlainTextEdit::viewportEvent(event);
    const auto& help = *static_cast<const QHelpEvent*>(event);
    showProblem(help.pos().y(), help.globalPos());
    return true;
}

void CodeView::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QPlainTextEdit::wheelEvent(event);
    if (const int turned = event->angleDelta().y(); turned != 0) zoom(turned > 0 ? 1 : -1);
    event->accept();
}

void CodeView::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    placeParts();
    colorVisible();
    completion_.follow();
}

void CodeView::focusOutEvent(QFocusEvent* event) {
    completion_.close();
    QPlainTextEdit::focusOutEvent(event);
}

void CodeView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::StyleChange && event->type() != QEvent::PaletteChange) return;
    highlighter_.colorAnew();
    updateSelections();
    numbers_.update();
}

} // namespace vlWinUi
