# Writes Assets.h and Assets.cpp into FOLDER from FILES. Text goes out in raw literals of at most 8,000
# characters, since compilers bound the length of one.
set(entries "")
foreach(file IN LISTS FILES)
    get_filename_component(name ${file} NAME)
    file(READ ${file} text)
    set(literals "")
    string(LENGTH "${text}" length)
    set(at 0)
    while(at LESS length)
        string(SUBSTRING "${text}" ${at} 8000 piece)
        string(APPEND literals "\n            R\"vl~(${piece})vl~\"")
        math(EXPR at "${at} + 8000")
    endwhile()
    string(APPEND entries "        {\"${name}\", \"\"${literals}},\n")
endforeach()
file(WRITE ${FOLDER}/Assets.h "#pragma once
#include <string_view>

namespace ${NAMESPACE} {

/// The text of a file compiled into the library; empty for an unknown name.
std::string_view asset(std::string_view name);

} // namespace ${NAMESPACE}
")
file(WRITE ${FOLDER}/Assets.cpp "#include \"Assets.h\"

#include <array>
#include <utility>

namespace ${NAMESPACE} {
namespace {

constexpr std::pair<std::string_view, std::string_view> assets[] = {
${entries}};

} // namespace

std::string_view asset(std::string_view name) {
    for (const auto& [key, text] : assets)
        if (key == name) return text;
    return {};
}

} // namespace ${NAMESPACE}
")
