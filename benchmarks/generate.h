#pragma once

/// @file
/// Documents of any size to measure with, the same at every run.

#include <pdf/document.h>

#include <cstddef>
#include <string>

namespace Benchmarks {

/// What a document mostly consists of.
enum class Kind {
    Text, ///< pages, each with a compressed content stream of about 2 KB of text operators
    Form  ///< small dictionaries of about ten entries: names, numbers, strings, references, arrays
};

/// A document as the bytes of its file.
struct Sample {
    std::string bytes;
    std::size_t objects = 0;
    std::size_t pages = 0;
    /// Bytes of stream data as stored, and when decoded.
    std::size_t storedStreams = 0;
    std::size_t decodedStreams = 0;

    /// Bytes that are not stream data.
    [[nodiscard]] std::size_t syntax() const { return bytes.size() - storedStreams; }
};

/// A document of `objects` objects, at least four. Throws `std::runtime_error` when its streams
/// cannot be compressed.
Sample generate(Kind kind, std::size_t objects);

/// A document whose form is a balanced tree of `fields` text fields: ten at the top, ten kids for
/// each, row by row. The kids of every field, and the fields at the top, are named f0 to f9.
Sample generateFieldTree(std::size_t fields);

/// A filled-in form of so many pages: five text fields on each, which the form lists.
Sample generateFormPages(std::size_t pages);

/// Sets ten fields of such a tree, of at least 110 fields, found by their paths. Whether it went.
bool fillTenFields(Libraries::Files::PDF::Document& document);

} // namespace Benchmarks
