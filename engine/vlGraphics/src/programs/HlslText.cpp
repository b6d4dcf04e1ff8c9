#include "programs/HlslText.h"

#include "Assets.h"
#include "programs/HlslCompiler.h"
#include "programs/InterfaceMapper.h"
#include "programs/SourceLines.h"

#include <vlMemory/Utf8.h>

#include <fmt/format.h>

#include <algorithm>

namespace vlGraphics::HlslText {

namespace {

using vlMemory::StringView;

bool isBlankCharacter(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isNameStart(char c) {
    return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isNameCharacter(char c) {
    return isNameStart(c) || (c >= '0' && c <= '9');
}

std::size_t lineAt(StringView text, std::size_t at) {
    return 1 + static_cast<std::size_t>(
                       std::count(text.begin(), text.begin() + std::ptrdiff_t(at), '\n'));
}

} // namespace

std::optional<std::string> findFault(StringView text) {
    if (text.size() > maxSourceBytes) {
        return fmt::format("1: the source has {} bytes, more than {} cannot be compiled",
                           text.size(),
                           maxSourceBytes);
    }
    const std::size_t broken = vlMemory::findInvalidUtf8(text);
    const std::size_t zero = text.find('\0');
    if (broken < zero) return fmt::format("{}: the text is not valid UTF-8", lineAt(text, broken));
    if (zero < broken) return fmt::format("{}: the text has a zero byte", lineAt(text, zero));
    return std::nullopt;
}

std::optional<std::string> findFault(const std::vector<DefineMacro>& macros) {
    std::size_t bytes = 0;
    for (const DefineMacro& macro : macros) {
        const bool named = !macro.name.empty() && isNameStart(macro.name.front()) &&
                           std::all_of(macro.name.begin(), macro.name.end(), isNameCharacter);
        if (!named) return fmt::format("1: macro '{}': the name is not an identifier", macro.name);
        const bool oneLine = std::none_of(macro.value.begin(), macro.value.end(), [](char c) {
            return static_cast<unsigned char>(c) < 0x20 && c != '\t';
        });
        // A backslash at the end would join the value with what follows.
        if (!oneLine || macro.value.ends_with('\\'))
            return fmt::format("1: macro '{}': the value is not a single line", macro.name);
        if (const auto fault = findFault(macro.value))
            return fmt::format("1: macro '{}': {}", macro.name, fault->substr(3));
        bytes += macro.name.size() + macro.value.size();
    }
    if (bytes > maxSourceBytes) return "1: the macros are too long";
    return std::nullopt;
}

std::uint32_t lineOfSemantic(StringView text, StringView semantic) {
    const std::string wanted = normalisedSemantic(semantic);
    LineReader reader(text);
    std::vector<StringView> tokens;
    StringView last; // a colon may end the line before
    while (reader.next(tokens)) {
        for (const StringView token : tokens) {
            if (last == ":" && normalisedSemantic(token) == wanted)
                return static_cast<std::uint32_t>(reader.line());
            last = token;
        }
    }
    return 1;
}

bool isBlank(StringView text) {
    return std::all_of(text.begin(), text.end(), isBlankCharacter);
}

bool mayInclude(StringView text) {
    // A backslash may join the word's halves.
    return text.find('#') != StringView::npos &&
           (text.find("include") != StringView::npos || text.find('\\') != StringView::npos);
}

std::string preamble(const std::vector<DefineMacro>& macros, bool crossCompilerDefines) {
    std::string text = "#pragma pack_matrix(row_major)\n";
    if (crossCompilerDefines) text += assets::asset("cross_compiler.hlsl");
    for (const DefineMacro& macro : macros)
        text += fmt::format("#define {} {}\n", macro.name, macro.value);
    return text;
}

} // namespace vlGraphics::HlslText
