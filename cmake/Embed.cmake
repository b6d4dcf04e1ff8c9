# vl_embed(target namespace file...)
# Compiles text files into the target: "Assets.h" declares in that namespace a
#   std::string_view asset(std::string_view name);
# which gives the text of the file of that name (its last part), and is empty for an unknown one.
set(VL_EMBED_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/embed_script.cmake)
function(vl_embed target namespace)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_assets)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE files)
    add_custom_command(
        OUTPUT ${folder}/Assets.cpp ${folder}/Assets.h
        COMMAND ${CMAKE_COMMAND} -D "FILES=${files}" -D NAMESPACE=${namespace} -D FOLDER=${folder}
                -P ${VL_EMBED_SCRIPT}
        DEPENDS ${files} ${VL_EMBED_SCRIPT}
        VERBATIM)
    target_sources(${target} PRIVATE ${folder}/Assets.cpp)
    target_include_directories(${target} PRIVATE ${folder})
endfunction()
