# Fails, naming the first places, where a source is not as clang-format would have it.
# Run as: cmake -D ROOT=<folder> -D CLANG_FORMAT=<program> -P format.cmake
cmake_minimum_required(VERSION 3.25)

set(patterns "")
foreach(folder engine src tests bench)
    list(APPEND patterns ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
endforeach()
file(GLOB_RECURSE sources ${patterns})
execute_process(COMMAND ${CLANG_FORMAT} --dry-run -Werror --ferror-limit=1 ${sources}
    RESULT_VARIABLE status ERROR_VARIABLE places)
if(NOT status EQUAL 0)
    string(REGEX MATCHALL "[^\n]*: error:" places "${places}")
    list(TRANSFORM places REPLACE ": error:$" "")
    list(JOIN places "\n  " places)
    message(FATAL_ERROR "Run clang-format -i on these, first place of each:\n  ${places}")
endif()
