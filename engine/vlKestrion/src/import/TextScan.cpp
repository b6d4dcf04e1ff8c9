#include "TextScan.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace vlKestrion {

namespace {

bool continues(const char* start, const char* lineEnd) {
    if (lineEnd > start && lineEnd[-1] == '\r') --lineEnd;
    return lineEnd > start && lineEnd[-1] == '\\';
}

vlMemory::StringView withoutPlus(vlMemory::StringView word) {
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
    return word;
}

} // namespace

vlMemory::StringView LineScan::take() {
    const char* const start = at_;
    lineNumber_ = nextNumber_;
    const char* from = start;
    const char* lineEnd = end_;
    while (true) {
        const auto* found = static_cast<const char*>(
                std::memchr(from, '\n', static_cast<std::size_t>(end_ - from)));
        if (found == nullptr) {
            lineEnd = end_;
            at_ = end_;
            break;
        }
        ++nextNumber_;
        from = found + 1;
        if (continues(start, found)) continue;
        lineEnd = found;
        at_ = from;
        break;
    }
    const char* first = start;
    while (first < lineEnd && (*first == ' ' || *first == '\t'))
        ++first;
    if (lineEnd > first && lineEnd[-1] == '\r') --lineEnd;
    return {first, static_cast<std::size_t>(lineEnd - first)};
}

vlMemory::StringView takeWord(vlMemory::StringView& text) {
    std::size_t from = 0;
    while (from < text.size() && isBlank(text[from]))
        ++from;
    std::size_t to = from;
    while (to < text.size() && !isBlank(text[to]))
        ++to;
    const vlMemory::StringView word = text.substr(from, to - from);
    text.remove_prefix(to);
    return word;
}

vlMemory::StringView trimmed(vlMemory::StringView text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::optional<float> toFloat(vlMemory::StringView word) {
    word = withoutPlus(word);
    float value = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error == std::errc() && stop == end) return value;
    if (error != std::errc::result_out_of_range) return std::nullopt;
    double wide = 0;
    const auto again = std::from_chars(word.data(), end, wide);
    if (again.ptr != end) return std::nullopt;
    if (again.ec != std::errc()) return std::numeric_limits<float>::infinity();
    return static_cast<float>(wide);
}

std::optional<std::int64_t> toInteger(vlMemory::StringView word) {
    word = withoutPlus(word);
    std::int64_t value = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

} // namespace vlKestrion
