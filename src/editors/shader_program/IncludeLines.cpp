#include "editors/shader_program/IncludeLines.h"

#include <algorithm>

namespace vlEditor {
namespace {

void skipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
}

bool skip(std::string_view& text, std::string_view word) {
    skipBlanks(text);
    if (!text.starts_with(word)) return false;
    text.remove_prefix(word.size());
    return true;
}

/// Empty where the line includes nothing.
std::string_view nameIn(std::string_view line) {
    if (!skip(line, "#") || !skip(line, "include")) return {};
    skipBlanks(line);
    if (line.empty() || (line.front() != '"' && line.front() != '<')) return {};
    const char end = line.front() == '"' ? '"' : '>';
    line.remove_prefix(1);
    return line.substr(0, line.find(end));
}

bool names(std::string_view file, std::string_view name) {
    while (name.starts_with("./") || name.starts_with("../"))
        name.remove_prefix(name.find('/') + 1);
    if (name.empty() || !file.ends_with(name)) return false;
    return file.size() == name.size() || file[file.size() - name.size() - 1] == '/';
}

} // namespace

std::vector<IncludeLine> includeLines(std::string_view source) {
    std::vector<IncludeLine> all;
    for (std::uint32_t line = 1; !source.empty(); ++line) {
        const std::size_t end = std::min(source.find('\n'), source.size());
        const std::string_view name = nameIn(source.substr(0, end));
        if (!name.empty()) all.push_back({line, std::string(name)});
        source.remove_prefix(std::min(end + 1, source.size()));
    }
    return all;
}

std::uint32_t lineLeadingTo(std::string_view file, std::string_view source) {
    const std::vector<IncludeLine> all = includeLines(source);
    const auto found = std::ranges::find_if(
            all, [&](const IncludeLine& include) { return names(file, include.name); });
    if (found != all.end()) return found->line;
    return all.empty() ? 0 : all.front().line;
}

} // namespace vlEditor
