#include "editors/shader_program/MacroText.h"

#include <algorithm>
#include <string_view>

namespace vlEditor {

std::string codeText(const ShaderProgramMacroList& macros) {
    std::string text;
    for (const ShaderProgramMacro& macro : macros)
        text.append(macro.name).append(" ").append(macro.value).append("\n");
    return text;
}

void readCode(const std::string& text, ShaderProgramMacroList& macros) {
    macros.clear();
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t blank = std::min(line.find_first_of(" \t"), line.size());
        if (blank == 0) continue;
        const std::size_t value = std::min(blank + 1, line.size());
        macros.push_back({std::string(line.substr(0, blank)), std::string(line.substr(value))});
    }
}

} // namespace vlEditor
