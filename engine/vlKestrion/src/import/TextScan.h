#pragma once
#include <vlMemory/String.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace vlKestrion {

/** Goes through a text of the kind that models and their materials are written in: statements of
 * words, one a line; a backslash at a line's end continues it. Any locale. */
class LineScan {
public:
    explicit LineScan(vlMemory::StringView text)
        : begin_(text.data()), at_(begin_), end_(begin_ + text.size()) {}

    /// False at the end. The line comes without its end and without blanks before it.
    bool next(vlMemory::StringView& line) {
        if (at_ >= end_) return false;
        line = take();
        return true;
    }
    /// Of the line last given, from 1.
    std::uint64_t lineNumber() const { return lineNumber_; }
    /// Of the last line of the text, once it was given.
    std::uint64_t endLineNumber() const {
        return at_ > begin_ && at_[-1] == '\n' ? nextNumber_ - 1 : nextNumber_;
    }

private:
    vlMemory::StringView take();

    const char* begin_;
    const char* at_;
    const char* end_;
    std::uint64_t lineNumber_ = 0;
    std::uint64_t nextNumber_ = 1;
};

inline bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\\';
}

/// Cuts the next word off the text; empty at the end. Continuation marks count as blanks.
vlMemory::StringView takeWord(vlMemory::StringView& text);
vlMemory::StringView trimmed(vlMemory::StringView text);
/// Nothing where the word is no number; what is too large for a float is infinite.
std::optional<float> toFloat(vlMemory::StringView word);
std::optional<std::int64_t> toInteger(vlMemory::StringView word);

} // namespace vlKestrion
