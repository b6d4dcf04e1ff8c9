#pragma once
#include <vlCommon/Result.h>
#include <vlExport/Node.h>
#include <vlMemory/String.h>

#include <cstddef>

namespace vlExport {

/** Trees to JSON text and back. Text that was exported is exported again byte for byte after an
 * import. Any thread. */
class JsonExporter {
public:
    /// Arrays and objects within each other; a single value has depth 0.
    static constexpr std::size_t maxDepth = 200;
    static constexpr std::size_t maxTextSize = std::size_t{1} << 30U; ///< bytes
    static constexpr std::size_t maxValues = std::size_t{1} << 25U;   ///< of all types, in one text

    JsonExporter() = delete;

    /** Two spaces a level, members in their order, up to 16 numbers of an array on one line, a line
     *  feed at the end. JSON has neither infinities nor broken UTF-8: not-a-number is written as
     * 0.0, an infinity as the largest double, a broken byte as U+FFFD, so what is written can be
     * read. */
    static vlMemory::String exportTreeIntoString(const Node& tree);

    /** Refuses whatever is not strict JSON, duplicate names, broken UTF-8, numbers that do not fit
     * 64 bits, and what is larger or deeper than the bounds above; the error starts with
     *  "nameForErrors:line: ". */
    static vlCommon::Result<Node> importIntoTree(vlMemory::StringView text,
                                                 vlMemory::StringView nameForErrors);
};

} // namespace vlExport
