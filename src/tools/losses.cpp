#include "tools/failure.h"
#include "tools/losses_of.h"
#include "tools/references.h"

#include <host/string.h>
#include <pdf/tools/losses.h>

#include <algorithm>
#include <initializer_list>

namespace Libraries::Files::PDF::Tools {

using namespace Host::Literals;

namespace {

std::uint64_t entries(const Document& document,
                      std::initializer_list<Ref<Host::String>> keys) noexcept {
    const Ref<Dictionary> trailer = document.trailer();
    return static_cast<std::uint64_t>(std::ranges::count_if(
        keys, [&](const Ref<Host::String>& key) { return trailer && trailer->find(key); }));
}

/// Those that were read or, where there are none such, what the catalog says of some.
LossCount signatures(const Document& document) {
    const LossCount met = document.metOnReading(Loss::Signatures);
    const Ref<Dictionary> trailer = document.trailer();
    if (met.count != 0 || !trailer) return met;
    const Ref<Object> catalog = objectBehind(document, trailer->find("Root"_str));
    const auto entries = catalog ? Host::cast<Dictionary>(catalog->value()) : nullptr;
    if (!entryOf(document, entries, "Perms")) return met;
    return {1, catalog->id()};
}

LossCount count(const Document& document, Loss kind) {
    switch (kind) {
    case Loss::Revisions:
        return {entries(document, {"Prev"_str, "XRefStm"_str}), 0};
    case Loss::Encryption:
        return {entries(document, {"Encrypt"_str}), 0};
    case Loss::PageTree:
        return {countKids(document) ? 0U : 1U, 0};
    case Loss::Signatures:
        return signatures(document);
    case Loss::Fractions:
    case Loss::Signs:
        if (document.faithfulNumbers()) return {};
        [[fallthrough]];
    default:
        return document.metOnReading(kind);
    }
}

} // namespace

std::optional<std::uint64_t> countKids(const Document& document) {
    const auto catalog = followEntry<Dictionary>(document, document.trailer(), "Root");
    const auto root = followEntry<Dictionary>(document, catalog, "Pages");
    const auto kids = followEntry<Array>(document, root, "Kids");
    if (!kids) return std::nullopt;
    for (std::uint64_t index = 0; index < kids->size(); ++index) {
        const Ref<ObjectRef> ref = Host::cast<ObjectRef>(kids->get(index));
        if (!ref || !quietly([&] { return document.getObject(ref); })) return std::nullopt;
    }
    return kids->size();
}

std::vector<LossFound> lossesOf(const Document& document) {
    std::vector<LossFound> found;
    for (std::uint32_t number = 0; number < lossKinds; ++number) {
        const auto kind = static_cast<Loss>(number);
        const LossCount met = count(document, kind);
        if (met.count != 0) found.push_back({kind, met.count, met.firstObject});
    }
    return found;
}

Result<std::vector<LossFound>> losses(const Ref<Document>& document) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        return lossesOf(*document);
    });
}

bool isGrave(Loss kind) noexcept {
    return kind <= Loss::PageTree || kind == Loss::LineFeeds || kind == Loss::Filters;
}

const char* lossText(Loss kind) noexcept {
    static constexpr const char* texts[lossKinds] = {
        "earlier revisions of the file are lost",
        "further parts of the cross-reference table, and their objects, are lost",
        "the file is encrypted, and cannot be decrypted any more",
        "the page tree leads nowhere",
        "object numbers are missing, so that the table will not be true",
        "fractions lose the zeros that they begin with",
        "numbers between -1 and 0 lose their sign",
        "entries with the key of a later one are lost",
        "texts with a backslash change, or cannot be read again",
        "texts lose bytes that stand for no character",
        "data that begins with a line feed loses it",
        "data has lost the filter or predictor that it was stored by",
        "signatures do not hold for what is written",
        "what earlier revisions of the file held is not kept"};
    const auto number = static_cast<std::uint32_t>(kind);
    return number < lossKinds ? texts[number] : "unknown loss";
}

} // namespace Libraries::Files::PDF::Tools
