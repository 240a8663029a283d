#include "tools/failure.h"
#include "tools/legibility.h"
#include "tools/losses_of.h"
#include "tools/references.h"

#include <host/files.h>
#include <pdf/errors.h>
#include <pdf/tools/files.h>

#include <string>

namespace Libraries::Files::PDF::Tools {

namespace {

/// What stands for a path in front of a failure.
std::string_view shown(std::string_view path) noexcept {
    return path.empty() ? "an empty path" : path;
}

/// Refuses a document that would be none any more.
void refuseGraveLoss(const Document& document) {
    for (const LossFound& loss : lossesOf(document)) {
        if (!isGrave(loss.kind)) continue;
        const std::uint32_t object = loss.firstObject;
        const std::string first = object == 0 ? "" : ", first in object " + std::to_string(object);
        throw FailedStep{ResultUnsound, lossText(loss.kind) + first, object};
    }
}

/// Refuses what was set and is not read again as it is.
void refuseIllegible(const Document& document) {
    const std::string illegible = firstIllegible(document, false);
    if (!illegible.empty()) fail(NotReadAgain, illegible);
}

/// Opens what was written. Where a text or a name is why it does not open, that is told.
Ref<Document> reopened(const Document& document, const Ref<Interfaces::Stripe>& written) {
    Ref<Document> result = Document::create(written);
    if (result) return result;
    const std::uint32_t code = Host::Error::get();
    const std::string illegible = firstIllegible(document, true);
    Host::Error::set(code);
    if (illegible.empty()) failAsBefore();
    fail(code, illegible);
}

/// Looks whether what was written may take its place.
void look(const Document& document, const Ref<Interfaces::Stripe>& written, bool force) {
    const Ref<Document> result =
        at("the result would not open", [&] { return reopened(document, written); });
    const std::uint64_t pages = countKids(*result).value_or(0);
    const std::uint64_t wanted = countKids(document).value_or(0);
    if (pages < wanted && !force)
        fail(ResultUnsound, "the result has ", pages, " pages instead of ", wanted);
}

/// Looks whether a document may be written.
void lookBefore(const Document& document, const SaveOptions& options) {
    if (!options.look || options.force) return;
    refuseGraveLoss(document);
    refuseIllegible(document);
}

void saveTo(Document& document, std::string_view path, const SaveOptions& options) {
    lookBefore(document, options);
    const Ref<Host::FileTarget> target = orFail(Host::FileTarget::create(path));
    orFail(document.write(target));
    if (options.look) look(document, orFail(target->written()), options.force);
    orFail(target->commit());
}

} // namespace

Result<Ref<Document>> open(std::string_view path) noexcept {
    return guarded([&] {
        return at(shown(path), [&] {
            const Ref<Host::FileSource> source = orFail(Host::FileSource::open(path));
            return orFail(Document::create(source, Structure::Any));
        });
    });
}

Result<Ref<Document>> openFrom(const Ref<Interfaces::Stripe>& source) noexcept {
    return guarded([&] {
        requireArgument(source, "source");
        return orFail(Document::create(source, Structure::Any));
    });
}

Result<void> save(const Ref<Document>& document, std::string_view path,
                  const SaveOptions& options) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        at(shown(path), [&] { saveTo(*document, path, options); });
    });
}

Result<Ref<Host::MemoryStripe>> save(const Ref<Document>& document,
                                     const SaveOptions& options) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        lookBefore(*document, options);
        Ref<Host::MemoryStripe> target = orThrow(Host::MemoryStripe::create());
        orFail(document->write(target));
        if (options.look) look(*document, target, options.force);
        target->position(0);
        return target;
    });
}

} // namespace Libraries::Files::PDF::Tools
