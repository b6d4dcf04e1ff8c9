#include "programs/DeclaredSizes.h"

#include "programs/SourceLines.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace vlGraphics {

namespace {

using vlMemory::StringView;
using Value = std::optional<std::uint64_t>;
using Tokens = std::vector<StringView>;

constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
/// Longer expressions are none that say a size.
constexpr std::size_t maxExpression = 64;

std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
    return a > most - b ? most : a + b;
}
std::uint64_t product(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > most / b ? most : a * b;
}

template <std::size_t n> bool isOneOf(StringView word, const std::array<StringView, n>& words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/** Reads an expression of whole numbers. */
class Reader {
public:
    Reader(const Tokens& tokens, const std::unordered_map<StringView, std::uint64_t>& constants)
        : tokens_(tokens), constants_(constants) {}

    Value read() {
        if (tokens_.size() > maxExpression) return std::nullopt;
        const Value value = readShifts();
        return at_ == tokens_.size() ? value : std::nullopt;
    }

private:
    bool takes(StringView mark) {
        const bool does = at_ < tokens_.size() && tokens_[at_] == mark;
        at_ += does ? 1 : 0;
        return does;
    }

    Value readShifts() {
        Value value = readSums();
        while (takes("<")) {
            const Value by = takes("<") ? readSums() : std::nullopt;
            if (!value || !by) return std::nullopt;
            value = *by >= 32 ? most : product(*value, std::uint64_t{1} << *by);
        }
        return value;
    }

    Value readSums() {
        Value value = readProducts();
        while (value) {
            const bool adds = takes("+");
            if (!adds && !takes("-")) return value;
            const Value other = readProducts();
            if (!other) return std::nullopt;
            value = adds ? sum(*value, *other) : *value - std::min(*value, *other);
        }
        return value;
    }

    Value readProducts() {
        Value value = readOne();
        while (value) {
            const bool multiplies = takes("*");
            if (!multiplies && !takes("/")) return value;
            const Value other = readOne();
            if (!other || (!multiplies && *other == 0)) return std::nullopt;
            value = multiplies ? product(*value, *other) : *value / *other;
        }
        return value;
    }

    Value readOne() {
        if (takes("(")) {
            const Value value = readShifts();
            return takes(")") ? value : std::nullopt;
        }
        if (at_ == tokens_.size()) return std::nullopt;
        const StringView word = tokens_[at_++];
        const auto known = constants_.find(word);
        if (known != constants_.end()) return known->second;
        const bool isHex = word.starts_with("0x") || word.starts_with("0X");
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(
                word.data() + (isHex ? 2 : 0), word.data() + word.size(), value, isHex ? 16 : 10);
        if (error == std::errc::result_out_of_range) return most;
        const StringView rest(end, static_cast<std::size_t>(word.data() + word.size() - end));
        const bool isNumber = error == std::errc() && rest.find_first_not_of("uUlL") == rest.npos;
        return isNumber ? Value(value) : std::nullopt;
    }

    const Tokens& tokens_;
    const std::unordered_map<StringView, std::uint64_t>& constants_;
    std::size_t at_ = 0;
};

/// "float", "float3" and "float3x4"; nothing for other words.
Value sizeOfNumbers(StringView type) {
    constexpr std::array<StringView, 11> scalars{"min16float",
                                                 "min10float",
                                                 "min16uint",
                                                 "min16int",
                                                 "min12int",
                                                 "double",
                                                 "float",
                                                 "uint",
                                                 "bool",
                                                 "half",
                                                 "int"};
    const auto scalar = std::find_if(
            scalars.begin(), scalars.end(), [&](StringView one) { return type.starts_with(one); });
    if (scalar == scalars.end()) return std::nullopt;
    const StringView rest = type.substr(scalar->size());
    const auto digit = [&](std::size_t at) { return static_cast<std::uint64_t>(rest[at] - '0'); };
    const std::uint64_t bytes = *scalar == "double" ? 8 : 4;
    if (rest.empty()) return bytes;
    if (digit(0) < 1 || digit(0) > 4) return std::nullopt;
    if (rest.size() == 1) return bytes * digit(0);
    if (rest.size() != 3 || rest[1] != 'x' || digit(2) < 1 || digit(2) > 4) return std::nullopt;
    return bytes * digit(0) * digit(2);
}

} // namespace

std::string DeclaredSizes::take(StringView token) {
    if (expression_ != Expression::none && takeExpression(token)) return fault_;
    if (LineReader::isWordCharacter(token.front()))
        takeWord(token);
    else
        takeMark(token.front());
    return fault_;
}

