#include "Pattern.h"

#include <cctype>
#include <cstdlib>

namespace vlScripts {
namespace {

constexpr std::size_t deepest = 200;
constexpr std::uint64_t stepsBetweenReports = 4096;

bool fitsClass(unsigned char letter, char name) {
    bool fits = false;
    switch (std::tolower(static_cast<unsigned char>(name))) {
    case 'a':
        fits = std::isalpha(letter) != 0;
        break;
    case 'c':
        fits = std::iscntrl(letter) != 0;
        break;
    case 'd':
        fits = std::isdigit(letter) != 0;
        break;
    case 'g':
        fits = std::isgraph(letter) != 0;
        break;
    case 'l':
        fits = std::islower(letter) != 0;
        break;
    case 'p':
        fits = std::ispunct(letter) != 0;
        break;
    case 's':
        fits = std::isspace(letter) != 0;
        break;
    case 'u':
        fits = std::isupper(letter) != 0;
        break;
    case 'w':
        fits = std::isalnum(letter) != 0;
        break;
    case 'x':
        fits = std::isxdigit(letter) != 0;
        break;
    default:
        return static_cast<unsigned char>(name) == letter;
    }
    return std::isupper(static_cast<unsigned char>(name)) != 0 ? !fits : fits;
}

} // namespace

void Pattern::refuse(const char* why) const {
    refuse_(owner_, why);
    std::abort();
}

void Pattern::step(std::uint64_t count) {
    steps_ += count;
    if (steps_ < stepsBetweenReports) return;
    progress_(owner_, steps_);
    steps_ = 0;
}

std::optional<std::size_t> Pattern::matchAt(std::size_t start) {
    captureCount_ = 0;
    depth_ = 0;
    return match(start, 0);
}

Pattern::Place Pattern::match(std::size_t at, std::size_t rule) {
    if (++depth_ > deepest) refuse("pattern too complex");
    Place found;
    for (bool done = false; !done;) {
        step();
        if (rule >= pattern_.size()) {
            found = at;
            break;
        }
        const char head = pattern_[rule];
        if (head == '(') {
            const bool position = ruleAt(rule + 1) == ')';
            found = position ? openCapture(at, rule + 2, Capture::State::position)
                             : openCapture(at, rule + 1, Capture::State::open);
            break;
        }
        if (head == ')') {
            found = closeCapture(at, rule + 1);
            break;
        }
        if (head == '$' && rule + 1 == pattern_.size()) {
            if (at == subject_.size()) found = at;
            break;
        }
        const char escaped = head == '%' ? ruleAt(rule + 1) : '\0';
        if (escaped == 'b' || escaped == 'f' || (escaped >= '0' && escaped <= '9')) {
            found = matchEscaped(at, rule, done);
            if (!found) break;
            at = *found;
            found.reset();
            continue;
        }
        const std::size_t end = endOfRule(rule);
        step(costOf(rule, end));
        const char repeat = ruleAt(end);
        if (repeat == '*' || repeat == '+' || repeat == '-') {
            if (repeat == '-')
                found = matchLeast(at, rule, end);
            else if (repeat == '*' || fits(at, rule, end))
                found = matchMost(repeat == '+' ? at + 1 : at, rule, end);
            break;
        }
        if (repeat == '?') {
            if (fits(at, rule, end)) found = match(at + 1, end + 1);
            if (found) break;
            rule = end + 1;
            continue;
        }
        if (!fits(at, rule, end)) break;
        ++at;
        rule = end;
    }
    --depth_;
    return found;
}

Pattern::Place Pattern::matchEscaped(std::size_t at, std::size_t& rule, bool& done) {
    const char kind = ruleAt(rule + 1);
    Place next;
    if (kind == 'b') {
        next = matchBalance(at, rule + 2);
        rule += 4;
    } else if (kind == 'f') {
        rule += 2;
        if (ruleAt(rule) != '[') refuse("missing '[' after '%f' in pattern");
        const std::size_t end = endOfRule(rule);
        next = matchBorder(at, rule);
        rule = end;
    } else {
        next = matchReference(at, kind);
        rule += 2;
    }
    done = !next.has_value();
    return next;
}

Pattern::Place Pattern::matchMost(std::size_t at, std::size_t rule, std::size_t next) {
    std::size_t count = 0;
    while (fits(at + count, rule, next)) {
        ++count;
        step(costOf(rule, next));
    }
    for (;; --count) {
        if (const Place found = match(at + count, next + 1)) return found;
        if (count == 0) return std::nullopt;
    }
}

Pattern::Place Pattern::matchLeast(std::size_t at, std::size_t rule, std::size_t next) {
    for (;; ++at) {
        if (const Place found = match(at, next + 1)) return found;
        if (!fits(at, rule, next)) return std::nullopt;
        step(costOf(rule, next));
    }
}

Pattern::Place Pattern::openCapture(std::size_t at, std::size_t rule, Capture::State state) {
    if (captureCount_ == mostCaptures) refuse("too many captures");
    captures_[captureCount_++] = {at, 0, state};
    const Place found = match(at, rule);
    if (!found) --captureCount_;
    return found;
}

Pattern::Place Pattern::closeCapture(std::size_t at, std::size_t rule) {
    std::size_t index = captureCount_;
    while (index > 0 && captures_[index - 1].state != Capture::State::open)
        --index;
    if (index == 0) refuse("invalid pattern capture");
    Capture& capture = captures_[index - 1];
    capture.length = at - capture.start;
    capture.state = Capture::State::closed;
    const Place found = match(at, rule);
    if (!found) capture.state = Capture::State::open;
    return found;
}

Pattern::Place Pattern::matchBalance(std::size_t at, std::size_t rule) {
    if (rule + 1 >= pattern_.size()) refuse("malformed pattern (missing arguments to '%b')");
    if (at >= subject_.size() || subject_[at] != pattern_[rule]) return std::nullopt;
    const char opening = pattern_[rule];
    const char closing = pattern_[rule + 1];
    std::size_t open = 1;
    while (++at < subject_.size()) {
        step();
        if (subject_[at] == closing) {
            if (--open == 0) return at + 1;
        } else if (subject_[at] == opening) {
            ++open;
        }
    }
    return std::nullopt;
}

Pattern::Place Pattern::matchBorder(std::size_t at, std::size_t rule) {
    const std::size_t end = endOfRule(rule);
    const unsigned char before = at == 0 ? '\0' : letterAt(at - 1);
    if (fitsSet(before, rule, end) || !fitsSet(letterAt(at), rule, end)) return std::nullopt;
    return at;
}

Pattern::Place Pattern::matchReference(std::size_t at, char digit) {
    const auto index = static_cast<std::size_t>(digit - '1');
    if (digit == '0' || index >= captureCount_ || captures_[index].state == Capture::State::open)
        refuse("invalid capture index in pattern");
    const Capture& capture = captures_[index];
    step(1 + capture.length / 16);
    if (subject_.size() - at < capture.length ||
        subject_.substr(at, capture.length) != subject_.substr(capture.start, capture.length))
        return std::nullopt;
    return at + capture.length;
}

std::size_t Pattern::endOfRule(std::size_t rule) const {
    const char head = pattern_[rule++];
    if (head == '%') {
        if (rule == pattern_.size()) refuse("malformed pattern (ends with '%')");
        return rule + 1;
    }
    if (head != '[') return rule;
    if (ruleAt(rule) == '^') ++rule;
    // A bracket that comes first is a letter of the set.
    for (bool first = true; first || ruleAt(rule) != ']'; first = false) {
        if (rule >= pattern_.size()) refuse("malformed pattern (missing ']')");
        rule += pattern_[rule] == '%' ? 2U : 1U;
        if (rule >= pattern_.size()) refuse("malformed pattern (missing ']')");
    }
    return rule + 1;
}

bool Pattern::fits(std::size_t at, std::size_t rule, std::size_t end) const {
    if (at >= subject_.size()) return false;
    const unsigned char letter = letterAt(at);
    switch (pattern_[rule]) {
    case '.':
        return true;
    case '%':
        return fitsClass(letter, pattern_[rule + 1]);
    case '[':
        return fitsSet(letter, rule, end);
    default:
        return static_cast<unsigned char>(pattern_[rule]) == letter;
    }
}

bool Pattern::fitsSet(unsigned char letter, std::size_t rule, std::size_t end) const {
    const std::size_t last = end - 1; // the closing bracket
    bool found = true;
    if (pattern_[++rule] == '^') {
        found = false;
        ++rule;
    }
    while (rule < last) {
        const char head = pattern_[rule];
        if (head == '%') {
            if (fitsClass(letter, pattern_[rule + 1])) return found;
            rule += 2;
        } else if (rule + 2 < last && pattern_[rule + 1] == '-') {
            if (static_cast<unsigned char>(head) <= letter &&
                letter <= static_cast<unsigned char>(pattern_[rule + 2]))
                return found;
            rule += 3;
        } else {
            if (static_cast<unsigned char>(head) == letter) return found;
            ++rule;
        }
    }
    return !found;
}

} // namespace vlScripts
