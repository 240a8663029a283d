#include "document/document_obj.h"

#include "compose/background.h"
#include "host/guard.h"
#include "reader/reader.h"
#include "structures/structures.h"
#include "values/failure.h"
#include "writer/writer.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// Whether a document can read from the stripe or write to it: it has 32-bit elements.
bool usable(const Ref<Interfaces::Stripe>& stripe) noexcept {
    if (!stripe) return fail(NullArgument);
    if (stripe->elementSize() != 4) return fail(InvalidArgument);
    return true;
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
