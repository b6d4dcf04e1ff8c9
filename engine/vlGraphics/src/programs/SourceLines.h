#pragma once
#include <vlMemory/String.h>

#include <cstddef>
#include <vector>

namespace vlGraphics {

/** Cuts a text into the words and marks of one line after the other; lines that a backslash or a
 *  comment joins count as one. */
class LineReader {
public:
    explicit LineReader(vlMemory::StringView text) : text_(text) {}

    static bool isWordCharacter(char c);

    /// The line's number, from 1.
    std::size_t line() const { return line_; }
    /// False at the text's end. The words and marks point into the text.
    bool next(std::vector<vlMemory::StringView>& tokens);

private:
    bool skipJoin();
    bool skipComment();
    vlMemory::StringView takeToken();

    vlMemory::StringView text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    std::size_t nextLine_ = 1;
};

/// The macro whose definition leaves out all of a text when it is included again; empty where there
/// is none.
vlMemory::StringView includeGuardOf(vlMemory::StringView text);

} // namespace vlGraphics
