#pragma once

/// @file
/// Marks what the shared library exports. Everything else keeps hidden visibility.

#if defined(FILES_PDF_STATIC_DEFINE)
#define FILES_PDF_EXPORT
#else
#define FILES_PDF_EXPORT __attribute__((visibility("default")))
#endif
