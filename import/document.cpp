#include <host/error.h>
#include <host/files.h>
#include <host/held_log.h>
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/import.h>
#include <pdf/tools/files.h>

#include <exception>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Import {

using Tools::Failure;
using Tools::Result;
using Tools::Unexpected;

namespace {

/// Whether libqpdf may open what failed with this code.
bool mayBeMended(std::uint32_t code) noexcept {
    return code == NotPdf || code == FileDamaged || code == FileEncrypted ||
           code == FilterUnsupported || code == LimitExceeded;
}

/// The thread's failure, with what was logged of it.
Failure failureOf(const Host::HeldLog& log) noexcept {
    const std::uint32_t code = Host::Error::get();
    try {
        return Failure(code, log.errors());
    } catch (const std::exception&) {
        return Failure(code);
    }
}

/// The same of a file.
Failure inFile(std::string_view path, const Failure& failure) noexcept {
    try {
        const std::string_view file = path.empty() ? "an empty path" : path;
        const std::string text = std::string(file) + ": " + failure.text();
        return Failure(failure.code(), text, failure.object());
    } catch (const std::exception&) {
        return failure;
    }
}

Result<Ref<Document>> openMended(const Ref<Interfaces::Stripe>& source,
                                 const Options& options) noexcept {
    const std::uint32_t former = Host::Error::get();
    Host::HeldLog log(Host::HeldLog::Keep::AllErrors);
    const Ref<Interfaces::Stripe> mended = normalise(source, options);
    const Ref<Document> document = mended ? Document::create(mended) : nullptr;
    Result<Ref<Document>> result = document;
    if (!document) result = Unexpected(failureOf(log));
    Host::Error::set(former);
    if (!document) return result;
    log.letOut(); // what was repaired
    document->faithfulNumbers(true);
    return result;
}

} // namespace

// What is wrong with a file need not be said where it may be mended: libqpdf says what it mends.
Result<Ref<Document>> openFrom(const Ref<Interfaces::Stripe>& source,
                               const Options& options) noexcept {
    if (options.plainFilters) return openMended(source, options);
    Result<Ref<Document>> sound = Tools::openFrom(source);
    if (sound || !mayBeMended(sound.error().code())) return sound;
    Result<Ref<Document>> mended = openMended(source, options);
    return mended || mended.error().code() != NotPdf ? mended : sound;
}

Result<Ref<Document>> open(std::string_view path, const Options& options) noexcept {
    const std::uint32_t former = Host::Error::get();
    const Ref<Interfaces::Stripe> source = Host::FileSource::open(path);
    if (!source) {
        const Failure failure(Host::Error::get(), Host::Error::reason());
        Host::Error::set(former);
        return Unexpected(inFile(path, failure));
    }
    return openFrom(source, options).transform_error([&](const Failure& failure) {
        return inFile(path, failure);
    });
}

} // namespace Libraries::Files::PDF::Import
