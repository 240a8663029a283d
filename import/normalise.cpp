#include "expansion.h"
#include "file_writer.h"
#include "page_tree.h"
#include "report.h"

#include <host/memory_stripe.h>
#include <pdf/errors.h>
#include <pdf/import.h>

#include <algorithm>
#include <exception>
#include <new>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Import {

namespace {

constexpr std::size_t reserveSize = std::size_t{64} << 10;

/// `times` the size and `least`, or as much as there can be.
std::uint64_t grown(std::uint64_t size, std::uint64_t times, std::uint64_t least) noexcept {
    return size < (UINT64_MAX - least) / times ? least + times * size : UINT64_MAX;
}

/// A sound document has at most an entry for ten bytes, and a value for one.
Expansion::Limits limits(const Options& options, std::uint64_t sourceSize) noexcept {
    Expansion::Limits limits{grown(sourceSize, 16, std::uint64_t{8} << 20),
                             grown(sourceSize, 1, std::uint64_t{64} << 10),
                             grown(sourceSize, 2, std::uint64_t{64} << 10)};
    if (options.objectLimit == 0) return limits;
    limits.bytes = options.objectLimit;
    limits.entries = std::max(limits.entries, options.objectLimit / 16);
    limits.values = std::max(limits.values, options.objectLimit / 8);
    return limits;
}

/// Whether there is a header where readers look for one, in the first 1024 bytes.
bool hasHeader(Source& source) {
    std::string begin(1024, '\0');
    begin.resize(source.read(begin.data(), begin.size()));
    return begin.find("%PDF-") != std::string::npos;
}

void write(const std::shared_ptr<Source>& source, Ref<Interfaces::Stripe> target,
           const Options& options) {
    Expansion expansion(source, limits(options, source->size()));
    expansion.measureXrefStreams();
    const std::shared_ptr<QPDF> document = load(source, options.password);
    // Goes before the document does: that takes memory to give memory back, and cannot fail.
    Host::ByteBuffer reserve;
    if (!reserve.reserve(reserveSize)) throw std::bad_alloc();
    expansion.measureObjectStreams(*document);
    mendPageTree(*document);
    if (document->isEncrypted()) warn("the document was encrypted; what is written is not");
    Output output(std::move(target));
    FileWriter(*document, *source, output, options).write();
}

void run(Ref<Interfaces::Stripe> stripe, Ref<Interfaces::Stripe> target, const Options& options) {
    const auto source = std::make_shared<Source>(std::move(stripe));
    bool isPdf = false;
    try {
        isPdf = hasHeader(*source);
        write(source, std::move(target), options);
    } catch (const Failed& failure) {
        // What was given up for may be the source's fault.
        if (failure.code == BeyondRepair && source->unread()) fail(SourceNotRead);
        if (failure.code == BeyondRepair && !isPdf) fail(NotPdf);
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        source->check();
        fail(isPdf ? BeyondRepair : NotPdf, exception.what());
    }
}

bool refuse(std::uint32_t code) noexcept {
    Host::Error::set(code);
    return false;
}

bool isUsable(const Ref<Interfaces::Stripe>& stripe) noexcept {
    if (!stripe) return refuse(NullArgument);
    return stripe->elementSize() == 4 || refuse(InvalidArgument);
}

} // namespace

bool normalise(Ref<Interfaces::Stripe> source, Ref<Interfaces::Stripe> target,
               const Options& options) noexcept {
    if (!isUsable(source) || !isUsable(target)) return false;
    try {
        run(std::move(source), std::move(target), options);
        return true;
    } catch (const Failed& failure) {
        return refuse(failure.code);
    } catch (const std::bad_alloc&) {
        return refuse(OutOfMemory);
    } catch (...) {
        return refuse(BeyondRepair);
    }
}

Ref<Interfaces::Stripe> normalise(Ref<Interfaces::Stripe> source, const Options& options) noexcept {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    if (!target || !normalise(std::move(source), target, options)) return nullptr;
    target->position(0);
    return target;
}

} // namespace Libraries::Files::PDF::Import
