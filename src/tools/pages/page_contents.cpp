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

/// Renderers nest states some tens of levels deep; more than this is no page.
constexpr std::uint64_t mostOpen = 10000;

/// States that are saved before contents that cannot be looked through, and restored behind them,
/// one half before what is drawn there: some renderers draw nothing more once a state is restored
/// that nobody saved.
constexpr std::uint64_t reserve = 12;

bool isStream(const Ref<Object>& object) noexcept {
    return object && object->valueType() == Value::Type::Stream;
}

std::string repeated(std::string_view text, std::uint64_t times) {
    std::string all;
    for (std::uint64_t time = 0; time < times; ++time)
        all += text;
    return all;
}

std::string_view textOf(const Host::MemoryStripe& stripe) noexcept {
    const auto bytes = stripe.bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
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

bool hasSoundContents(const Document& document, const Page& page) {
    const Ref<Value> entry = entryOf(document, *page.dictionary, "Contents");
    const Ref<Value> contents = follow(document, entry);
    if (!contents || isStream(objectBehind(document, entry))) return true;
    const Ref<Array> list = Host::cast<Array>(contents);
    bool sound = list != nullptr;
    for (std::uint64_t index = 0; sound && index < list->size(); ++index) {
        const Ref<Value> element = list->get(index);
        sound = !element || element->type() != Value::Type::Stream;
    }
    return sound || fail(PageInvalid, "Contents is of a wrong kind for page ", page.object);
}

Ref<ObjectRef> PageContents::opening() {
    if (!opening_) opening_ = added("q\n");
    return opening_;
}

std::vector<Ref<Value>> PageContents::covered(const Dictionary& page, const Ref<Value>& drawing) {
    const std::vector<Ref<Object>> streams = contentStreams(document_, page);
    const bool areKnown = std::ranges::all_of(
        streams, [this](const Ref<Object>& stream) { return balanceOf(stream).has_value(); });
    std::vector<Ref<Value>> contents;
    if (!areKnown) contents.emplace_back(saving());
    std::uint64_t open = 0;
    for (const Ref<Object>& object : streams) {
        const StateBalance balance = balanceOf(object).value_or(StateBalance());
        const bool stays = balance.restored <= open || !areKnown;
        contents.emplace_back(stays ? orThrow(referenceTo(object)) : mended(object, open));
        open = open - std::min(open, balance.restored) + balance.saved;
    }
    open += areKnown ? 1 : 1 + reserve / 2; // what `opening` saves too
    contents.emplace_back(restoring(open));
    contents.emplace_back(drawing);
    if (!areKnown) contents.emplace_back(restoring(reserve / 2));
    const bool whole =
        std::ranges::all_of(contents, [](const auto& part) { return part != nullptr; });
    return whole ? contents : std::vector<Ref<Value>>();
}

Ref<ObjectRef> PageContents::saving() {
    if (!saving_) saving_ = added(repeated("q\n", reserve));
    return saving_;
}

const std::optional<StateBalance>& PageContents::balanceOf(const Ref<Object>& object) {
    const auto [place, isNew] = balances_.try_emplace(object->id());
    if (!isNew) return place->second;
    const Ref<Stream> stream = Host::cast<Stream>(quietly([&] { return object->value(); }));
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    if (!entries || !canDecode(document_, *entries)) return place->second;
    const auto bytes = quietly([&] { return budget_.decoded(document_, object); });
    if (bytes) place->second = stateBalanceOf(textOf(*bytes));
    return place->second;
}

Ref<ObjectRef> PageContents::mended(const Ref<Object>& object, std::uint64_t open) {
    Ref<ObjectRef>& mended = mended_[{object->id(), open}];
    if (mended) return mended;
    const auto bytes = budget_.decoded(document_, object);
    if (!bytes) return nullptr;
    std::string content(textOf(*bytes));
    dropSurplus(content, open);
    mended = added(content);
    return mended;
}

Ref<ObjectRef> PageContents::restoring(std::uint64_t open) {
    open = std::min(open, mostOpen);
    Ref<ObjectRef>& restoring = restorings_[open];
    if (restoring) return restoring;
    // Behind whatever the page's last operator lacks. A line feed alone would count as the end of
    // the line "stream" where that is a carriage return.
    std::string operators = document_.lineEnding() == "\r" ? " \n" : "\n";
    operators += repeated("Q\n", open);
    restoring = added(operators);
    return restoring;
}

Ref<ObjectRef> PageContents::added(std::string_view operators) {
    const Ref<Stream> stream = newStream(operators, operators.size() > 64);
    const Ref<Object> object = stream ? changes_.add(stream) : nullptr;
    return object ? orThrow(referenceTo(object)) : nullptr;
}

} // namespace Libraries::Files::PDF::Tools
