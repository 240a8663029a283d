#include <host/error.h>
#include <host/files.h>
#include <host/held_log.h>
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/import.h>

#include <utility>

namespace Libraries::Files::PDF::Import {

namespace {

/// Whether libqpdf may open what failed with this code.
bool mayBeMended(std::uint32_t code) noexcept {
    return code == NotPdf || code == FileDamaged || code == FileEncrypted ||
           code == FilterUnsupported || code == LimitExceeded;
}

/// The document as it is, if it is sound. What is wrong with it need not be said where it may be
/// mended: libqpdf says what it mends.
Ref<Document> openSound(const Ref<Interfaces::Stripe>& source, bool& mendable) noexcept {
    Host::HeldLog log;
    Ref<Document> document = Document::create(source, Structure::Any);
    mendable = !document && mayBeMended(Host::Error::get());
    if (!mendable) log.letOut();
    return document;
}

Ref<Document> openMended(Ref<Interfaces::Stripe> source, const Options& options) noexcept {
    const Ref<Interfaces::Stripe> mended = normalise(std::move(source), options);
    Ref<Document> document = mended ? Document::create(mended) : nullptr;
    if (document) document->faithfulNumbers(true);
    return document;
}

} // namespace

Ref<Document> openFrom(Ref<Interfaces::Stripe> source, const Options& options) noexcept {
    bool mendable = options.plainFilters;
    Ref<Document> document = mendable ? nullptr : openSound(source, mendable);
    return mendable ? openMended(std::move(source), options) : document;
}

Ref<Document> open(std::string_view path, const Options& options) noexcept {
    Ref<Interfaces::Stripe> source = Host::FileSource::open(path);
    return source ? openFrom(std::move(source), options) : nullptr;
}

} // namespace Libraries::Files::PDF::Import
