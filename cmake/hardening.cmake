# Debug builds stay as the debugger and the coverage tools want them; sanitizers bring checks of
# their own, which _FORTIFY_SOURCE would hide from them.
if(NOT FILES_PDF_HARDENING OR files_pdf_sanitizers OR NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    return()
endif()

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")

# A level that the packager or the distribution chose stands.
if(NOT "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_RELEASE}" MATCHES "_FORTIFY_SOURCE")
    add_compile_options(
        "$<${optimised}:-U_FORTIFY_SOURCE>"
        "$<${optimised}:-D_FORTIFY_SOURCE=2>")
endif()

foreach(flag IN ITEMS stack-protector-strong stack-clash-protection cf-protection)
    string(MAKE_C_IDENTIFIER "FILES_PDF_HAS_${flag}" has_flag)
    check_cxx_compiler_flag("-f${flag}" ${has_flag})
    if(${has_flag})
        add_compile_options("$<${optimised}:-f${flag}>")
    endif()
endforeach()

check_linker_flag(CXX "LINKER:-z,relro,-z,now" FILES_PDF_HAS_RELRO)
if(FILES_PDF_HAS_RELRO)
    add_link_options("$<${optimised}:LINKER:-z,relro,-z,now>")
endif()

# The linker notes that a library is fit for indirect branch tracking and for shadow stacks only where
# all it links says so, and the C library's start files of some systems do not. All they bring in is
# _init and _fini, which nothing needs any more: without a pointer to them the note holds true.
# The test "hardening" looks at the rest.
check_linker_flag(CXX "LINKER:-z,ibt,-z,shstk" FILES_PDF_HAS_CET_NOTE)
if(FILES_PDF_HAS_CET_NOTE AND FILES_PDF_HAS_cf_protection AND CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    set(fit "$<AND:${optimised},$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>>")
    add_link_options(
        "$<${fit}:LINKER:-z,ibt,-z,shstk>"
        "$<${fit}:LINKER:-init=files_pdf_no_init,-fini=files_pdf_no_fini>")
endif()

# The same sources give the same binary wherever they are checked out.
check_cxx_compiler_flag("-ffile-prefix-map=/a=/b" FILES_PDF_HAS_PREFIX_MAP)
if(FILES_PDF_HAS_PREFIX_MAP)
    add_compile_options(
        "$<${optimised}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>"
        "$<${optimised}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>")
endif()
