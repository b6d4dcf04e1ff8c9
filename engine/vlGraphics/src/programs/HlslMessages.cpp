#include "programs/HlslMessages.h"

#include <vlMemory/Utf8.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace vlGraphics::HlslMessages {

namespace {

using vlMemory::StringView;

constexpr StringView errorPrefix = "ERROR: ";

bool isNumber(StringView text) {
    return !text.empty() && text.find_first_not_of("0123456789") == StringView::npos;
}

StringView trimmed(StringView text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t\r") + 1);
}

StringView takeLine(StringView& log) {
    const std::size_t end = std::min(log.find('\n'), log.size());
    const StringView line = log.substr(0, end);
    log.remove_prefix(std::min(end + 1, log.size()));
    return line;
}

/// From "0:12: text", where the text before the line may be a number, a file's name, or -1.
std::optional<ProgramDiagnostic> placedError(SHADER_TYPE stage, StringView text) {
    for (std::size_t colon = text.find(':'); colon != StringView::npos;
         colon = text.find(':', colon + 1)) {
        const std::size_t next = text.find(':', colon + 1);
        if (next == StringView::npos) return std::nullopt;
        const StringView number = text.substr(colon + 1, next - colon - 1);
        if (!isNumber(number)) continue;
        ProgramDiagnostic found;
        found.stage = stage;
        std::from_chars(number.data(), number.data() + number.size(), found.line);
        found.line = std::max(found.line, 1U);
        found.text = trimmed(text.substr(next + 1));
        const StringView file = text.substr(0, colon);
        if (file.starts_with('-')) {
            // The preamble's lines are nobody's.
            found.line = 1;
            found.text = "in the macros: " + found.text;
        } else if (!isNumber(file)) {
            found.file = file;
        }
        return found;
    }
    return std::nullopt;
}

/// From "Linking pixel stage: text", of which the text may go on in the next line.
std::string unplacedError(StringView text, StringView next) {
    constexpr StringView linking = "Linking ";
    constexpr StringView end = " stage: ";
    if (text.starts_with(linking) && text.find(end) != StringView::npos)
        text.remove_prefix(text.find(end) + end.size());
    text = trimmed(text);
    if (!text.ends_with(':')) return std::string(text);
    return fmt::format("{} {}", text, trimmed(next));
}

} // namespace

ProgramDiagnostic error(SHADER_TYPE stage, StringView message) {
    return ProgramCompilationResult(stage, message).getDiagnostics().front();
}

ProgramDiagnostic firstError(SHADER_TYPE stage, StringView log) {
    std::string unplaced;
    while (!log.empty()) {
        StringView line = takeLine(log);
        if (!line.starts_with(errorPrefix)) continue;
        line.remove_prefix(errorPrefix.size());
        if (auto placed = placedError(stage, line)) return *placed;
        if (unplaced.empty()) unplaced = unplacedError(line, log.substr(0, log.find('\n')));
    }
    return {stage, {}, 1, unplaced.empty() ? "it cannot be compiled" : unplaced};
}

void finish(ProgramDiagnostic& diagnostic, const IncludeFiles& files) {
    std::size_t index = files.count();
    const StringView file = diagnostic.file;
    if (file.starts_with('@')) std::from_chars(file.data() + 1, file.data() + file.size(), index);
    if (index < files.count()) diagnostic.file = files.nameOf(files.at(index));
    diagnostic.file = vlMemory::printable(diagnostic.file);
    diagnostic.text = vlMemory::printable(diagnostic.text);
}

} // namespace vlGraphics::HlslMessages
