# Most of the time that a source takes to compile goes into headers that are not ours. Each program or
# library of many sources reads them once.
#
# Includes stay as if there were no such thing: CMAKE_DISABLE_PRECOMPILE_HEADERS=ON must build, too.

# Below that, making the precompiled header takes longer than it saves.
set(VL_PRECOMPILE_FROM 5)

set(VL_PRECOMPILED_ALWAYS
    <algorithm> <array> <chrono> <cmath> <cstdint> <cstring> <filesystem> <functional> <limits> <map>
    <memory> <optional> <span> <string> <string_view> <unordered_map> <utility> <variant> <vector>
    <fmt/format.h>)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess) # or the compiler cache stays out of it
endif()

# vl_precompile(target source... [HEADERS header...]): the headers besides those of everywhere
function(vl_precompile target)
    cmake_parse_arguments(arg "" "" "HEADERS" ${ARGN})
    list(LENGTH arg_UNPARSED_ARGUMENTS count)
    if(count GREATER_EQUAL VL_PRECOMPILE_FROM)
        target_precompile_headers(${target} PRIVATE ${VL_PRECOMPILED_ALWAYS} ${arg_HEADERS})
    endif()
endfunction()
