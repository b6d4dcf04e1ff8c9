# Every third-party library, as one imported target each: dep::<name>. Their headers are system headers,
# so that their warnings are not ours. What each is for stands in packages.txt.

find_program(CCACHE ccache)
if(CCACHE)
    # What it asks for before it keeps anything that reads a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets)
find_package(glm REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
find_package(tl-expected REQUIRED)

function(dep_headers name header)
    cmake_parse_arguments(arg "" "" "HINTS;LIBRARIES;DEFINES" ${ARGN})
    find_path(${name}_INCLUDE ${header} HINTS ${arg_HINTS} REQUIRED)
    add_library(dep::${name} INTERFACE IMPORTED GLOBAL)
    target_include_directories(dep::${name} SYSTEM INTERFACE ${${name}_INCLUDE})
    foreach(library ${arg_LIBRARIES})
        find_library(${name}_${library}_LIBRARY ${library} REQUIRED)
        target_link_libraries(dep::${name} INTERFACE ${${name}_${library}_LIBRARY})
    endforeach()
    target_compile_definitions(dep::${name} INTERFACE ${arg_DEFINES})
endfunction()

function(dep_package name)
    pkg_check_modules(${name} REQUIRED IMPORTED_TARGET GLOBAL ${ARGN})
    add_library(dep::${name} ALIAS PkgConfig::${name})
endfunction()

add_library(dep::threads ALIAS Threads::Threads)
add_library(dep::qt ALIAS Qt6::Widgets)
add_library(dep::glm ALIAS glm::glm)
add_library(dep::fmt ALIAS fmt::fmt)
add_library(dep::json ALIAS nlohmann_json::nlohmann_json)
add_library(dep::cli11 ALIAS CLI11::CLI11)
add_library(dep::expected ALIAS tl::expected)

dep_headers(vulkan volk.h DEFINES VK_NO_PROTOTYPES)
target_link_libraries(dep::vulkan INTERFACE ${CMAKE_DL_LIBS})
dep_headers(vma vk_mem_alloc.h HINTS ${PROJECT_SOURCE_DIR}/build/deps/vma/usr/include)
dep_headers(stb stb/stb_image.h)
dep_headers(tinyobj tiny_obj_loader.h LIBRARIES tinyobjloader)
dep_headers(meshoptimizer meshoptimizer.h LIBRARIES meshoptimizer)
dep_headers(spirvcross spirv_cross/spirv_cross_c.h LIBRARIES spirv-cross-c-shared)
# The class layout in glslang's headers depends on these two.
dep_headers(glslang glslang/Public/ShaderLang.h
    LIBRARIES glslang MachineIndependent GenericCodeGen OSDependent HLSL OGLCompiler SPIRV SPVRemapper SPIRV-Tools-opt SPIRV-Tools
    DEFINES ENABLE_HLSL=1 ENABLE_OPT=1)
dep_package(xcb xcb)
dep_package(turbojpeg libturbojpeg)
dep_package(png libpng)
# Built as C++: an error in a script unwinds through our frames as an exception does.
dep_package(lua lua5.4-c++)

if(VL_TESTS)
    find_package(GTest REQUIRED)
    add_library(dep::gtest ALIAS GTest::gtest)
    add_library(dep::gmock ALIAS GTest::gmock)
endif()
if(VL_BENCH)
    find_package(benchmark REQUIRED)
    add_library(dep::benchmark ALIAS benchmark::benchmark)
endif()
