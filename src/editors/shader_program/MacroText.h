#pragma once
#include "core/Members.h"

#include <string>
#include <vector>

namespace vlEditor {

/** A macro that is defined before a stage's source. */
struct ShaderProgramMacro {
    std::string name;
    std::string value;

    static constexpr auto members() {
        return std::tuple{Member{"name", &ShaderProgramMacro::name},
                          Member{"value", &ShaderProgramMacro::value}};
    }
    friend bool operator==(const ShaderProgramMacro&, const ShaderProgramMacro&) = default;
};

using ShaderProgramMacroList = std::vector<ShaderProgramMacro>;

/// How macros are typed, one a line: "NAME value". Without a value a macro is defined and empty.
std::string codeText(const ShaderProgramMacroList& macros);
/// A line that begins with a blank, or with nothing, names no macro and is passed over.
void readCode(const std::string& text, ShaderProgramMacroList& macros);

} // namespace vlEditor
