#pragma once

/// @file
/// What the example programs share: how they open documents, and how they save them. Their command
/// lines are in arguments.h, their failures in failure.h.

#include "arguments.h"

#include <host/files.h>
#include <host/log.h>
#include <pdf/document.h>
#include <pdf/tools/files.h>
#include <pdf/tools/losses.h>
#if defined(FILES_PDF_HAS_IMPORT)
#include <pdf/import.h>
#endif

#include <fstream>

namespace Program {

using Host::Ref;
using Libraries::Files::PDF::Document;
namespace Tools = Libraries::Files::PDF::Tools;

/// How a program opens what it is given, as its options say.
struct Opening {
    std::string password{};
    bool possible = true; ///< false where an option was of no use, which has been reported
    bool mends = true;    ///< false for a program that asks the library alone
    bool plain = false;   ///< whether streams in rare filters are to be decoded
};

/// Opens the document in the file at `path`: by the library or, where it is damaged or encrypted,
/// through the import. Null with the error code set. Every program opens its documents here.
inline Ref<Document> load(std::string_view path, const Opening& how) {
#if defined(FILES_PDF_HAS_IMPORT)
    Host::SysLogFilter::level(Host::LogLevel::Warning); // what is repaired is told
    return Libraries::Files::PDF::Import::open(
        path, {.password = how.password, .plainFilters = how.plain});
#else
    static_cast<void>(how);
    return Tools::open(path);
#endif
}

/// What helps where a document could not be opened, read or saved. Never to force anything.
inline std::string_view remedy(std::uint32_t code, const Opening& how) {
    using namespace Libraries::Files::PDF;
    const bool structure = (code >= HeaderUnreadable && code <= ObjectUnreadable) ||
                           (code >= NoTrailer && code <= PageInvalid) || code == ResultUnsound;
    if (!structure) return advice(code);
#if defined(FILES_PDF_HAS_IMPORT)
    return how.mends ? advice(code) : "\"normalise IN OUT\" makes almost any PDF one that opens";
#else
    static_cast<void>(how);
    return "this program was built without the import, which opens almost any PDF";
#endif
}

/// Reports the thread's error code, of what was done with the document in `file`; gives the exit
/// status.
inline int failure(std::string_view file, const Opening& how) {
    const std::uint32_t code = Host::Error::get();
    return failure(file, code, {}, remedy(code, how));
}

/// Opens the document in the file at `path`; null where that failed, which has been reported then.
inline Ref<Document> open(std::string_view path, const Opening& how = {}) {
    if (!how.possible) return nullptr;
    Ref<Document> document = load(path, how);
    if (!document) static_cast<void>(failure(path, how));
    return document;
}

/// The first line of a file; false where it cannot be read, which is reported.
inline bool readPassword(std::string_view path, std::string& password) {
    std::ifstream file{std::string(path)};
    if (file) std::getline(file, password);
    if (password.ends_with('\r')) password.pop_back();
    if (file.is_open() && !file.bad()) return true;
    static_cast<void>(Host::FileSource::open(path)); // fails as well, and says why
    static_cast<void>(failure(path));
    return false;
}

/// What the options of `openingOptions` say.
inline Opening opening(const Arguments& arguments) {
    Opening how;
    if (const auto text = arguments.value("--password")) how.password = *text;
    const auto path = arguments.value("--password-file");
    how.possible = !path || readPassword(*path, how.password);
    return how;
}

/// `options`, and those of every program that opens a document.
inline std::vector<Option> openingOptions(std::vector<Option> options = {}) {
    options.push_back({"--password-file", "FILE", "the password is FILE's first line"});
    options.push_back(
        {"--password", "P", "the password; others may see it while the program runs"});
    options.push_back({"--any", "", "opens almost any PDF, as without it"});
    return options;
}

/// How a program saves, as its options say.
struct Saving {
    Tools::SaveOptions options;
    bool canonical = false;
    Opening how; ///< how the document was opened: names what helps
};

/// What the options of `writingOptions` say.
inline Saving saving(const Arguments& arguments, const Opening& how) {
    Saving saving;
    saving.options.look = !arguments.has("--no-verify");
    saving.options.force = arguments.has("--force");
    saving.canonical = arguments.has("--canonical");
    saving.how = how;
    return saving;
}

/// `options`, and those of every program that opens a document and writes one.
inline std::vector<Option> writingOptions(std::vector<Option> options = {}) {
    options = openingOptions(std::move(options));
    options.push_back({"--canonical", "", "writes numbers canonically: 1.05 becomes 1.5"});
    options.push_back({"--faithful", "", "writes numbers as they were read, as without it"});
    options.push_back({"--no-verify", "", "warns of nothing and does not look at the result"});
    options.push_back({"--force", "", "writes what loses pages, revisions or decryption"});
    return options;
}

/// Says on standard error what the rewrite of a document loses, a line for each kind.
inline void warnOfLosses(const Document& document, const std::string& before = {}) {
    for (const Tools::LossFound& loss : Tools::losses(document)) {
        std::string line = before + "warning: " + Tools::lossText(loss.kind) + ": ";
        line += std::to_string(loss.count);
        if (loss.firstObject != 0) line += ", first in object " + std::to_string(loss.firstObject);
        std::fprintf(stderr, "%s\n", line.c_str());
    }
}

/// Saves `document` to the file at `path`, as `saving` says, and warns of what is lost, with
/// `before` in front of each line. A failure is not reported.
inline Tools::Saved store(Document& document, std::string_view path, const Saving& saving,
                          const std::string& before = {}) {
    document.faithfulNumbers(!saving.canonical);
    if (saving.options.look) warnOfLosses(document, before);
    return Tools::save(document, path, saving.options);
}

/// Why the file was not written, beyond the code.
inline std::string_view why(Tools::Saved saved) {
    if (saved == Tools::Saved::Unreadable) return "left as it was, for the result would not open";
    return saved == Tools::Saved::Unsound ? "left as it was" : Host::Error::reason();
}

/// The same, reported; gives the exit status.
inline int save(Document& document, std::string_view path, const Saving& saving = {}) {
    const Tools::Saved saved = store(document, path, saving);
    if (saved == Tools::Saved::Done) return done;
    const std::uint32_t code = Host::Error::get();
    return failure(path, code, why(saved), remedy(code, saving.how));
}

} // namespace Program
