# The target "docs": the site, from the public headers and the pages. Fails on any warning.
find_package(Doxygen 1.9.4 QUIET)
if(NOT DOXYGEN_FOUND)
    message(STATUS "No doxygen 1.9.4 or newer: there will be no target \"docs\"")
    return()
endif()

set(docs_dir "${PROJECT_BINARY_DIR}/docs")
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${docs_dir}/Doxyfile" @ONLY)

# A page with the source for each example program.
file(GLOB programs CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/*.cpp")
set(pages "")
foreach(program IN LISTS programs)
    cmake_path(GET program FILENAME name)
    string(APPEND pages "/// @example ${name}\n/// The program as it is compiled and tested.\n\n")
endforeach()
file(CONFIGURE OUTPUT "${docs_dir}/examples.dox" CONTENT "${pages}" @ONLY)

add_custom_target(docs
    COMMAND "${CMAKE_COMMAND}" -E rm -rf "${docs_dir}/html"
    COMMAND Doxygen::doxygen "${docs_dir}/Doxyfile"
    COMMAND sh "${PROJECT_SOURCE_DIR}/docs/check_links.sh" "${PROJECT_SOURCE_DIR}" "${docs_dir}/html"
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    COMMENT "Documentation in ${docs_dir}/html"
    VERBATIM)
