// The operations of `Document` that are not virtual. They work on the state of the library's own
// documents, and take no place in the virtual table of an application's own class.

#include "document/document_obj.h"
#include "host/guard.h"
#include "state/own_objects.h"
#include "values/failure.h"
#include "writer/writer.h"

#include <utility>

namespace Libraries::Files::PDF {

namespace {

using Objects = Host::StackVector<Ref<PDF::Object>>;

/// Counts the objects behind gaps. The written table has no gaps and gives them other numbers.
LossCount gapsOf(const DocumentState& state) noexcept {
    LossCount gaps;
    std::uint64_t expected = state.xrefFirstId;
    for (const ObjectTable::Slot& slot : state.objects.slots()) {
        if (slot.id() == ++expected) continue;
        if (gaps.count++ == 0) gaps.firstObject = slot.id();
    }
    return gaps;
}

LossCount filterLossesOf(const DocumentState& state) noexcept {
    const auto& losses = state.filterLosses;
    return losses.empty() ? LossCount() : LossCount{losses.size(), losses.begin()->first};
}

bool isKnown(PdfVersion version) noexcept {
    return version == PdfVersion::V2_0 ||
           (version >= PdfVersion::V1_0 && version <= PdfVersion::V1_7);
}

} // namespace

Document::~Document() = default;

Objects Document::getObjects() const noexcept {
    const DocumentState* const state = stateOf(*this);
    if (state == nullptr) return fail(NotSupported);
    return Host::guarded([&] {
        Objects objects;
        objects.reserve(state->objects.size());
        for (const ObjectTable::Slot& slot : state->objects.slots())
            objects.push_back(state->objects.object(slot));
        return objects;
    });
}

Objects Document::usedObjects() const noexcept {
    const DocumentState* const state = stateOf(*this);
    if (state == nullptr) return fail(NotSupported);
    return Host::guarded([&] {
        Objects objects;
        for (const ObjectTable::Slot& slot : state->objects.slots()) {
            if (slot.touched()) objects.push_back(state->objects.object(slot));
        }
        return objects;
    });
}

Ref<PDF::Object> Document::addObject(Ref<Value> value) noexcept {
    DocumentState* const state = stateOf(*this);
    if (state == nullptr) return fail(NotSupported);
    return Host::guarded([&] { return PDF::addObject(*state, std::move(value)); });
}

bool Document::removeObject(const Ref<PDF::Object>& object) noexcept {
    DocumentState* const state = stateOf(*this);
    if (state == nullptr) return fail(NotSupported);
    if (!object) return fail(NullArgument);
    return PDF::removeObject(*state, *object);
}

bool Document::raiseVersion(PdfVersion version) noexcept {
    DocumentState* const state = stateOf(*this);
    if (state == nullptr) return fail(NotSupported);
    if (!isKnown(version)) return fail(InvalidArgument);
    state->raiseVersion(version);
    return true;
}

std::string_view Document::lineEnding() const noexcept {
    const DocumentState* const state = stateOf(*this);
    if (state != nullptr) return state->lineEnding;
    fail(NotSupported);
    return {};
}

bool Document::faithfulNumbers() const noexcept {
    const DocumentState* const state = stateOf(*this);
    return state != nullptr && state->faithfulNumbers;
}

void Document::faithfulNumbers(bool faithful) noexcept {
    if (DocumentState* const state = stateOf(*this)) state->faithfulNumbers = faithful;
}

LossCount Document::metOnReading(Loss kind) const noexcept {
    const DocumentState* const state = stateOf(*this);
    if (state == nullptr) return {};
    switch (kind) {
    case Loss::Gaps:
        return gapsOf(*state);
    case Loss::LineFeeds:
        return Host::guarded([&] { return lostLineFeeds(*state); });
    case Loss::Filters:
        return filterLossesOf(*state);
    default:
        return static_cast<std::uint32_t>(kind) < lossKinds ? state->losses[kind] : LossCount();
    }
}

} // namespace Libraries::Files::PDF
