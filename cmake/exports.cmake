# Limits what the shared libraries export to exports*.map.in, and marks it with the libraries' version.
# An instrumented library shares symbols of the instrumentation with its application.
if(files_pdf_sanitizers)
    return()
endif()

include(CheckLinkerFlag)
file(WRITE "${PROJECT_BINARY_DIR}/exports-probe.map" "{ local: *; };\n")
check_linker_flag(CXX "LINKER:--version-script=${PROJECT_BINARY_DIR}/exports-probe.map"
    FILES_PDF_HAS_VERSION_SCRIPT)

function(files_pdf_limit_exports library template)
    get_target_property(soversion ${library} SOVERSION)
    set(exports_map "${PROJECT_BINARY_DIR}/${library}.map")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${template}" "${exports_map}" @ONLY)
    target_link_options(${library} PRIVATE "LINKER:--version-script=${exports_map}")
    set_property(TARGET ${library} APPEND PROPERTY LINK_DEPENDS "${exports_map}")
endfunction()

if(FILES_PDF_HAS_VERSION_SCRIPT)
    files_pdf_limit_exports(files-pdf exports.map.in)
    if(TARGET files-pdf-import)
        files_pdf_limit_exports(files-pdf-import exports-import.map.in)
    endif()
endif()
