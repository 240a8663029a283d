#include "tools/failure.h"
#include "tools/legibility.h"
#include "tools/page_count.h"

#include <host/files.h>
#include <pdf/errors.h>
#include <pdf/tools/files.h>
#include <pdf/tools/losses.h>

#include <algorithm>

namespace Libraries::Files::PDF::Tools {

namespace {

Saved refuse() noexcept {
    Host::Error::set(ResultUnsound);
    return Saved::Unsound;
}

bool hasGraveLoss(const Document& document) noexcept {
    return std::ranges::any_of(losses(document),
                               [](const LossFound& loss) { return isGrave(loss.kind); });
}

/// Whether all that was set is read again as it is; else the log says what is not.
bool isLegible(const Document& document) {
    const std::string illegible = firstIllegible(document, false);
    return illegible.empty() || fail(NotReadAgain, illegible);
}

/// Says why what was written does not open, where a text or name is the reason. The code stays.
Saved explain(const Document& document) {
    const std::uint32_t code = Host::Error::get();
    const std::string illegible = firstIllegible(document, true);
    if (!illegible.empty()) logError(illegible);
    Host::Error::set(code);
    return Saved::Unreadable;
}

/// Whether what was written may take its place.
Saved look(const Document& document, Host::FileTarget& target, bool force) {
    const Ref<Host::FileSource> written = target.written();
    if (!written) return Saved::Failed;
    const Ref<Document> result = Document::create(written);
    if (!result) return explain(document);
    const bool fewer = countPages(*result).value_or(0) < countPages(document).value_or(0);
    return fewer && !force ? refuse() : Saved::Done;
}

} // namespace

Ref<Document> open(std::string_view path) noexcept {
    const Ref<Host::FileSource> source = Host::FileSource::open(path);
    return source ? Document::create(source, Structure::Any) : nullptr;
}

namespace {

Saved saved(Document& document, std::string_view path, const SaveOptions& options) {
    if (options.look && !options.force) {
        if (hasGraveLoss(document)) return refuse();
        if (!isLegible(document)) return Saved::Unsound;
    }
    const Ref<Host::FileTarget> target = Host::FileTarget::create(path);
    if (!target || !document.write(target)) return Saved::Failed;
    if (options.look) {
        const Saved seen = look(document, *target, options.force);
        if (seen != Saved::Done) return seen;
    }
    return target->commit() ? Saved::Done : Saved::Failed;
}

} // namespace

Saved save(Document& document, std::string_view path, const SaveOptions& options) noexcept {
    try {
        return saved(document, path, options);
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    Host::Error::set(Host::OutOfMemory);
    return Saved::Failed;
}

} // namespace Libraries::Files::PDF::Tools
