set(files_pdf_sanitizers ${FILES_PDF_SANITIZE})

if(FILES_PDF_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "FILES_PDF_FUZZ needs clang, not ${CMAKE_CXX_COMPILER_ID}")
    endif()
    list(APPEND files_pdf_sanitizers address undefined)
    # Coverage feedback for the library's own code; only the fuzz programs link the engine itself.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

list(REMOVE_DUPLICATES files_pdf_sanitizers)
if(files_pdf_sanitizers)
    list(JOIN files_pdf_sanitizers "," joined)
    add_compile_options(
        -fsanitize=${joined} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${joined})
endif()
