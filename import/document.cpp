#include <host/files.h>
#include <pdf/document.h>
#include <pdf/import.h>

#include <utility>

namespace Libraries::Files::PDF::Import {

namespace {

/// Decides the way that a document takes: so far each goes through libqpdf, into memory.
Ref<Document> openSomehow(Ref<Interfaces::Stripe> source, const Options& options) noexcept {
    const Ref<Interfaces::Stripe> imported = normalise(std::move(source), options);
    return imported ? Document::create(imported) : nullptr;
}

} // namespace

Ref<Document> openFrom(Ref<Interfaces::Stripe> source, const Options& options) noexcept {
    Ref<Document> document = openSomehow(std::move(source), options);
    if (document) document->faithfulNumbers(true);
    return document;
}

Ref<Document> open(std::string_view path, const Options& options) noexcept {
    Ref<Interfaces::Stripe> source = Host::FileSource::open(path);
    return source ? openFrom(std::move(source), options) : nullptr;
}

} // namespace Libraries::Files::PDF::Import
