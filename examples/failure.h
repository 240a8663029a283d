#pragma once

/// @file
/// How a program ends, and the one line that says why it failed.

#include <host/error.h>
#include <pdf/errors.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <type_traits>

namespace Program {

namespace Tools = Libraries::Files::PDF::Tools;

/// The exit statuses of every program.
enum Status : int {
    done = 0,
    failed = 1,
    misused = 2, ///< wrong usage
    unsound = 3, ///< the result would be no sound document; nothing was written
};

#if defined(FILES_PDF_HAS_IMPORT)
inline constexpr bool hasImport = true;
#else
inline constexpr bool hasImport = false; ///< then damaged and encrypted files do not open
#endif

/// Whether the code is about a file, so that the system may have said why.
inline bool isOfFile(std::uint32_t code) {
    return code >= Host::FileNotOpened && code <= Host::NotARegularFile;
}

/// What helps, as far as the code alone tells.
inline std::string_view advice(std::uint32_t code) {
    using namespace Libraries::Files::PDF;
    switch (code) {
    case Host::FileNotOpened:
        return "check its path and permissions";
    case Host::FileNotRead:
        return "leave the file alone while it is read";
    case Host::FileNotWritten:
        return "check space and permissions";
    case Host::NotARegularFile:
        return "name a file";
    case OutOfMemory:
        return "give the program more memory";
    case PasswordNeeded:
        return "give its password: --password-file FILE or --password P";
    case EncryptionUnknown:
        return "have it decrypted by what encrypted it";
    case FilterUnsupported:
        return hasImport ? "decode it: normalise --plain-filters IN OUT"
                         : "a build with the import decodes it";
    case FileDamaged:
        return hasImport ? "repair it: normalise IN OUT"
                         : "this program was built without the import, which repairs files";
    case FileEncrypted:
        return hasImport ? "decrypt it: normalise --password-file FILE IN OUT"
                         : "this program was built without the import, which decrypts files";
    case NotPdf:
    case BeyondRepair:
        return "get the file once more, whole, from where it came from";
    case ResultUnsound:
    case NotReadAgain:
        return "nothing was written";
    default:
        return "docs/errors.md says more about this code";
    }
}

/// "error CODE (0xHEX): short text: FILE: WHAT; NEXT" on one line, whatever the names hold. Without
/// NEXT the advice for the code stands there.
inline std::string failureLine(std::uint32_t code, std::string_view file, std::string_view what,
                               std::string_view next) {
    char head[32];
    std::snprintf(head, sizeof head, "error %u (0x%X): ", code, code);
    std::string line = head;
    line += Libraries::Files::PDF::errorText(code);
    for (const std::string_view part : {file, what}) {
        if (!part.empty()) line.append(": ").append(part);
    }
    line.append("; ").append(next.empty() ? advice(code) : next);
    for (char& character : line) {
        if (static_cast<unsigned char>(character) < ' ') character = '?';
    }
    return line;
}

/// The same line for what a tool failed with. Its text may begin with the path of `file`, and end
/// with the text of the code: neither is told twice.
inline std::string failureLine(std::string_view file, const Tools::Failure& failure,
                               std::string_view next = {}) {
    std::string text = failure.text();
    const std::string path = std::string(file) + ": ";
    if (text.starts_with(path)) text.erase(0, path.size());
    const std::string known = Libraries::Files::PDF::errorText(failure.code());
    if (text == known) text.clear();
    if (text.ends_with(": " + known)) text.resize(text.size() - known.size() - 2);
    return failureLine(failure.code(), file, text, next);
}

/// The exit status of a program that failed with this code.
inline int statusOf(std::uint32_t code) {
    return code == Libraries::Files::PDF::ResultUnsound ? unsound : failed;
}

/// Reports the thread's error code, or `code`, of what was done with `file`: `what`, or the reason
/// that the system gave. Gives the exit status.
inline int failure(std::string_view file, std::uint32_t code = Host::Error::get(),
                   std::string_view what = {}, std::string_view next = {}) {
    if (what.empty() && isOfFile(code)) what = Host::Error::reason();
    std::fprintf(stderr, "%s\n", failureLine(code, file, what, next).c_str());
    return statusOf(code);
}

/// Reports what a tool failed with when it did something with `file`; gives the exit status.
inline int failure(std::string_view file, const Tools::Failure& failure,
                   std::string_view next = {}) {
    std::fprintf(stderr, "%s\n", failureLine(file, failure, next).c_str());
    return statusOf(failure.code());
}

/// Does `work` with `file`; gives the exit status. Work fails by what `Result::value` throws, or by
/// giving false with the thread's error code set. Either is reported.
template <typename Work>
int attempt(std::string_view file, const Work& work) {
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
            work();
            return done;
        } else {
            return work() ? done : failure(file);
        }
    } catch (const Tools::BadResultAccess<Tools::Failure>& access) {
        return failure(file, access.error());
    }
}

/// Gives standard output's pending data out; gives the exit status.
inline int finishOutput() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return done;
    return failure("standard output", Host::FileNotWritten, "it takes no more");
}

} // namespace Program
