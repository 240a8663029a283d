# Shows that the public interface does not let common mistakes compile.
find_program(FILES_PDF_SH sh REQUIRED)
add_test(NAME misuse
    COMMAND "${FILES_PDF_SH}" "${PROJECT_SOURCE_DIR}/cmake/check_misuse.sh"
        "${CMAKE_CXX_COMPILER}" "${PROJECT_SOURCE_DIR}/include")
