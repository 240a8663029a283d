# Compiles every public header alone, and twice in one unit, against the public headers only.
file(GLOB_RECURSE public_headers CONFIGURE_DEPENDS
    RELATIVE "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/include/*.h")

set(units "")
foreach(header IN LISTS public_headers)
    string(REPLACE "/" "_" unit "${header}")
    set(unit "${PROJECT_BINARY_DIR}/header-self-check/${unit}.cpp")
    file(CONFIGURE OUTPUT "${unit}" @ONLY
        CONTENT "#include <@header@>\n#include <@header@> // twice: it guards itself\n")
    list(APPEND units "${unit}")
endforeach()

if(units)
    add_library(header-self-check OBJECT ${units})
    target_include_directories(header-self-check PRIVATE "${PROJECT_SOURCE_DIR}/include")
endif()
