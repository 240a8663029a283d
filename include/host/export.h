#pragma once

/// @file
/// Marks what the shared library exports. Everything else keeps hidden visibility.

/// @def FILES_PDF_EXPORT
/// Default visibility; nothing where `FILES_PDF_STATIC_DEFINE` says that the static library is
/// linked.
#if defined(FILES_PDF_STATIC_DEFINE)
#define FILES_PDF_EXPORT
#else
#define FILES_PDF_EXPORT __attribute__((visibility("default")))
#endif
