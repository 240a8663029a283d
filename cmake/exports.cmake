# Limits what the shared library exports to exports.map.in, and marks it with the library's version.
# An instrumented library shares symbols of the instrumentation with its application.
if(files_pdf_sanitizers)
    return()
endif()

include(CheckLinkerFlag)
file(WRITE "${PROJECT_BINARY_DIR}/exports-probe.map" "{ local: *; };\n")
check_linker_flag(CXX "LINKER:--version-script=${PROJECT_BINARY_DIR}/exports-probe.map"
    FILES_PDF_HAS_VERSION_SCRIPT)
if(FILES_PDF_HAS_VERSION_SCRIPT)
    get_target_property(soversion files-pdf SOVERSION)
    set(exports_map "${PROJECT_BINARY_DIR}/exports.map")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/exports.map.in" "${exports_map}" @ONLY)
    target_link_options(files-pdf PRIVATE "LINKER:--version-script=${exports_map}")
    set_property(TARGET files-pdf APPEND PROPERTY LINK_DEPENDS "${exports_map}")
endif()
