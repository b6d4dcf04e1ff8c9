#pragma once
#include <vlMemory/String.h>

#include <cstddef>

namespace vlExport {

/// Bytes of the well-formed UTF-8 character at the start of the text; 0 where there is none.
std::size_t utf8Length(vlMemory::StringView text);

/// Where the first byte stands that is not well-formed; npos where all are.
std::size_t findInvalidUtf8(vlMemory::StringView text);

} // namespace vlExport
