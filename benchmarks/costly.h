#pragma once

/// @file
/// Files made to cost much, and what is done with them. A new case is a row in the table of its
/// kind; a new table joins those in `costlyTables`.

#include <pdf/document.h>

#include <cstddef>
#include <span>
#include <string>

namespace Benchmarks {

/// How the work on a costly file has to end: a file beyond the bounds of a tool is refused.
enum class Ending : int { Done, Refused, NotOpened };

/// One kind of file.
struct CostlyFile {
    const char* name;
    /// A file that opens, of about so many bytes, at least 10,000.
    std::string (*generate)(std::size_t size);
    /// Does the work on the file at `path`; what it writes goes to `path` with ".saved" behind.
    Ending (*work)(const std::string& path);
    /// Of the largest file; small ones may be within the bounds.
    Ending expected;
};

/// The work of a tool that changes a document: the file is opened, changed and written. The tool
/// takes the document, and gives what is true where it succeeds.
template <auto Change>
Ending changeAndSave(const std::string& path);
/// The work of one that only looks.
template <auto Look>
Ending lookAt(const std::string& path);

[[nodiscard]] std::span<const CostlyFile> costlyForms();
[[nodiscard]] std::span<const CostlyFile> costlyPages();
[[nodiscard]] std::span<const CostlyFile> costlyStructures();
[[nodiscard]] std::span<const CostlyFile> costlyContents();
/// Where the import is built.
[[nodiscard]] std::span<const CostlyFile> costlyImport();

/// Null where the file does not open.
[[nodiscard]] Host::Ref<Libraries::Files::PDF::Document> opened(const std::string& path);
/// Whether the document was written beside its file.
[[nodiscard]] bool saved(Libraries::Files::PDF::Document& document, const std::string& path);

template <auto Change>
Ending changeAndSave(const std::string& path) {
    const auto document = opened(path);
    if (!document) return Ending::NotOpened;
    return Change(document) && saved(*document, path) ? Ending::Done : Ending::Refused;
}

template <auto Look>
Ending lookAt(const std::string& path) {
    const auto document = opened(path);
    if (!document) return Ending::NotOpened;
    return Look(document) ? Ending::Done : Ending::Refused;
}

} // namespace Benchmarks
