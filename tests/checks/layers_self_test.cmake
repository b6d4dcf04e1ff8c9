# A check that cannot fail checks nothing: plants one fault at a time in a small tree under FOLDER and
# expects layers.cmake to name it, then expects it to be content with the tree unspoilt.
cmake_minimum_required(VERSION 3.25)

function(check_tree tree result text)
    execute_process(COMMAND ${CMAKE_COMMAND} -D ROOT=${tree} -P ${CMAKE_CURRENT_LIST_DIR}/layers.cmake
        RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
    # Messages are wrapped at the width of a terminal.
    string(REGEX REPLACE "[ \n]+" " " words "${out}${err}")
    set(${result} ${status} PARENT_SCOPE)
    set(${text} "${words}" PARENT_SCOPE)
endfunction()

# plant(<file> <its text> <what the check shall say>)
function(plant path content expected)
    file(REMOVE_RECURSE ${FOLDER})
    file(WRITE ${FOLDER}/${path} "${content}\n")
    check_tree(${FOLDER} status text)
    string(FIND "${text}" "${expected}" at)
    if(status EQUAL 0 OR at EQUAL -1)
        message(SEND_ERROR "a planted fault went unseen\n  in ${path}: ${content}\n"
            "  expected: ${expected}\n  got: ${text}")
    endif()
endfunction()

# A library knows those before it only, and the two heavy ones do not know each other.
plant(engine/vlMaths/src/a.cpp "#include <vlLog/Logger.h>" "vlMaths must not know vlLog")
plant(engine/vlGraphics/src/a.cpp "#include <vlWinUi/Window.h>" "vlGraphics must not know vlWinUi")
plant(engine/vlWinUi/src/a.cpp "#include \"vlGraphics/Mesh.h\"" "vlWinUi must not know vlGraphics")
plant(engine/vlKestrion/src/a.cpp "#  include <vlWinUi/Window.h>" "vlKestrion must not know vlWinUi")
plant(engine/vlLog/src/a.cpp "#include <vlNowhere/A.h>" "no engine library is called vlNowhere")
plant(engine/vlNowhere/src/a.cpp "" "vlNowhere has no place")
plant(engine/vlKestrion/src/a.cpp "#include \"core/Message.h\"" "vlKestrion must not know the editor's core")

# A room of the editor knows those below it.
plant(src/core/a.cpp "#include <vector>\n#include \"interfaces/A.h\"" "core must not know interfaces")
plant(src/scene/a.h "#include \"editors/mesh/A.h\"" "scene must not know editors")
plant(src/viewport/a.h "#include \"editors/mesh/A.h\"" "viewport must not know editors")
plant(src/editors/mesh/a.h "#include \"viewport/A.h\"" "editors must not know viewport")
plant(src/editors/mesh/a.h "#include \"editors/camera/A.h\"" "kind mesh must not know the kind camera")
plant(src/project/a.h "#include \"app/A.h\"" "project must not know app")
plant(src/attic/a.h "" "attic has no place")
plant(src/core/a.h "#include \"../app/A.h\"" "never up")

# Third parties stay behind their walls.
plant(src/app/a.cpp "#include <QWidget>" "qt stays behind its wall")
plant(engine/vlGraphics/src/a.cpp "#include <vulkan/vulkan.h>" "vulkan stays behind its wall")
plant(engine/vlGraphics/src/vulkan/a.cpp "#include <QtGui/QWindow>" "qt stays behind its wall")
plant(engine/vlExport/include/vlExport/A.h "#include <nlohmann/json.hpp>" "must not include nlohmann/json.hpp")
plant(engine/vlExport/include/vlExport/A.h "#include \"B.h\"" "must not include B.h")
plant(engine/vlWinUi/include/vlWinUi/A.h "#include <QWidget>" "must not include QWidget")

# Rooms stay small and finished.
string(REPEAT "int x;\n" 801 long)
plant(src/core/a.cpp "${long}" "more than 800")
plant(src/core/a.cpp "// TO${cut}DO later" "unfinished")

file(REMOVE_RECURSE ${FOLDER})
file(WRITE ${FOLDER}/engine/vlWinUi/src/Window.cpp "#include <QWidget>\n#include <vlLog/Logger.h>\n")
file(WRITE ${FOLDER}/engine/vlGraphics/src/vulkan/Device.cpp "#include <volk.h>\n")
file(WRITE ${FOLDER}/engine/vlGraphics/src/vulkan/Device.h "")
file(WRITE ${FOLDER}/engine/vlGraphics/src/Renderer.cpp "#include \"vulkan/Device.h\"\n")
file(WRITE ${FOLDER}/engine/vlLog/include/vlLog/A.h
    "#include <vlCommon/Result.h>\n#include <source_location>\n#include <tl/expected.hpp>\n")
file(WRITE ${FOLDER}/src/editors/kinds.h "#include \"editors/mesh/Mesh.h\"\n#include \"editors/camera/Camera.h\"\n")
file(WRITE ${FOLDER}/src/editors/mesh/Mesh.h "#include \"editors/mesh/Fields.h\"\n#include \"core/Message.h\"\n")
file(WRITE ${FOLDER}/src/app/main.cpp "#include \"viewport/A.h\"\n#include <vlKestrion/System.h>\n")
check_tree(${FOLDER} status text)
if(NOT status EQUAL 0)
    message(SEND_ERROR "a tree without faults was refused: ${text}")
endif()
file(REMOVE_RECURSE ${FOLDER})
