#include "code/Completion.h"

#include "Registry.h"
#include "Style.h"
#include "code/CodeColors.h"
#include "code/CodeView.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QSet>

#include <algorithm>

namespace vlWinUi {
namespace {

constexpr int FEWEST_LETTERS = 2; ///< typed before anything is offered unasked
constexpr int MOST_OFFERED = 200;
constexpr int MOST_ROWS = 9;  ///< in view
constexpr int NARROWEST = 12; ///< letters
constexpr int MARGIN = 10;    ///< left and right of the words together, pixels

/** One group after the other, each without what is there already: first what begins with the very
 *  letters, then what does in upper or lower case. */
class Gathering {
public:
    Gathering(const QString& prefix, QString current)
        : prefix_(prefix), current_(std::move(current)) {}

    void add(const QString& word) {
        if (word.size() <= prefix_.size() && word != prefix_) return;
        if (!word.startsWith(prefix_, Qt::CaseInsensitive) || word == current_) return;
        (word.startsWith(prefix_) ? same_ : other_).append(word);
    }
    void endGroup() {
        for (QStringList* words : {&same_, &other_}) {
            words->sort();
            for (const QString& word : *words)
                if (!seen_.contains(word) && found_.size() < MOST_OFFERED) {
                    seen_.insert(word);
                    found_.append(word);
                }
            words->clear();
        }
    }
    QStringList found() { return std::move(found_); }

private:
    const QString& prefix_;
    QString current_; ///< the word that is typed: offering it says nothing
    QStringList same_;
    QStringList other_;
    QStringList found_;
    QSet<QString> seen_;
};

bool isWordLetter(QChar c) {
    return beginsWord(c) || c.isDigit();
}

} // namespace

Completion::Completion(CodeView& view)
    : QObject(&view), view_(view), list_(*new QListWidget(&view)) {
    list_.hide();
    list_.setFocusPolicy(Qt::NoFocus);
    list_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_.setUniformItemSizes(true);
    list_.setMouseTracking(true);
    list_.setAccessibleName(QStringLiteral("Completions"));
    connect(&list_, &QListWidget::itemClicked, this, [this] { take(); });
}

QStringList Completion::offered() const {
    QStringList words;
    for (int i = 0; isOpen() && i < list_.count(); ++i)
        words.append(list_.item(i)->text());
    return words;
}

int Completion::prefixLength() const {
    const QTextCursor cursor = view_.textCursor();
    const QString line = cursor.block().text();
    const int at = cursor.positionInBlock();
    int begin = at;
    while (begin > 0 && isWordLetter(line[begin - 1]))
        --begin;
    if (begin < at && !beginsWord(line[begin])) return -1;
    return at > 0 && view_.isQuoted(cursor.position() - 1) ? -1 : at - begin;
}

QStringList Completion::candidates(const QString& prefix) const {
    Gathering gathering(prefix, prefix);
    for (const QString& word : words_)
        gathering.add(word);
    gathering.endGroup();
    for (const QStringView word : languageWords(prefix))
        gathering.add(word.toString());
    gathering.endGroup();
    const WordIndex& index = view_.wordIndex();
    // The word that the cursor stands in is in the text only because it is being typed.
    const QString line = view_.textCursor().block().text();
    const int at = view_.textCursor().positionInBlock();
    const QString whole = prefix + line.mid(at, endOfWord(line, at) - at);
    index.forEach([&](const QString& word) {
        if (word != whole || index.count(word) > 1) gathering.add(word);
    });
    gathering.endGroup();
    return gathering.found();
}

std::span<const QStringView> Completion::languageWords(const QString& prefix) const {
    const CodeRules* rules = view_.rules();
    if (rules == nullptr) return {};
    const QTextCursor cursor = view_.textCursor();
    const auto before = cursor.positionInBlock() - prefix.size() - 1;
    const bool member = before >= 0 && rules->memberMarks.contains(cursor.block().text()[before]);
    return member ? rules->members : rules->words;
}

bool Completion::isComplete(const QString& prefix) const {
    const auto own = languageWords(prefix);
    return words_.contains(prefix) || view_.wordIndex().count(prefix) > 1 ||
           std::ranges::find(own, QStringView(prefix)) != own.end();
}

void Completion::typed() {
    if (isOpen()) return; // the cursor's move has seen to it
    const QTextCursor cursor = view_.textCursor();
    const QString line = cursor.block().text();
    const int at = cursor.positionInBlock();
    if (at < line.size() && isWordLetter(line[at])) return;
    if (prefixLength() >= FEWEST_LETTERS) offer(false);
}

void Completion::open() {
    if (prefixLength() < 0) return close();
    offer(true);
}

void Completion::offer(bool asked) {
    const int length = prefixLength();
    const QTextCursor cursor = view_.textCursor();
    const QString prefix = cursor.block().text().mid(cursor.positionInBlock() - length, length);
    const QStringList words = candidates(prefix);
    if (words.isEmpty()) return close();
    asked_ = asked;
    begin_ = cursor.position() - length;
    list_.clear();
    list_.setFont(view_.font());
    const Shades& shades = Registry::slot()->style->getShades();
    std::vector<Token> tokens;
    for (const QString& word : words) {
        auto* item = new QListWidgetItem(word, &list_);
        tokens.clear();
        if (view_.rules() != nullptr) view_.rules()->scan(word, 0, tokens);
        item->setForeground(tokens.empty() ? shades.text : colorOf(tokens.front().kind, shades));
    }
    // A word that is complete already is not changed by the key that ends its line.
    list_.setCurrentRow(isComplete(prefix) ? -1 : 0);
    place();
}

void Completion::place() {
    QTextCursor begin(view_.document());
    begin.setPosition(begin_);
    const QRect word = view_.cursorRect(begin).translated(view_.viewport()->pos());
    const QRect room = view_.viewport()->geometry();
    if (!room.intersects(word)) return close();
    const int row = std::max(list_.sizeHintForRow(0), 1);
    const int frame = 2 * list_.frameWidth();
    const int below = room.bottom() - word.bottom();
    const int above = word.top() - room.top();
    const int wanted = std::min(list_.count(), MOST_ROWS) * row + frame;
    const bool up = wanted > below && above > below;
    const int height = std::min(wanted, std::max((up ? above : below), row + frame));
    int letters = list_.sizeHintForColumn(0);
    letters = std::max(letters, NARROWEST * view_.fontMetrics().averageCharWidth());
    const int bar = list_.count() * row + frame > height
                            ? list_.verticalScrollBar()->sizeHint().width()
                            : 0;
    const int width = std::min(letters + MARGIN + frame + bar, room.width());
    const int x = std::clamp(word.x() - MARGIN / 2, room.x(), room.right() + 1 - width);
    list_.setGeometry(x, up ? word.top() - height : word.bottom() + 1, width, height);
    list_.raise();
    list_.show();
}

void Completion::follow() {
    if (!isOpen()) return;
    const QTextCursor cursor = view_.textCursor();
    const int length = prefixLength();
    const bool same = length >= (asked_ ? 0 : 1) && cursor.position() - length == begin_ &&
                      !cursor.hasSelection();
    if (!same) return close();
    offer(asked_);
}

void Completion::close() {
    if (!isOpen()) return;
    list_.hide();
    list_.clear();
    asked_ = false;
}

bool Completion::wants(const QKeyEvent& key) const {
    if (!isOpen() || (key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return list_.currentRow() >= 0;
    case Qt::Key_Tab:
    case Qt::Key_Escape:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

bool Completion::handle(const QKeyEvent& key) {
    const int row = list_.currentRow();
    const auto go = [this](int to) {
        list_.setCurrentRow(std::clamp(to, 0, list_.count() - 1));
        return true;
    };
    switch (key.key()) {
    case Qt::Key_Up:
        return go(row <= 0 ? list_.count() - 1 : row - 1);
    case Qt::Key_Down:
        return go(row + 1 < list_.count() ? row + 1 : 0);
    case Qt::Key_PageUp:
        return go(row - MOST_ROWS);
    case Qt::Key_PageDown:
        return go(row + MOST_ROWS);
    case Qt::Key_Escape:
        close();
        return true;
    default:
        if (row < 0) list_.setCurrentRow(0);
        take();
        return true;
    }
}

void Completion::take() {
    const QListWidgetItem* item = list_.currentItem();
    if (item == nullptr) return close();
    const QString word = item->text();
    close();
    QTextCursor cursor = view_.textCursor();
    cursor.setPosition(begin_, QTextCursor::KeepAnchor);
    cursor.insertText(word);
    view_.setTextCursor(cursor);
}

} // namespace vlWinUi
