#pragma once
#include <vlGraphics/ProgramSourcesHolder.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vlGraphics::HlslText {

/// What is wrong with a text as such, as "line: text": too long, not UTF-8, or with zero bytes.
std::optional<std::string> findFault(vlMemory::StringView text);
/// What is wrong with the macros: names are identifiers, values a line without control characters.
std::optional<std::string> findFault(const std::vector<DefineMacro>& macros);
/// Where the text first has the word behind a colon, whatever its case; 1 where it has not.
std::uint32_t lineOfSemantic(vlMemory::StringView text, vlMemory::StringView semantic);
bool isBlank(vlMemory::StringView text);
/// Whether a text may have an #include; rather yes than no.
bool mayInclude(vlMemory::StringView text);

/** The text that goes before a stage's source: how matrices lie in memory, the portable spelling
 *  where wanted, and the macros as #define lines. */
std::string preamble(const std::vector<DefineMacro>& macros, bool crossCompilerDefines);

} // namespace vlGraphics::HlslText
