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

/// Whether what was written may take its place.
Saved look(const Document& document, Host::FileTarget& target, bool force) noexcept {
    const Ref<Host::FileSource> written = target.written();
    if (!written) return Saved::Failed;
    const Ref<Document> result = Document::create(written);
    if (!result) return Saved::Unreadable;
    const bool fewer = countPages(*result).value_or(0) < countPages(document).value_or(0);
    return fewer && !force ? refuse() : Saved::Done;
}

} // namespace

Ref<Document> open(std::string_view path) noexcept {
    const Ref<Host::FileSource> source = Host::FileSource::open(path);
    return source ? Document::create(source, Structure::Any) : nullptr;
}

Saved save(Document& document, std::string_view path, const SaveOptions& options) noexcept {
    if (options.look && !options.force && hasGraveLoss(document)) return refuse();
    const Ref<Host::FileTarget> target = Host::FileTarget::create(path);
    if (!target || !document.write(target)) return Saved::Failed;
    if (options.look) {
        const Saved seen = look(document, *target, options.force);
        if (seen != Saved::Done) return seen;
    }
    return target->commit() ? Saved::Done : Saved::Failed;
}

} // namespace Libraries::Files::PDF::Tools
