# VL_SANITIZE=address adds the undefined-behaviour sanitizer; both stop at the first finding. Assertions
# stay on, and debug information is what a stack trace needs: these builds exist to find faults.
if(VL_SANITIZE STREQUAL "address")
    # Virtual tables are left unchecked: parts of the HLSL compiler come without type information.
    add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(VL_SANITIZE_ADDRESS=1)
elseif(VL_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread)
    add_link_options(-fsanitize=thread)
    add_compile_definitions(VL_SANITIZE_THREAD=1)
elseif(NOT VL_SANITIZE STREQUAL "")
    message(FATAL_ERROR "VL_SANITIZE is empty, 'address' or 'thread', not '${VL_SANITIZE}'")
endif()
if(VL_SANITIZE)
    # The compiler's own documentation: sanitizers make this one see faults where there are none.
    add_compile_options(-Wno-maybe-uninitialized)
    set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1")
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
