# Tests of what ships: the installation, the library as part of another build, the packages, the binary.
# An instrumented library needs instrumented applications, so that is left to the plain builds.
if(NOT PROJECT_IS_TOP_LEVEL OR NOT FILES_PDF_INSTALL OR files_pdf_sanitizers
        OR CMAKE_CXX_FLAGS MATCHES "--coverage")
    return()
endif()

find_program(FILES_PDF_SH sh REQUIRED)
set(package_checks "${PROJECT_SOURCE_DIR}/cmake/package")
set(sample "${PROJECT_SOURCE_DIR}/examples/samples/plain-2pages.pdf")

add_test(NAME package.install
    COMMAND "${FILES_PDF_SH}" "${package_checks}/check_install.sh"
        "${CMAKE_COMMAND}" "${PROJECT_BINARY_DIR}" "${CMAKE_CXX_COMPILER}" "${CMAKE_INSTALL_LIBDIR}"
        "${CMAKE_INSTALL_DOCDIR}" "${FILES_PDF_STATIC}" "$<CONFIG>" $<IF:$<TARGET_EXISTS:files-pdf-import>,yes,no>)

add_test(NAME package.add-subdirectory
    COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test
        "${package_checks}/consumer" "${PROJECT_BINARY_DIR}/subdirectory-check"
        --build-generator Ninja
        --build-options --fresh "-DSOURCE_TREE=${PROJECT_SOURCE_DIR}" -DSTATIC=ON
            "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}"
            "-DPROGRAM=${PROJECT_SOURCE_DIR}/examples/inspect.cpp"
            "-DIMPORT=$<$<TARGET_EXISTS:files-pdf-import>:${PROJECT_SOURCE_DIR}/examples/normalise.cpp>"
        --test-command "${FILES_PDF_SH}" -ec
            "for kind in shared static; do ./$kind '${sample}' | grep -x 'pages 2'; done
            [ ! -x import ] || ./import '${sample}' imported.pdf")
set_tests_properties(package.install package.add-subdirectory PROPERTIES
    TIMEOUT 900 PROCESSORS 2 ENVIRONMENT "CMAKE_BUILD_PARALLEL_LEVEL=2")

# The packages are built beside the other tests. Where they are asked to be installed, nothing else runs
# meanwhile.
if(FILES_PDF_dpkg-shlibdeps)
    add_test(NAME package.debian-build
        COMMAND "${PROJECT_SOURCE_DIR}/scripts/package" "${PROJECT_BINARY_DIR}/packages"
            "-DFILES_PDF_IMPORT=${FILES_PDF_IMPORT}")
    set_tests_properties(package.debian-build PROPERTIES
        TIMEOUT 900 PROCESSORS 2 ENVIRONMENT "CMAKE_BUILD_PARALLEL_LEVEL=2" FIXTURES_SETUP packages)
    add_test(NAME package.debian
        COMMAND "${FILES_PDF_SH}" "${package_checks}/check_debian.sh"
            "${PROJECT_BINARY_DIR}/packages" "${CMAKE_CXX_COMPILER}"
            $<IF:$<TARGET_EXISTS:files-pdf-import>,yes,no>)
    set_tests_properties(package.debian PROPERTIES
        TIMEOUT 900 RUN_SERIAL ON FIXTURES_REQUIRED packages SKIP_RETURN_CODE 77)
endif()

# What an optimised library is made of. Which virtual tables are emitted is up to the compiler and its
# options, so the exported symbols are listed for one.
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux" OR NOT CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo)$")
    return()
endif()
if(FILES_PDF_HARDENING)
    add_test(NAME hardening
        COMMAND "${FILES_PDF_SH}" "${PROJECT_SOURCE_DIR}/cmake/check_hardening.sh" "$<TARGET_FILE:files-pdf>"
            "${PROJECT_BINARY_DIR}/src/CMakeFiles/files-pdf-objects.dir"
            "${PROJECT_BINARY_DIR}/compile_commands.json")
    if(TARGET files-pdf-import)
        add_test(NAME hardening.import
            COMMAND "${FILES_PDF_SH}" "${PROJECT_SOURCE_DIR}/cmake/check_hardening.sh"
                "$<TARGET_FILE:files-pdf-import>"
                "${PROJECT_BINARY_DIR}/import/CMakeFiles/files-pdf-import-objects.dir"
                "${PROJECT_BINARY_DIR}/compile_commands.json")
    endif()
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_test(NAME exported-symbols
        COMMAND "${FILES_PDF_SH}" "${PROJECT_SOURCE_DIR}/cmake/check_exports.sh" "$<TARGET_FILE:files-pdf>")
    if(TARGET files-pdf-import)
        add_test(NAME exported-symbols.import
            COMMAND "${FILES_PDF_SH}" "${PROJECT_SOURCE_DIR}/cmake/check_exports.sh"
                "$<TARGET_FILE:files-pdf-import>")
    endif()
endif()
