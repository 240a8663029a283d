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

/// How a program opens what it is given, as its options say.
struct Opening {
    std::string password{};
    bool possible = true; ///< false where an option was of no use, which has been reported
    bool decoded = false; ///< whether streams shall be ones that the tools can decode
};

/// Opens the document in the file at `path`, sound, damaged or encrypted. A program without the
/// import opens what is sound.
inline Tools::Result<Ref<Document>> load(std::string_view path, const Opening& how) {
#if defined(FILES_PDF_HAS_IMPORT)
    Host::SysLogFilter::level(Host::LogLevel::Warning); // what is repaired is told
    return Libraries::Files::PDF::Import::open(
        path, {.password = how.password, .plainFilters = how.decoded});
#else
    static_cast<void>(how);
    return Tools::open(path);
#endif
}

/// The same; null where that failed, which has been reported then.
inline Ref<Document> open(std::string_view path, const Opening& how = {}) {
    if (!how.possible) return nullptr;
    const auto document = load(path, how);
    if (!document) static_cast<void>(failure(path, document.error()));
    return document.value_or(nullptr);
}

/// Opens documents with `open(how)`, which reports its failures, and has a tool change them with
/// `change()`; gives the exit status. Where contents have filters that tools do not decode both are
/// done once more, with documents that the import decodes.
template <typename Open, typename Change>
int changeOpened(std::string_view file, Opening how, const Open& open, const Change& change) {
    if (!open(how)) return failed;
    Tools::Result<void> changed = change();
    const std::uint32_t code = changed ? Host::NoError : changed.error().code();
    if (hasImport && code == Libraries::Files::PDF::FilterUnsupported) {
        how.decoded = true;
        if (!open(how)) return failed;
        changed = change();
    }
    return changed ? done : failure(file, changed.error());
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
};

/// What the options of `writingOptions` say.
inline Saving saving(const Arguments& arguments) {
    Saving saving;
    saving.options.look = !arguments.has("--no-verify");
    saving.options.force = arguments.has("--force");
    saving.canonical = arguments.has("--canonical");
    return saving;
}

/// `options`, and those of every program that opens a document and writes one.
inline std::vector<Option> writingOptions(std::vector<Option> options = {}) {
    options = openingOptions(std::move(options));
    options.push_back({"--canonical", "", "writes numbers canonically: 1.05 becomes 1.5"});
    options.push_back({"--faithful", "", "writes numbers as they were read, as without it"});
    options.push_back({"--no-verify", "", "warns of nothing and does not look at the result"});
    options.push_back({"--force", "", "writes what would be no sound document"});
    return options;
}

/// Says on standard error what the rewrite of a document loses, a line for each kind.
inline void warnOfLosses(const Ref<Document>& document, const std::string& before = {}) {
    for (const Tools::LossFound& loss :
         Tools::losses(document).value_or(std::vector<Tools::LossFound>{})) {
        std::string line = before + "warning: " + Tools::lossText(loss.kind) + ": ";
        line += std::to_string(loss.count);
        if (loss.firstObject != 0) line += ", first in object " + std::to_string(loss.firstObject);
        std::fprintf(stderr, "%s\n", line.c_str());
    }
}

/// Saves `document` to the file at `path`, as `saving` says, and warns of what is lost, with
/// `before` in front of each line. A failure is not reported.
inline Tools::Result<void> store(const Ref<Document>& document, std::string_view path,
                                 const Saving& saving, const std::string& before = {}) {
    document->faithfulNumbers(!saving.canonical);
    if (saving.options.look) warnOfLosses(document, before);
    return Tools::save(document, path, saving.options);
}

/// The same, reported; gives the exit status.
inline int save(const Ref<Document>& document, std::string_view path, const Saving& saving = {}) {
    const auto saved = store(document, path, saving);
    return saved ? done : failure(path, saved.error());
}

/// What most programs do, as their options say: opens `in`, has `change(document)` change it, as
/// `attempt` does work, and saves it to `out`. Gives the exit status.
template <typename Change>
int edit(const Arguments& arguments, std::string_view in, std::string_view out,
         const Change& change) {
    const Ref<Document> document = open(in, opening(arguments));
    if (!document) return failed;
    if (const int status = attempt(in, [&] { return change(document); })) return status;
    if (const int status = finishOutput()) return status;
    return save(document, out, saving(arguments));
}

/// What programs do that only look: opens `file`, and has `look(document)` print what it is. Gives
/// the exit status.
template <typename Look>
int look(const Arguments& arguments, std::string_view file, const Look& look) {
    const Ref<Document> document = open(file, opening(arguments));
    if (!document) return failed;
    const int status = attempt(file, [&] { return look(document); });
    return status == done ? finishOutput() : status;
}

} // namespace Program
