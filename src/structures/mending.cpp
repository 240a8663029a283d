#include "structures/mending.h"

#include "packed/entry.h"
#include "structures/file_ends.h"
#include "structures/flaw.h"
#include "structures/tokens.h"
#include "values/failure.h"

#include <algorithm>
#include <charconv>

namespace Libraries::Files::PDF {

namespace {

/// What a trailer may hold that says how the former file was stored (7.5.5, 7.5.8).
constexpr std::string_view storageKeys[] = {"DecodeParms", "Filter", "Index", "Length", "Prev",
                                            "Size",        "Type",   "W",     "XRefStm"};

bool isReference(std::string_view value) noexcept {
    return value.ends_with(" R");
}

/// The number that a reference has, whose generation is 0.
std::uint32_t idOf(std::string_view reference) noexcept {
    std::uint32_t id = 0;
    std::from_chars(reference.data(), reference.data() + reference.size(), id);
    return id;
}

std::string referenceTo(std::uint32_t id) {
    std::string reference = std::to_string(id);
    return reference.append(" 0 R");
}

} // namespace

void Mending::mend(const PackedValue& trailer) {
    constexpr std::uint64_t timesAsMuch = 8;
    constexpr std::uint64_t smallDocument = std::uint64_t{1} << 20;
    left_ = smallDocument + timesAsMuch * trailer.bytes.size();
    for (const ObjectTable::Slot& slot : state_.objects.slots())
        left_ += timesAsMuch * slot.packed().bytes.size();
    mendTrailer(trailer);
    mendCatalog();
    mendTree();
    mendStreams();
}

PdfVersion Mending::version() const noexcept {
    const std::string_view version = resolve(packed(catalog_), "Version").bytes;
    return version.starts_with('/') ? nearestVersion(version.substr(1)) : PdfVersion::Unsupported;
}

/// Kids, pages and filters that are listed or referred to often count each time.
void Mending::take(std::uint64_t bytes) {
    if (bytes > left_) {
        throw Flaw{LimitExceeded, 0, "the page tree, or filters, are listed too often"};
    }
    left_ -= bytes;
}

PackedValue Mending::packed(std::uint32_t id) const noexcept {
    return state_.objects.slots()[id - 1].packed();
}

PackedValue Mending::resolve(const PackedValue& holder, std::string_view key) const noexcept {
    const std::string_view value = findPackedEntry(holder.bytes, key);
    if (isReference(value)) return packed(idOf(value));
    return {value, Value::Type::Invalid, holder.spelled, holder.unwritable};
}

std::string_view Mending::entry(std::uint32_t id, std::string_view key) const noexcept {
    return findPackedEntry(packed(id).bytes, key);
}

void Mending::set(std::uint32_t id, std::string_view key, const PackedValue& value) {
    state_.objects.replace(state_.objects.slots()[id - 1], with(packed(id), key, value));
}

/// The dictionary with the value, or nothing where there is none, under the key.
PackedValue Mending::with(const PackedValue& dict, std::string_view key, const PackedValue& value) {
    take(dict.bytes.size() + value.bytes.size());
    const auto append = [this](std::string_view name, std::string_view spelling) {
        text_.append(" /").append(name).append(" ").append(spelling);
    };
    text_ = "<<";
    bool pending = !value.bytes.empty();
    PackedEntries entries(dict.bytes);
    for (auto entry = entries.next(); !entry.key.empty(); entry = entries.next()) {
        if (pending && entry.key > key) {
            append(key, value.bytes);
            pending = false;
        }
        if (entry.key != key) append(entry.key, entry.value);
    }
    if (pending) append(key, value.bytes);
    text_ += " >>";
    PackedValue changed = dict;
    changed.bytes = state_.objects.store()->keep(text_);
    changed.spelled = dict.spelled || value.spelled;
    changed.unwritable = dict.unwritable || value.unwritable;
    return changed;
}

std::uint32_t Mending::makeObject(const PackedValue& value) {
    const auto id = static_cast<std::uint32_t>(state_.objects.size() + 1);
    state_.objects.append(id, 0, value);
    seen_.push_back(false);
    return id;
}

/// The number of the dictionary that `value`, a part of `holder`, is or refers to; 0 where it does
/// neither.
std::uint32_t Mending::asObject(const PackedValue& holder, std::string_view value) {
    if (isReference(value)) {
        const std::uint32_t id = idOf(value);
        return packed(id).kind == Value::Type::Dictionary ? id : 0;
    }
    if (!value.starts_with("<<")) return 0;
    return makeObject({value, Value::Type::Dictionary, holder.spelled, holder.unwritable});
}

void Mending::mendTrailer(const PackedValue& trailer) {
    seen_.resize(state_.objects.size());
    trailer_ = trailer;
    for (const std::string_view key : storageKeys) {
        if (!findPackedEntry(trailer_.bytes, key).empty()) trailer_ = with(trailer_, key, {});
    }
    trailer_.bytes = state_.objects.store()->keep(trailer_.bytes);
    const std::string_view root = findPackedEntry(trailer_.bytes, "Root");
    catalog_ = asObject(trailer_, root);
    if (catalog_ == 0) damaged(0, "the document has no catalog");
    if (!isReference(root)) trailer_ = with(trailer_, "Root", {referenceTo(catalog_)});
}

void Mending::mendCatalog() {
    setType(catalog_, "/Catalog");
    seen_[catalog_ - 1] = true;
    const std::string_view pages = entry(catalog_, "Pages");
    const std::uint32_t root = asObject(packed(catalog_), pages);
    if (root == 0 || !hasKids(root)) damaged(0, "the document has no page tree");
    if (!isReference(pages)) set(catalog_, "Pages", {referenceTo(root)});
    addNode(root);
}

void Mending::addNode(std::uint32_t id) {
    setType(id, "/Pages");
    seen_[id - 1] = true;
    nodes_.push_back(id);
}

void Mending::mendTree() {
    for (std::size_t index = 0; index < nodes_.size(); ++index)
        mendKids(nodes_[index]);
}

void Mending::mendKids(std::uint32_t node) {
    const PackedValue kids = resolve(packed(node), "Kids");
    take(kids.bytes.size());
    bool changed = isReference(entry(node, "Kids"));
    std::string mended = "[";
    PackedElements elements(kids.bytes);
    for (auto kid = elements.next(); !kid.empty(); kid = elements.next()) {
        changed = changed || !isReference(kid);
        mended.append(" ").append(referenceTo(mendKid(kids, kid)));
    }
    mended += " ]";
    if (changed) set(node, "Kids", {mended, Value::Type::Array, kids.spelled, kids.unwritable});
}

std::uint32_t Mending::mendKid(const PackedValue& kids, std::string_view kid) {
    const std::uint32_t id = asObject(kids, kid);
    if (id == 0 || seen_[id - 1])
        damaged(0, "a kid of the page tree is missing, or its own ancestor");
    take(packed(id).bytes.size());
    if (hasKids(id)) {
        addNode(id);
    } else {
        setType(id, "/Page");
    }
    return id;
}

bool Mending::hasKids(std::uint32_t id) const noexcept {
    return resolve(packed(id), "Kids").bytes.starts_with('[');
}

void Mending::setType(std::uint32_t id, std::string_view type) {
    const std::string_view former = entry(id, "Type");
    if (former == type) return;
    if (resolve(packed(id), "Type").bytes != type) {
        report(LogLevel::Warning, "Part of the page tree has another type than ", Host::Codes{type},
               ": ", id);
    }
    set(id, "Type", {type});
}

void Mending::mendStreams() {
    for (const ObjectTable::Slot& slot : state_.objects.slots()) {
        if (slot.packed().kind != Value::Type::Stream) continue;
        makeDirect(slot, "Filter");
        makeDirect(slot, "DecodeParms");
    }
}

/// The library looks at the entry itself.
void Mending::makeDirect(const ObjectTable::Slot& slot, std::string_view key) {
    if (!isReference(findPackedEntry(slot.packed().bytes, key))) return;
    const PackedValue target = resolve(slot.packed(), key);
    const bool embedded = target.kind == Value::Type::Name || target.kind == Value::Type::Array;
    if (embedded) set(slot.id(), key, target);
}

} // namespace Libraries::Files::PDF
