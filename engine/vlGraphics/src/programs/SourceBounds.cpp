#include "programs/SourceBounds.h"

#include "programs/SourceLines.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace vlGraphics {

namespace {

using vlMemory::StringView;

bool isBranch(StringView word) {
    constexpr std::array<StringView, 7> words{"if", "else", "for", "while", "do", "switch", "case"};
    return std::find(words.begin(), words.end(), word) != words.end();
}

} // namespace

std::optional<SourceFault> SourceBounds::findFault(StringView text, IncludeWalk* walk) {
    walk_ = walk;
    scan(text);
    return placed_;
}

void SourceBounds::scan(StringView text) {
    LineReader reader(text);
    Tokens tokens;
    while (!placed_ && reader.next(tokens)) {
        scanLine(tokens);
        if (fault_.empty() || placed_) continue;
        placed_ = SourceFault{walk_ == nullptr ? nullptr : walk_->current(), reader.line(), fault_};
    }
}

void SourceBounds::include(const Tokens& tokens) {
    if (walk_ == nullptr || tokens.size() < 3) return;
    StringView name = tokens[2];
    const bool isLocal = name.front() == '"';
    if (isLocal) {
        name = name.substr(1, name.find('"', 1) - 1);
    } else {
        const auto end = std::find(tokens.begin() + 3, tokens.end(), ">");
        if (name != "<" || end == tokens.end()) return;
        name = {name.data() + 1, end->data()};
    }
    const auto entered = walk_->enter(name, isLocal);
    if (!entered || *entered == nullptr) return;
    // What its guard leaves out when it is read again counts once.
    const bool isLeftOut = macros_.contains((*entered)->guard);
    if (!isLeftOut) scan((*entered)->text);
    walk_->leave();
}

void SourceBounds::scanLine(const Tokens& tokens) {
    const bool isDirective = tokens.size() >= 2 && tokens[0] == "#";
    if (isDirective && tokens[1] == "define") return define(tokens);
    if (isDirective && tokens[1] == "include") return include(tokens);
    visit({tokens.data(), tokens.data() + tokens.size(), nullptr}, 0);
}

void SourceBounds::define(const Tokens& tokens) {
    if (tokens.size() < 3) return;
    const StringView name = tokens[2];
    std::size_t at = 3;
    Macro macro;
    // Only a bracket right behind the name begins parameters.
    if (at < tokens.size() && tokens[at] == "(" && tokens[at].data() == name.data() + name.size()) {
        macro.takesArguments = true;
        for (++at; at < tokens.size() && tokens[at] != ")"; ++at)
            if (tokens[at] != ",") macro.parameters.push_back(tokens[at]);
        ++at;
    }
    if (at < tokens.size())
        macro.body.assign(tokens.begin() + static_cast<std::ptrdiff_t>(at), tokens.end());
    macros_.insert_or_assign(name, std::move(macro));
}

void SourceBounds::visit(const Argument& list, std::size_t depth) {
    if (depth > maxNesting) return fail("macros nested too deeply");
    const Environment* environment = list.environment;
    for (const StringView* at = list.first; at != list.last && fault_.empty(); ++at) {
        if (depth > 0 && ++expanded_ > maxExpanded)
            return fail(fmt::format("macros expand to more than {} words", maxExpanded));
        if (!LineReader::isWordCharacter(at->front())) {
            count(*at);
            continue;
        }
        if (environment != nullptr) {
            const Tokens& names = environment->macro->parameters;
            const auto name = std::find(names.begin(), names.end(), *at);
            const auto index = static_cast<std::size_t>(name - names.begin());
            if (name != names.end() && index < environment->arguments.size()) {
                visit(environment->arguments[index], depth + 1);
                continue;
            }
        }
        const auto macro = macros_.find(*at);
        if (macro == macros_.end() || macro->second.isActive) {
            count(*at);
            continue;
        }
        at = expand(macro->second, at, list, depth);
    }
}

/// Gives the last token that belongs to the use.
const StringView*
SourceBounds::expand(Macro& macro, const StringView* at, const Argument& list, std::size_t depth) {
    Environment environment{&macro, {}};
    if (macro.takesArguments) {
        if (at + 1 == list.last || at[1] != "(") return at;
        ++at;
        const StringView* begin = at + 1;
        std::size_t open = 0;
        for (; at != list.last; ++at) {
            if (*at == "(" && ++open > maxNesting) break;
            const bool closes = *at == ")" && --open == 0;
            if (!closes && !(*at == "," && open == 1)) continue;
            environment.arguments.push_back({begin, at, list.environment});
            begin = at + 1;
            if (closes) break;
        }
        if (at == list.last) --at;
    }
    macro.isActive = true;
    visit({macro.body.data(), macro.body.data() + macro.body.size(), &environment}, depth + 1);
    macro.isActive = false;
    return at;
}

/// "0.25" and "25" come as words and marks that stand next to each other.
void SourceBounds::countNumber(StringView token) {
    const bool goesOn = !number_.empty() && number_.data() + number_.size() == token.data();
    if (goesOn && token == ".") {
        number_ = {number_.data(), number_.size() + 1};
        return;
    }
    const bool isDigit = token.front() >= '0' && token.front() <= '9';
    if (isDigit && goesOn && number_.back() == '.') {
        number_ = {number_.data(), number_.size() + token.size()};
        return;
    }
    if (!number_.empty()) numbers_.insert(number_);
    number_ = isDigit ? token : StringView();
    if (numbers_.size() > maxNumbers) fail(fmt::format("more than {} numbers", maxNumbers));
}

void SourceBounds::count(StringView token) {
    countNumber(token);
    if (const std::string excess = sizes_.take(token); !excess.empty()) fail(excess);
    const StringView last = std::exchange(last_, token);
    if (LineReader::isWordCharacter(token.front())) {
        if (isBranch(token) && ++branches_ > maxBranches)
            fail(fmt::format("more than {} branches and loops", maxBranches));
        return;
    }
    const char mark = token.front();
    if (mark == ';') initialisers_ = 0;
    if (mark == '}' && initialisers_ > 0) --initialisers_;
    const bool initialises = mark == '{' && (last == "=" || initialisers_ > 0);
    if (initialises && ++initialisers_ > maxInitialisers)
        fail(fmt::format("initial values nested deeper than {}", maxInitialisers));
    if (mark == ';' || mark == '{' || mark == '}') {
        operators_ = 0;
    } else if (++operators_ > maxOperators) {
        fail(fmt::format("a statement has more than {} operators", maxOperators));
    }
    if (mark == '(' || mark == '[' || mark == '{') {
        if (++nesting_ > maxNesting)
            fail(fmt::format("brackets nested deeper than {}", maxNesting));
    } else if ((mark == ')' || mark == ']' || mark == '}') && nesting_ > 0) {
        --nesting_;
    }
}

void SourceBounds::fail(std::string text) {
    if (fault_.empty()) fault_ = std::move(text);
}

} // namespace vlGraphics