void DeclaredSizes::takeWord(StringView word) {
    constexpr std::array<StringView, 4> kinds{"struct", "class", "cbuffer", "tbuffer"};
    constexpr std::array<StringView, 12> marks{"static",
                                               "in",
                                               "out",
                                               "inout",
                                               "uniform",
                                               "groupshared",
                                               "row_major",
                                               "column_major",
                                               "precise",
                                               "nointerpolation",
                                               "unsigned",
                                               "volatile"};
    constexpr std::array<StringView, 6> orders{"return", "else", "do", "case", "if", "while"};
    if (word == "const" || word == "typedef") {
        (word == "const" ? now_.isConstant : now_.isTypedef) = true;
    } else if (isOneOf(word, kinds)) {
        now_.kind = word;
        now_.last = {};
    } else if (isOneOf(word, orders)) {
        now_ = {};
    } else if (!isOneOf(word, marks)) {
        if (!now_.kind.empty() && now_.tag.empty()) {
            now_.tag = word;
        } else if (!now_.last.empty()) {
            // A word behind a word is declared, and the one before is its type.
            now_.type = sizeOf(now_.last);
            now_.name = word;
            now_.count = 1;
        } else if (now_.isNext && now_.type && brackets_ == 0) {
            now_.name = word;
            now_.count = 1;
        }
        now_.isNext = false;
        now_.last = word;
    }
}

void DeclaredSizes::takeMark(char mark) {
    const bool isNamed = !now_.name.empty();
    const StringView last = std::exchange(now_.last, {});
    switch (mark) {
    case '[':
        if (isNamed && (last == now_.name || last == "]"))
            return beginExpression(Expression::dimension);
        ++brackets_;
        return;
    case '(':
        ++brackets_;
        if (last == now_.name) now_.name = {}; // of a function
        return;
    case ')':
    case ']':
        if (brackets_ > 0) --brackets_;
        if (mark == ')') endDeclarator();
        return;
    case ',':
        endDeclarator();
        now_.isNext = true;
        return;
    case '=':
        now_.valued = now_.name;
        endDeclarator();
        if (now_.type) beginExpression(Expression::value);
        return;
    case '>':
        now_.last = ">"; // may end a type
        return;
    case ';':
        endDeclarator();
        now_ = {};
        brackets_ = 0;
        return;
    case '{':
        ++braces_;
        if (!now_.kind.empty())
            open_.push_back({now_.tag, braces_, 0, now_.kind == "struct" || now_.kind == "class"});
        now_ = {};
        brackets_ = 0;
        return;
    case '}':
        return closeBrace();
    default:
        return;
    }
}

void DeclaredSizes::closeBrace() {
    now_ = {};
    if (!open_.empty() && open_.back().depth == braces_) {
        const Open closed = open_.back();
        open_.pop_back();
        if (closed.isStruct) {
            types_[closed.name] = closed.bytes;
            now_.type = closed.bytes; // of what is named now
            now_.isNext = true;
        }
    }
    if (braces_ > 0) --braces_;
}

void DeclaredSizes::beginExpression(Expression kind) {
    expression_ = kind;
    expressionDepth_ = brackets_ + braces_;
    words_.clear();
}

/// False where the expression ends before the token.
bool DeclaredSizes::takeExpression(StringView token) {
    const char mark = token.front();
    const bool isOutside = brackets_ + braces_ == expressionDepth_;
    if (isOutside && expression_ == Expression::dimension && mark == ']') {
        endExpression();
        now_.last = "]";
        return true;
    }
    const bool ends = mark == ';' || (isOutside && (mark == ',' || mark == ')' || mark == '}'));
    if (ends) {
        endExpression();
        return false;
    }
    if (mark == '(' || mark == '[') ++brackets_;
    if ((mark == ')' || mark == ']') && brackets_ > 0) --brackets_;
    if (mark == '{') ++braces_;
    if (mark == '}' && braces_ > 0) --braces_;
    if (words_.size() <= maxExpression) words_.push_back(token);
    return true;
}

void DeclaredSizes::endExpression() {
    const bool isDimension = std::exchange(expression_, Expression::none) == Expression::dimension;
    const Value value = Reader(words_, constants_).read();
    if (isDimension)
        now_.count = product(now_.count, value.value_or(1));
    else if (value && now_.isConstant)
        constants_[now_.valued] = *value;
}

void DeclaredSizes::endDeclarator() {
    if (now_.name.empty() || !now_.type) return;
    const StringView name = std::exchange(now_.name, {});
    const std::uint64_t bytes = product(*now_.type, std::exchange(now_.count, 1));
    if (now_.isTypedef) {
        types_[name] = bytes;
        return;
    }
    const bool isMember = !open_.empty() && open_.back().depth == braces_ && brackets_ == 0;
    if (!isMember) return check(name, bytes, maxVariableBytes);
    Open& in = open_.back();
    in.bytes = sum(in.bytes, bytes);
    check(in.name, in.bytes, in.isStruct ? maxStructBytes : maxBufferBytes);
}

void DeclaredSizes::check(StringView name, std::uint64_t bytes, std::uint64_t allowed) {
    if (bytes > allowed && fault_.empty())
        fault_ = fmt::format(
                "'{}' has {} bytes or more, where {} are possible", name, bytes, allowed);
}

std::uint64_t DeclaredSizes::sizeOf(StringView type) const {
    const auto known = types_.find(type);
    return known != types_.end() ? known->second : sizeOfNumbers(type).value_or(1);
}

} // namespace vlGraphics
