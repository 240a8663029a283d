#include "document/document_obj.h"

#include "compose/background.h"
#include "host/guard.h"
#include "reader/reader.h"
#include "state/own_objects.h"
#include "structures/structures.h"
#include "values/failure.h"
#include "values/kind.h"
#include "writer/writer.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// Every stripe a document reads from or writes to has one 32-bit element for each byte.
bool usable(const Ref<Interfaces::Stripe>& stripe) noexcept {
    if (!stripe) return fail(NullArgument);
    if (stripe->elementSize() != 4) return fail(InvalidArgument);
    return true;
}

/// The objects that the written table, which counts on without a gap, does not tell right.
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

} // namespace

Ref<Document> Document::create(Ref<Interfaces::Stripe> source) noexcept {
    return create(std::move(source), Structure::Classic);
}

Ref<Document> Document::create(Ref<Interfaces::Stripe> source, Structure structure) noexcept {
    if (!usable(source)) return nullptr;
    return Host::guarded([&]() -> Ref<Document> {
        auto document = makeOrThrow<DocumentObj>(std::move(source), orThrow(Host::Mon::create()));
        DocumentState& state = document->state();
        if (structure == Structure::Any ? !loadAny(state) : !load(state)) return nullptr;
        return document;
    });
}

Host::StackVector<Ref<PDF::Object>> Document::getObjects() const noexcept {
    return fail(NotSupported);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): whoever can add an object keeps the value
Ref<PDF::Object> Document::addObject(Ref<Value>) noexcept {
    return fail(NotSupported);
}

bool Document::removeObject(const Ref<PDF::Object>&) noexcept {
    return fail(NotSupported);
}

std::string_view Document::lineEnding() const noexcept {
    fail(NotSupported);
    return {};
}

void Document::faithfulNumbers(bool) noexcept {}

LossCount Document::metOnReading(Loss) const noexcept {
    return {};
}

LossCount DocumentObj::metOnReading(Loss kind) const noexcept {
    switch (kind) {
    case Loss::Gaps:
        return gapsOf(state_);
    case Loss::LineFeeds:
        return Host::guarded([&] { return lostLineFeeds(state_); });
    case Loss::Filters:
        return filterLossesOf(state_);
    default:
        return static_cast<std::uint32_t>(kind) < lossKinds ? state_.losses[kind] : LossCount();
    }
}

Host::StackVector<Ref<PDF::Object>> DocumentObj::getObjects() const noexcept {
    return Host::guarded([&] {
        Host::StackVector<Ref<PDF::Object>> objects;
        objects.reserve(state_.objects.size());
        for (const ObjectTable::Slot& slot : state_.objects.slots())
            objects.push_back(state_.objects.object(slot));
        return objects;
    });
}

Host::StackVector<Ref<PDF::Object>> Document::usedObjects() const noexcept {
    const auto* const ours = dynamic_cast<const DocumentObj*>(this);
    return ours != nullptr ? ours->touchedObjects() : getObjects();
}

Host::StackVector<Ref<PDF::Object>> DocumentObj::touchedObjects() const noexcept {
    return Host::guarded([&] {
        Host::StackVector<Ref<PDF::Object>> objects;
        for (const ObjectTable::Slot& slot : state_.objects.slots()) {
            if (slot.touched()) objects.push_back(state_.objects.object(slot));
        }
        return objects;
    });
}

DocumentObj::DocumentObj(Ref<Interfaces::Stripe> source, Ref<Host::Mon> monitor) {
    state_.source = std::move(source);
    state_.monitor = std::move(monitor);
}

Ref<Form> DocumentObj::form() noexcept {
    return Host::guarded([&] { return lookUpForm(*this, state_.objects.size(), form_); });
}

Ref<PDF::Object> DocumentObj::getObject(const Ref<ObjectRef>& ref) const noexcept {
    if (!ref) return fail(NullArgument);
    const ObjectTable::Slot* slot = state_.find(*ref);
    if (slot == nullptr) return fail(ObjectNotFound);
    return Host::guarded([&]() -> Ref<PDF::Object> { return state_.objects.object(*slot); });
}

Ref<PDF::Object> DocumentObj::addObject(Ref<Value> value) noexcept {
    return Host::guarded([&] { return PDF::addObject(state_, std::move(value)); });
}

bool DocumentObj::removeObject(const Ref<PDF::Object>& object) noexcept {
    if (!object) return fail(NullArgument);
    return PDF::removeObject(state_, *object);
}

bool DocumentObj::write(Ref<Interfaces::Stripe> target) noexcept {
    if (!usable(target)) return false;
    return Host::guarded([&] { return writeDocument(state_, *target); });
}

Ref<Interfaces::Stripe> DocumentObj::readStreamData(Ref<Stream> stream, bool decode) noexcept {
    return Host::guarded([&] { return PDF::readStreamData(state_, stream, decode); });
}

std::uint32_t DocumentObj::writeStreamData(Ref<Stream> stream, Ref<Interfaces::Stripe> target,
                                           bool encode) noexcept {
    if (!stream || !target) return fail(NullArgument);
    auto* const held = own<StreamObj>(stream);
    if (held == nullptr) return fail(InvalidArgument, "Failed to cast Stream to StreamObj");
    if (!usable(target)) return 0;
    return Host::guarded([&] { return PDF::writeStreamData(state_, *held, *target, encode); });
}

bool DocumentObj::cacheStreamData() noexcept {
    return Host::guarded([&] { return PDF::cacheStreamData(state_); });
}

bool DocumentObj::changed() const noexcept {
    if (state_.modified) return true;
    return std::ranges::any_of(state_.objects.slots(), [](const ObjectTable::Slot& slot) {
        const Ref<Value> value = slot.touchedValue();
        return value && value->changed();
    });
}

bool DocumentObj::addBackground(Ref<Document> foreign, std::uint32_t mode) noexcept {
    return Host::guarded([&] { return PDF::addBackground(*this, foreign, mode); });
}

bool DocumentObj::setCompression(Compression target) noexcept {
    return Host::guarded([&] { return PDF::setCompression(state_, target); });
}

} // namespace Libraries::Files::PDF
