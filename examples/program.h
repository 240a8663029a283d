#pragma once

/// @file
/// What the example programs share: arguments, failures, opening and saving.

#include <host/files.h>
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/tools/files.h>
#include <pdf/tools/losses.h>
#if defined(FILES_PDF_HAS_IMPORT)
#include <pdf/import.h>
#endif

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace Program {

using Host::Ref;
using Libraries::Files::PDF::Document;
namespace Tools = Libraries::Files::PDF::Tools;

/// How a program opens what it is given: as the library does, or through the import.
struct Opening {
    bool any = false;
    std::string_view password = {};
};

/// The arguments of a program, options apart.
class Arguments {
public:
    Arguments(int count, char** values) : values_(values + std::min(count, 1), values + count) {}

    /// Whether `option` was given; takes it out.
    bool take(std::string_view option) { return std::erase(values_, option) != 0; }

    /// The argument behind `option`, or nothing where there is none; takes both out.
    std::optional<std::string_view> takeValue(std::string_view option) {
        const auto place = std::ranges::find(values_, option);
        if (place == values_.end() || place + 1 == values_.end()) return std::nullopt;
        const std::string_view value = place[1];
        values_.erase(place, place + 2);
        return value;
    }

    /// What `--any [--password P]` says; takes it out.
    Opening takeOpening() {
        if (!take("--any")) return {};
        return {true, takeValue("--password").value_or("")};
    }

    /// Whether this many arguments are left, and no option that nobody took.
    [[nodiscard]] bool are(std::size_t count) const {
        return values_.size() == count &&
               std::ranges::none_of(values_, [](auto value) { return value.starts_with("--"); });
    }

    [[nodiscard]] std::size_t size() const { return values_.size(); }
    std::string_view operator[](std::size_t index) const { return values_[index]; }

private:
    std::vector<std::string_view> values_;
};

/// The decimal number that `text` is, or nothing where it is none or does not fit.
template <class Number>
std::optional<Number> number(std::string_view text) {
    Number result{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, result);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return result;
}

/// The exit status of a failure.
inline constexpr int failed = 1;

/// Reports wrong usage; gives the exit status.
inline int usage(const char* line) {
    std::fprintf(stderr, "usage: %s\n", line);
    return 2;
}

/// Reports the thread's error code, or `code`; gives the exit status.
inline int failure(std::uint32_t code = Host::Error::get()) {
    std::fprintf(stderr, "error %u (0x%X): %s\n", code, code,
                 Libraries::Files::PDF::errorText(code));
    return failed;
}

/// Whether `code` says that the library refuses a file, which the import may make one that it
/// opens.
inline bool isRefused(std::uint32_t code) {
    using namespace Libraries::Files::PDF;
    return code >= HeaderUnreadable && code <= ObjectUnreadable;
}

/// Says what to do about files that the library refuses.
inline void hint() {
#if defined(FILES_PDF_HAS_IMPORT)
    std::fputs(
        "hint: \"normalise IN OUT\" makes almost any PDF one that opens; --any does it here\n",
        stderr);
#endif
}

/// The source that `path` and `how` name; null with the error code set.
inline Ref<Interfaces::Stripe> source(std::string_view path, const Opening& how) {
    Ref<Interfaces::Stripe> file = Host::FileSource::open(path);
    if (!file || !how.any) return file;
#if defined(FILES_PDF_HAS_IMPORT)
    return Libraries::Files::PDF::Import::normalise(file, {.password = how.password});
#else
    std::fputs("--any takes the import, which this program was built without\n", stderr);
    Host::Error::set(Host::NotSupported);
    return nullptr;
#endif
}

/// Opens the document in the file at `path`; null where that failed, which has been reported then.
inline Ref<Document> open(std::string_view path, const Opening& how = {}) {
    const Ref<Interfaces::Stripe> stripe = source(path, how);
    Ref<Document> document = stripe ? Document::create(stripe) : nullptr;
    if (document) return document;
    const std::uint32_t code = Host::Error::get();
    failure(code);
    if (isRefused(code) && !how.any) hint();
    return nullptr;
}

/// How a program saves, as its options say.
struct Saving {
    Tools::SaveOptions options;
    bool faithful = false;
};

/// Takes the options out that every program which writes has.
inline Saving takeSaving(Arguments& arguments) {
    Saving saving;
    saving.options.look = !arguments.take("--no-verify");
    saving.options.force = arguments.take("--force");
    saving.faithful = arguments.take("--faithful");
    return saving;
}

/// Says on standard error what the rewrite of a document loses, a line for each kind.
inline void warnOfLosses(const Document& document) {
    for (const Tools::LossFound& loss : Tools::losses(document)) {
        std::fprintf(stderr, "warning: %s: %llu", Tools::lossText(loss.kind),
                     static_cast<unsigned long long>(loss.count));
        if (loss.firstObject != 0) std::fprintf(stderr, ", first in object %u", loss.firstObject);
        std::fputc('\n', stderr);
    }
}

/// Saves `document` to the file at `path` and gives the exit status: 3 where the result would be no
/// sound document.
inline int save(Document& document, std::string_view path, const Saving& saving = {}) {
    document.faithfulNumbers(saving.faithful);
    if (saving.options.look) warnOfLosses(document);
    const std::string name(path);
    switch (Tools::save(document, path, saving.options)) {
    case Tools::Saved::Done:
        return 0;
    case Tools::Saved::Unreadable:
        std::fprintf(stderr, "the result would not open; %s is left as it was\n", name.c_str());
        return failure();
    case Tools::Saved::Unsound:
        std::fprintf(stderr, "%s is left as it was; --force writes it all the same\n",
                     name.c_str());
        static_cast<void>(failure());
        return 3;
    default:
        return failure();
    }
}

/// Gives standard output's pending data out; gives the exit status.
inline int finishOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) return failure(Host::FileNotWritten);
    return 0;
}

} // namespace Program
