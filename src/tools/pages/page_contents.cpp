#include "tools/pages/page_contents.h"

#include "tools/failure.h"
#include "tools/new_stream.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <pdf/tools/editing.h>

#include <algorithm>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// Decoded bytes of a stream that are looked at; one that holds more counts as balanced.
constexpr std::uint64_t mostBytes = std::uint64_t{64} << 20;

/// How many times what is stored it may become before the rest counts against a budget for all.
constexpr std::uint64_t usualExpansion = 64;

/// Renderers nest states some tens of levels deep; more than this is no page.
constexpr std::uint64_t mostOpen = 10000;

bool isStream(const Ref<Object>& object) noexcept {
    return object && object->valueType() == Value::Type::Stream;
}

} // namespace

std::vector<Ref<Object>> contentStreams(const Document& document, const Dictionary& page) {
    std::vector<Ref<Object>> streams;
    const Ref<Value> entry = entryOf(document, page, "Contents");
    const Ref<Array> list = Host::cast<Array>(follow(document, entry));
    const std::uint64_t size = list ? list->size() : 1;
    for (std::uint64_t index = 0; index < size; ++index) {
        Ref<Object> object = objectBehind(document, list ? list->get(index) : entry);
        if (isStream(object)) streams.push_back(std::move(object));
    }
    return streams;
}

Ref<ObjectRef> PageContents::opening() {
    if (!opening_) opening_ = added("q\n");
    return opening_;
}

Ref<ObjectRef> PageContents::closing(const Dictionary& page) {
    std::uint64_t open = 1; // what `opening` saves
    for (const Ref<Object>& object : contentStreams(document_, page)) {
        const StateBalance& balance = balanceOf(object);
        open = open - std::min(open, balance.restored) + balance.saved;
    }
    open = std::min(open, mostOpen);
    Ref<ObjectRef>& closing = closings_[open];
    if (!closing) {
        std::string operators = "\n"; // whatever the page's last operator lacks
        for (std::uint64_t level = 0; level < open; ++level)
            operators += "Q\n";
        closing = added(operators);
    }
    return closing;
}

const StateBalance& PageContents::balanceOf(const Ref<Object>& object) {
    const auto [place, isNew] = balances_.try_emplace(object->id());
    if (!isNew) return place->second;
    const Ref<Stream> stream = Host::cast<Stream>(quietly([&] { return object->value(); }));
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    if (entries && canDecode(document_, *entries)) place->second = readBalance(stream, *entries);
    return place->second;
}

StateBalance PageContents::readBalance(const Ref<Stream>& stream, const Dictionary& entries) {
    const Ref<Number> length = Host::cast<Number>(followEntry(document_, entries, "Length"));
    const auto stored =
        static_cast<std::uint64_t>(std::max<std::int64_t>(length ? length->integer() : 0, 0));
    const std::uint64_t usual = std::min(stored, mostBytes / usualExpansion) * usualExpansion;
    const std::uint64_t limit = std::min(mostBytes, usual + expansionLeft_);
    const auto bytes = quietly([&] { return decodedBytes(document_, stream, limit); });
    const std::uint64_t expanded = bytes ? bytes->size() : limit;
    if (expanded > usual) expansionLeft_ -= expanded - usual;
    return bytes ? stateBalanceOf(bytes->bytes()) : StateBalance();
}

Ref<ObjectRef> PageContents::added(std::string_view operators) {
    const Ref<Stream> stream = newStream(operators, operators.size() > 64);
    const Ref<Object> object = stream ? changes_.add(stream) : nullptr;
    return object ? orThrow(referenceTo(object)) : nullptr;
}

} // namespace Libraries::Files::PDF::Tools
