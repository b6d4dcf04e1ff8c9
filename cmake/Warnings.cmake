# The warnings that every target of ours is built with.
add_library(vl_warnings INTERFACE)
target_compile_options(vl_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Woverloaded-virtual -Wnon-virtual-dtor -Wnull-dereference
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wsuggest-override>
    $<$<BOOL:${VL_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(vl_warnings INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
