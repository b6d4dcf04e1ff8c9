#pragma once
#include <vlMemory/String.h>

namespace vlExport {

/** How one value of an enumeration is called in files. An enumeration's table is a constexpr array
 * of these; each value and each text stands in it once. */
template <class Enum> struct EnumText {
    Enum value;
    vlMemory::StringView text;
};

} // namespace vlExport
