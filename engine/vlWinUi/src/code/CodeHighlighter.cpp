#include "code/CodeHighlighter.h"

#include "Registry.h"
#include "Style.h"
#include "code/CodeColors.h"

#include <QTextDocument>

#include <algorithm>
#include <cstdlib>

namespace vlWinUi {
namespace {

constexpr int FARTHEST_BRACKET = 20'000; ///< blocks

constexpr qsizetype SHORTEST_WORD = 3;
constexpr qsizetype LONGEST_WORD = 100;

struct BlockFacts final : QTextBlockUserData {
    explicit BlockFacts(std::shared_ptr<WordIndex> all) : index(std::move(all)) {}
    BlockFacts(const BlockFacts&) = delete;
    BlockFacts& operator=(const BlockFacts&) = delete;
    ~BlockFacts() override { forgetWords(); }
    void forgetWords() {
        for (const int id : words)
            index->remove(id);
        words.clear();
    }

    std::vector<CodeHighlighter::Bracket> brackets;
    std::vector<int> words; ///< of the index
    std::shared_ptr<WordIndex> index;
    int generation = 0; ///< of the colours that it is in; 0 for none
};

const BlockFacts* factsOf(const QTextBlock& block) {
    return static_cast<const BlockFacts*>(block.userData());
}

/// 1, 2, 3 for an opening one, the negative for the one that closes it, 0 for all else.
int kindOf(char16_t letter) {
    constexpr std::u16string_view OPENING = u"([{";
    constexpr std::u16string_view CLOSING = u")]}";
    if (const auto at = OPENING.find(letter); at != std::u16string_view::npos)
        return static_cast<int>(at) + 1;
    if (const auto at = CLOSING.find(letter); at != std::u16string_view::npos)
        return -static_cast<int>(at) - 1;
    return 0;
}

bool isQuote(TokenKind kind) {
    return kind == TokenKind::String || kind == TokenKind::Comment;
}

/// The brackets and words that are neither in texts and comments nor the language's own.
void findFacts(const QString& text, const std::vector<Token>& tokens, BlockFacts& found) {
    auto token = tokens.begin();
    for (qsizetype at = 0; at < text.size();) {
        while (token != tokens.end() && at >= token->begin + token->length)
            ++token;
        const bool inToken = token != tokens.end() && at >= token->begin;
        if (inToken && token->kind != TokenKind::Preprocessor) {
            at = token->begin + token->length;
        } else if (beginsWord(text[at])) {
            const qsizetype end = endOfWord(text, at);
            const bool worth = end - at >= SHORTEST_WORD && end - at <= LONGEST_WORD;
            if (worth) found.words.push_back(found.index->add(QStringView(text).mid(at, end - at)));
            at = end;
        } else {
            if (kindOf(text[at].unicode()) != 0)
                found.brackets.push_back({static_cast<int>(at), text[at].unicode()});
            ++at;
        }
    }
}

} // namespace

CodeHighlighter::CodeHighlighter(QTextDocument* document)
    : QSyntaxHighlighter(document), words_(std::make_shared<WordIndex>()) {
}

void CodeHighlighter::setRules(const CodeRules* rules) {
    if (rules_ == rules) return;
    rules_ = rules;
    rehighlight();
}

void CodeHighlighter::show(int firstBlock, int lastBlock) {
    if (coloring_) return;
    coloring_ = true;
    firstShown_ = firstBlock;
    lastShown_ = lastBlock;
    for (QTextBlock block = document()->findBlockByNumber(firstBlock);
         block.isValid() && block.blockNumber() <= lastBlock;
         block = block.next()) {
        const BlockFacts* facts = factsOf(block);
        if (facts == nullptr || facts->generation != generation_) rehighlightBlock(block);
    }
    coloring_ = false;
}

void CodeHighlighter::colorAnew() {
    ++generation_;
    show(firstShown_, lastShown_);
}

void CodeHighlighter::highlightBlock(const QString& text) {
    tokens_.clear();
    if (rules_ != nullptr)
        setCurrentBlockState(rules_->scan(text, std::max(previousBlockState(), 0), tokens_));
    auto* facts = static_cast<BlockFacts*>(currentBlockUserData());
    if (facts == nullptr) setCurrentBlockUserData(facts = new BlockFacts(words_));
    facts->brackets.clear();
    facts->forgetWords();
    findFacts(text, tokens_, *facts);
    const int number = currentBlock().blockNumber();
    facts->generation = number >= firstShown_ && number <= lastShown_ ? generation_ : 0;
    if (facts->generation == 0) return;
    const Shades& shades = Registry::slot()->style->getShades();
    for (const Token& token : tokens_)
        setFormat(static_cast<int>(token.begin),
                  static_cast<int>(token.length),
                  colorOf(token.kind, shades));
}

std::vector<int> CodeHighlighter::bracketsAt(int position) const {
    QTextBlock block = document()->findBlock(position);
    const BlockFacts* facts = factsOf(block);
    if (facts == nullptr) return {};
    const auto begin =
            std::ranges::find(facts->brackets, position - block.position(), &Bracket::at);
    if (begin == facts->brackets.end()) return {};
    const int step = kindOf(begin->letter) > 0 ? 1 : -1;
    std::vector<int> open;
    auto index = begin - facts->brackets.begin();
    for (int passed = 0; passed < FARTHEST_BRACKET; ++passed) {
        const auto count = static_cast<std::ptrdiff_t>(facts->brackets.size());
        for (; index >= 0 && index < count; index += step) {
            const Bracket& bracket = facts->brackets[static_cast<std::size_t>(index)];
            const int kind = kindOf(bracket.letter) * step;
            if (kind > 0) {
                open.push_back(kind);
                continue;
            }
            if (open.back() != -kind) return {position};
            open.pop_back();
            if (open.empty()) return {position, block.position() + bracket.at};
        }
        block = step > 0 ? block.next() : block.previous();
        facts = block.isValid() ? factsOf(block) : nullptr;
        if (facts == nullptr) return {position};
        index = step > 0 ? 0 : static_cast<std::ptrdiff_t>(facts->brackets.size()) - 1;
    }
    return {};
}

bool CodeHighlighter::hasBracket(int position, QChar letter) const {
    const QTextBlock block = document()->findBlock(position);
    const BlockFacts* facts = factsOf(block);
    return facts != nullptr && std::ranges::any_of(facts->brackets, [&](const Bracket& bracket) {
               return block.position() + bracket.at == position && bracket.letter == letter;
           });
}

bool CodeHighlighter::isQuoted(int position) const {
    if (rules_ == nullptr) return false;
    const QTextBlock block = document()->findBlock(position);
    const int before = block.previous().isValid() ? block.previous().userState() : 0;
    std::vector<Token> tokens;
    rules_->scan(block.text(), std::max(before, 0), tokens);
    const int at = position - block.position();
    return std::ranges::any_of(tokens, [at](const Token& token) {
        return isQuote(token.kind) && at >= token.begin && at < token.begin + token.length;
    });
}

} // namespace vlWinUi
