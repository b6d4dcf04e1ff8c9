# Fails where README.md's table of packages and cmake/packages.txt say different things.
# Run as: cmake -D ROOT=<folder> -P packages.cmake
cmake_minimum_required(VERSION 3.25)

file(STRINGS ${ROOT}/cmake/packages.txt lines REGEX "^[a-z0-9]")
file(STRINGS ${ROOT}/README.md table REGEX "^\\| `[a-z0-9.+-]+` \\|")
set(expected "")
foreach(line IN LISTS lines)
    string(REGEX REPLACE "^([^ ]+) +# *(.*)$" "| `\\1` | \\2 |" row "${line}")
    list(APPEND expected "${row}")
endforeach()
set(rows ${table})
list(FILTER rows EXCLUDE REGEX "^\\| `vl")
set(missing ${expected})
list(REMOVE_ITEM missing ${rows})
list(REMOVE_ITEM rows ${expected})
if(missing OR rows)
    list(JOIN missing "\n  " missing)
    list(JOIN rows "\n  " rows)
    message(FATAL_ERROR "README.md's packages are not those of cmake/packages.txt\n"
        "  missing:\n  ${missing}\n  to go:\n  ${rows}")
endif()
