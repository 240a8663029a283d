# Debian packages by CPack: the library, what building against it needs, and the documentation. scripts/package
# makes them; the folders are Debian's where CMAKE_INSTALL_PREFIX is /usr.
foreach(tool IN ITEMS dpkg-shlibdeps file readelf gzip)
    find_program(FILES_PDF_${tool} ${tool})
    if(NOT FILES_PDF_${tool})
        return()
    endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Files PDF developers <files-pdf@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development documentation)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
get_target_property(soversion files-pdf SOVERSION)

set(about "Files PDF is a C++20 library. It gives every object of a document as a value, fills form fields,
re-encodes streams, and lays pages beneath pages.
.
This package holds")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libfiles-pdf${soversion}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${about} the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libfiles-pdf-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "libfiles-pdf-doc, pkg-config")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
if(FILES_PDF_STATIC)
    # Requires.private of the pkg-config file: asked for even where the shared library is linked.
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libisal-dev, libdeflate-dev")
endif()
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${about} what building programs needs.")

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME libfiles-pdf-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DOCUMENTATION_DESCRIPTION "${about} the documentation and the sources of the example programs.")

if(TARGET files-pdf-import)
    list(APPEND CPACK_COMPONENTS_ALL import_runtime import_development)
    set(about_import "Files PDF is a C++20 library. Its import makes documents of any structure, encrypted or damaged
ones too, such that it opens them. It is made with libqpdf.
.
This package holds")

    set(CPACK_DEBIAN_IMPORT_RUNTIME_PACKAGE_NAME "libfiles-pdf-import${soversion}")
    set(CPACK_DEBIAN_IMPORT_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_IMPORT_RUNTIME_PACKAGE_SHLIBDEPS ON)
    # The library that it stands on is in no package yet.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/src")
    set(CPACK_COMPONENT_IMPORT_RUNTIME_DEPENDS runtime)
    set(CPACK_DEBIAN_IMPORT_RUNTIME_DESCRIPTION "${about_import} the shared library.")

    set(CPACK_DEBIAN_IMPORT_DEVELOPMENT_PACKAGE_NAME libfiles-pdf-import-dev)
    set(CPACK_DEBIAN_IMPORT_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_COMPONENT_IMPORT_DEVELOPMENT_DEPENDS development import_runtime)
    set(CPACK_DEBIAN_IMPORT_DEVELOPMENT_DESCRIPTION "${about_import} what building programs needs.")
endif()

# Each package tells its licence and its changes in the folder of its name.
set(CPACK_FILES_PDF_SOURCES "${PROJECT_SOURCE_DIR}")
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/package/add_copyright.cmake")

include(CPack)
