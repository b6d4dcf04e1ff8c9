# How tests are added, and which of them the sanitizers' builds run.
#
# Labels: unit (a library's own), check (the sources themselves), program (the whole editor), and across
# these asan and tsan. Each sanitizer builds only what it runs: targets vl_asan_tests and vl_tsan_tests.

# Libraries whose tests open windows or present pictures; every room of the editor does, too.
set(VL_DISPLAY_LIBRARIES vlWinUi vlGraphics vlKestrion)
# Libraries in which threads meet.
set(VL_THREADED_LIBRARIES vlCommon vlLog vlTasks vlScripts vlEditor_core)

add_custom_target(vl_asan_tests)
add_custom_target(vl_tsan_tests)

set(VL_TEST_LAUNCHER "")
# Validation layers watch every start of the engine, and nobody's own settings are read or written.
set(VL_TEST_ENVIRONMENT VLGRAPHICS_VALIDATION=1
    XDG_CACHE_HOME=${PROJECT_BINARY_DIR}/home/cache XDG_CONFIG_HOME=${PROJECT_BINARY_DIR}/home/config)
if(VL_SANITIZE)
    # The sanitizers of GCC 12 do not start on kernels that scatter addresses widely.
    execute_process(COMMAND setarch -R true RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
    if(status EQUAL 0)
        set(VL_TEST_LAUNCHER setarch -R)
    endif()
    list(APPEND VL_TEST_ENVIRONMENT
        "LSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/support/leaks.supp':print_suppressions=0"
        "UBSAN_OPTIONS=print_stacktrace=1"
        "TSAN_OPTIONS=ignore_noninstrumented_modules=1:second_deadlock_stack=1")
endif()

# vl_add_test(name [DISPLAY] [HEAVY] [THREADS] [SECONDS n] [LABELS label...] [TARGETS target...]
#             COMMAND command...)
# DISPLAY gives the test an X server of its own; HEAVY keeps it out of the address sanitizer's run;
# THREADS has the thread sanitizer run it. TARGETS are the programs that the command needs.
function(vl_add_test name)
    cmake_parse_arguments(arg "DISPLAY;HEAVY;THREADS" "SECONDS" "LABELS;TARGETS;COMMAND" ${ARGN})
    set(launcher ${VL_TEST_LAUNCHER})
    if(arg_DISPLAY)
        list(PREPEND launcher ${PROJECT_SOURCE_DIR}/tests/support/with_display.sh)
    endif()
    if(NOT arg_SECONDS)
        set(arg_SECONDS 300)
    endif()
    if(VL_SANITIZE)
        math(EXPR arg_SECONDS "${arg_SECONDS} * 4")
    endif()
    set(sanitizers "")
    if(NOT arg_HEAVY)
        list(APPEND sanitizers asan)
    endif()
    if(arg_THREADS)
        list(APPEND sanitizers tsan)
    endif()
    foreach(sanitizer IN LISTS sanitizers)
        if(arg_TARGETS)
            add_dependencies(vl_${sanitizer}_tests ${arg_TARGETS})
        endif()
    endforeach()
    if(arg_TARGETS)
        list(APPEND arg_LABELS ${sanitizers})
    endif()
    add_test(NAME ${name} COMMAND ${launcher} ${arg_COMMAND})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_SECONDS} LABELS "${arg_LABELS}" ENVIRONMENT "${VL_TEST_ENVIRONMENT}")
endfunction()

# vl_tests(library sources...): one test program for a library, with one main for all.
function(vl_tests name)
    if(NOT VL_TESTS OR NOT ARGN)
        return()
    endif()
    add_executable(${name}_test ${ARGN})
    target_link_libraries(${name}_test PRIVATE ${name} vl_test_main vl_warnings)
    vl_precompile(${name}_test ${ARGN} HEADERS <gmock/gmock.h>)
    set(flags "")
    set(rooms ${PROJECT_SOURCE_DIR}/src)
    cmake_path(IS_PREFIX rooms ${CMAKE_CURRENT_SOURCE_DIR} is_room)
    if(is_room OR name IN_LIST VL_DISPLAY_LIBRARIES)
        list(APPEND flags DISPLAY)
    endif()
    if(name IN_LIST VL_THREADED_LIBRARIES)
        list(APPEND flags THREADS)
    endif()
    vl_add_test(${name} ${flags} LABELS unit TARGETS ${name}_test COMMAND $<TARGET_FILE:${name}_test>)
endfunction()
