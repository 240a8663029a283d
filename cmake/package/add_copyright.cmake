# Run by CPack between installing into its folders and making the packages of them.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER "${component}" key)
    set(stage "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME}")
    file(MAKE_DIRECTORY "${stage}")
    configure_file("${CPACK_FILES_PDF_SOURCES}/LICENSE" "${stage}/copyright" COPYONLY FILE_PERMISSIONS
        OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    # Without name and time in it, the same sources give the same file.
    execute_process(COMMAND gzip -9n
        INPUT_FILE "${CPACK_FILES_PDF_SOURCES}/CHANGELOG.md"
        OUTPUT_FILE "${stage}/changelog.gz"
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
