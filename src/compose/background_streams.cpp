#include "compose/background_streams.h"

#include "host/on_failure.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/look_up.h"
#include "values/scalars.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// Collects the content streams of one page. A message about an element of an array ends in the
/// element's index.
class ContentCollector {
public:
    ContentCollector(const Document& foreign, ForeignPage& page, StreamTable& streams) noexcept
        : foreign_(foreign), page_(page), streams_(streams) {}

    bool collect(const Ref<Value>& contents) {
        switch (contents->type()) {
        case Value::Type::ObjectRef:
            return collectReference(contents);
        case Value::Type::Array:
            return collectArray(contents);
        default:
            return fail(ForeignPageInvalid,
                        "Foreign page content's has unexpected type: ", contents->type());
        }
    }

private:
    bool collectReference(const Ref<Value>& contents) {
        const Ref<Object> object = foreign_.getObject(Ref<ObjectRef>(as<ObjectRef>(contents)));
        if (!object) {
            return fail(ForeignPageInvalid, "Failed to resolve content stream of foreign page");
        }
        return enter(*object,
                     [](const char* text, const char*) { return fail(ForeignPageInvalid, text); });
    }

    bool collectArray(const Ref<Value>& contents) {
        const Array* array = as<Array>(contents);
        if (array == nullptr) {
            return fail(ForeignPageInvalid, "Failed to cast page content array to Array");
        }
        const std::uint64_t size = array->size();
        for (std::uint64_t index = 0; index < size; ++index) {
            if (!collectElement(array->get(index), index)) return false;
        }
        return true;
    }

    bool collectElement(const Ref<Value>& element, std::uint64_t index) {
        const Value::Type kind = element ? element->type() : Value::Type::Invalid;
        if (kind != Value::Type::ObjectRef) {
            return fail(ForeignPageInvalid, "Content element ", index,
                        " of foreign page has unexpected type: ", kind);
        }
        const Ref<Object> object = foreign_.getObject(Ref<ObjectRef>(as<ObjectRef>(element)));
        if (!object) {
            return fail(ForeignPageInvalid, "Failed to resolve element ", index,
                        " of foreign page");
        }
        return enter(*object, [index](const char* text, const char* link) {
            return fail(ForeignPageInvalid, text, link, index);
        });
    }

    /// `refused` takes a message and the words between it and an index.
    template <class Refused>
    bool enter(const Object& object, Refused refused) {
        page_.contents.push_back(object.id());
        if (streams_.contains(object.id())) return true;
        const Ref<Value> value = object.value();
        if (!value) {
            return refused("Referenced content object of the page has no value", " in element ");
        }
        if (value->type() != Value::Type::Stream) {
            return refused("Content stream of foreign page is not of type stream", " for element ");
        }
        Ref<Stream> stream(as<Stream>(value));
        if (!stream) {
            return refused("Failed to cast content stream of foreign page to Stream",
                           " for element ");
        }
        streams_.emplace(object.id(), std::move(stream));
        return true;
    }

    const Document& foreign_;
    ForeignPage& page_;
    StreamTable& streams_;
};

} // namespace

bool collectContents(const Document& foreign, ForeignPage& page, StreamTable& streams) {
    const LookedUp contents = lookUp(*page.dict, "Contents"_str);
    if (contents.value) return ContentCollector(foreign, page, streams).collect(contents.value);
    if (!contents.isAbsent()) {
        return fail(ForeignPageInvalid, "Failed to retrieve foreign page contents");
    }
    report(LogLevel::Warning, "Foreign page has no contents");
    return fail(ForeignPageEmpty);
}

bool AddedStreams::copy(const StreamTable& streams, const Ref<Document>& foreign,
                        DocumentState& state, Cloner& cloner) {
    Host::OnFailure undo([&] { removeFrom(state); });
    return undo.keep(copyAll(streams, foreign, cloner));
}

bool AddedStreams::copyAll(const StreamTable& streams, const Ref<Document>& foreign,
                           Cloner& cloner) {
    // Reserved first, so that every copy that is made can be entered here.
    entries_.reserve(streams.size());
    for (const auto& [foreignId, stream] : streams) {
        if (!foreign->readStreamData(stream, false)) {
            return fail(ForeignStreamUnread, "Failed to retrieve foreign stream");
        }
        Ref<ObjectRef> ref = cloner.addClonedObject(stream, foreign);
        if (!ref) return fail(StreamNotCopied, "Failed to add foreign stream");
        add(foreignId, std::move(ref));
    }
    return true;
}

Ref<ObjectRef> AddedStreams::find(std::uint32_t foreignId) const noexcept {
    const auto found = std::ranges::lower_bound(entries_, foreignId, {}, &Entry::foreignId);
    return found != entries_.end() && found->foreignId == foreignId ? found->ref : nullptr;
}

void AddedStreams::removeFrom(DocumentState& state) noexcept {
    for (Entry& entry : entries_) {
        if (entry.ref && state.find(*entry.ref) != nullptr) continue;
        state.modified = true;
        if (!entry.ref) {
            fail(NullArgument);
        } else {
            fail(ReferenceNotResolved, "Failed to remove added object ", entry.ref);
            entry.ref = nullptr;
        }
    }
    // Table and entries have the same order, so that one walk finds all objects.
    auto next = entries_.begin();
    const auto skipMissing = [&] {
        while (next != entries_.end() && !next->ref)
            ++next;
    };
    skipMissing();
    state.objects.removeIf([&](const ObjectTable::Slot& slot) {
        if (next == entries_.end()) return false;
        if (slot.id() != next->ref->id() || slot.generation() != next->ref->generation())
            return false;
        ++next;
        skipMissing();
        return true;
    });
    entries_.clear();
}

} // namespace Libraries::Files::PDF
