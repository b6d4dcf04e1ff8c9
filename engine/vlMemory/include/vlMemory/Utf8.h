#pragma once
#include <vlMemory/String.h>

#include <cstddef>

namespace vlMemory {

// For text from files and people, which may be anything. Any thread.

/// Bytes of the well-formed UTF-8 character at the start of the text; 0 where there is none, which
/// includes overlong forms, surrogates and what lies beyond the last character.
std::size_t utf8Length(StringView text);

/// Where the first byte stands that is not well-formed; npos where all are.
std::size_t findInvalidUtf8(StringView text);

/// Whether the text starts with a control character of Unicode: line ends, escapes, U+0080 to
/// U+009F.
bool startsWithControl(StringView text);

/// Well-formed and without control characters: can be shown on one line as it is.
bool isPrintable(StringView text);

/** One line that can be shown: what is broken or a control character becomes '?', and what lies
 * behind that many bytes becomes "...". */
String printable(StringView text, std::size_t mostBytes = 2000);

} // namespace vlMemory
