# What "cmake --install" brings. The components are what packages are split by: "runtime" is what a program
# needs, "development" what building one needs, "documentation" the pages and the example programs;
# "import_runtime" and "import_development" are the same for the import.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/files-pdf")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/files-pdf")

install(TARGETS files-pdf EXPORT files-pdf-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development)
install(EXPORT files-pdf-targets NAMESPACE Files::
    DESTINATION "${package_dir}" COMPONENT development)
# In a set of its own, which is read only where the codecs are found.
if(FILES_PDF_STATIC)
    install(TARGETS files-pdf-static EXPORT files-pdf-static-targets
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
    install(EXPORT files-pdf-static-targets NAMESPACE Files::
        DESTINATION "${package_dir}" COMPONENT development)
endif()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/pdf" "${PROJECT_SOURCE_DIR}/include/host"
    DESTINATION "${header_dir}" COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "import.h" EXCLUDE)
if(TARGET files-pdf-import)
    install(TARGETS files-pdf-import EXPORT files-pdf-import-targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT import_runtime NAMELINK_COMPONENT import_development)
    install(EXPORT files-pdf-import-targets NAMESPACE Files::
        DESTINATION "${package_dir}" COMPONENT import_development)
    install(FILES "${PROJECT_SOURCE_DIR}/include/pdf/import.h"
        DESTINATION "${header_dir}/pdf" COMPONENT import_development)
endif()

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/files-pdf-config.cmake.in"
    "${PROJECT_BINARY_DIR}/files-pdf-config.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/files-pdf-config-version.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/files-pdf-config.cmake"
    "${PROJECT_BINARY_DIR}/files-pdf-config-version.cmake"
    DESTINATION "${package_dir}" COMPONENT development)

# The pkg-config file finds its prefix from where it lies, so that an installation can be moved and the
# prefix be chosen as late as by "cmake --install --prefix". Absolute folders stay what they are.
set(pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${pc_dir}")
    set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH pc_prefix "/prefix/${pc_dir}" "/prefix")
    string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${pc_prefix}")
endif()
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
        set(pc_${dir} "${CMAKE_INSTALL_${dir}}")
    else()
        set(pc_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
    endif()
endforeach()
# The static library leaves the codecs and the C++ runtime to the application's link.
set(pc_static "")
if(FILES_PDF_STATIC)
    set(runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
    list(FILTER runtime INCLUDE REGEX "^(stdc[+][+]|c[+][+]|m)$")
    list(REMOVE_DUPLICATES runtime)
    list(TRANSFORM runtime PREPEND "-l")
    list(JOIN runtime " " runtime)
    string(JOIN "\n" pc_static
        "Requires.private: libisal libdeflate"
        "Cflags.private: -DFILES_PDF_STATIC_DEFINE"
        "Libs.private: ${runtime}")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/files-pdf.pc.in" "${PROJECT_BINARY_DIR}/files-pdf.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/files-pdf.pc" DESTINATION "${pc_dir}" COMPONENT development)
if(TARGET files-pdf-import)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/files-pdf-import.pc.in"
        "${PROJECT_BINARY_DIR}/files-pdf-import.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/files-pdf-import.pc"
        DESTINATION "${pc_dir}" COMPONENT import_development)
endif()

# The pages lie to each other as they do in the sources, so that their links lead somewhere.
install(FILES
    "${PROJECT_SOURCE_DIR}/README.md"
    "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    "${PROJECT_SOURCE_DIR}/CONTRIBUTING.md"
    "${PROJECT_SOURCE_DIR}/SECURITY.md"
    "${PROJECT_SOURCE_DIR}/LICENSE"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT documentation
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg")
file(GLOB example_sources CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/examples/*.cpp" "${PROJECT_SOURCE_DIR}/examples/*.h")
install(FILES ${example_sources} "${PROJECT_SOURCE_DIR}/cmake/package/examples/CMakeLists.txt"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT documentation)
