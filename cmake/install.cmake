include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/files-pdf")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/files-pdf")

set(libraries files-pdf)
if(FILES_PDF_STATIC)
    list(APPEND libraries files-pdf-static)
endif()
install(TARGETS ${libraries} EXPORT files-pdf-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/pdf" "${PROJECT_SOURCE_DIR}/include/host"
    DESTINATION "${header_dir}"
    FILES_MATCHING PATTERN "*.h")
install(EXPORT files-pdf-targets NAMESPACE Files:: DESTINATION "${package_dir}")

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
    DESTINATION "${package_dir}")

# Directories under the prefix are written relative to it, so that the file can be moved along.
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${dir}}")
        set(pc_${dir} "${CMAKE_INSTALL_${dir}}")
    else()
        set(pc_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
    endif()
endforeach()
set(at "@")
# The prefix may be chosen as late as by "cmake --install --prefix".
configure_file("${PROJECT_SOURCE_DIR}/cmake/files-pdf.pc.in"
    "${PROJECT_BINARY_DIR}/files-pdf.pc.in" @ONLY)
install(CODE "
    set(pc_prefix \"\${CMAKE_INSTALL_PREFIX}\")
    configure_file(\"${PROJECT_BINARY_DIR}/files-pdf.pc.in\"
        \"${PROJECT_BINARY_DIR}/files-pdf.pc\" @ONLY)")
install(FILES "${PROJECT_BINARY_DIR}/files-pdf.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
