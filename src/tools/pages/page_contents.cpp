#include "tools/pages/page_contents.h"

#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

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

std::vector<Ref<Object>> contentStreams(const Document& document, const Ref<Dictionary>& page) {
    std::vector<Ref<Object>> streams;
    const Ref<Value> entry = entryOf(document, page, "Contents");
    const Ref<Array> list = followTo<Array>(document, entry);
    for (const Ref<Value>& element : list ? elementsOf(list) : std::vector{entry}) {
        Ref<Object> object = objectBehind(document, element);
        if (isStream(object)) streams.push_back(std::move(object));
    }
    return streams;
}

void requireSoundContents(const Document& document, const Page& page) {
    const Ref<Value> entry = entryOf(document, page.dictionary, "Contents");
    const Ref<Value> contents = follow(document, entry);
    if (!contents || isStream(objectBehind(document, entry))) return;
    const Ref<Array> list = Host::cast<Array>(contents);
    const bool sound = list && std::ranges::none_of(elementsOf(list), [](const auto& element) {
                           return element && element->type() == Value::Type::Stream;
                       });
    if (!sound) fail(PageInvalid, "Contents is of a wrong kind for page ", page.object);
}

void PageContents::drawBeneath(const Ref<Dictionary>& page, const std::string& operators) {
    std::vector<Ref<Value>> contents = {drawing(operators)};
    for (const Ref<Object>& stream : contentStreams(changes_.document(), page))
        contents.emplace_back(newReference(stream));
    changes_.set(page, "Contents", newArray(contents));
}

void PageContents::drawAbove(const Ref<Dictionary>& page, const std::string& operators) {
    std::vector<Ref<Value>> contents = {drawing(operators)};
    const auto streams = contentStreams(changes_.document(), page);
    if (!streams.empty()) contents = closed(streams, contents.front());
    changes_.set(page, "Contents", newArray(contents));
}

/// Pages with a letterhead share what draws it.
Ref<ObjectRef> PageContents::drawing(const std::string& operators) {
    Ref<ObjectRef>& drawing = drawings_[operators];
    if (!drawing) drawing = added(operators);
    return drawing;
}

std::vector<Ref<Value>> PageContents::closed(const std::vector<Ref<Object>>& streams,
                                             const Ref<Value>& drawing) {
    const bool areKnown = std::ranges::all_of(
        streams, [this](const Ref<Object>& stream) { return balanceOf(stream).has_value(); });
    if (!opening_) opening_ = added("q\n");
    std::vector<Ref<Value>> contents = {opening_};
    if (!areKnown) {
        if (!saving_) saving_ = added(repeated("q\n", reserve));
        contents.emplace_back(saving_);
    }
    std::uint64_t open = 0;
    for (const Ref<Object>& object : streams) {
        const StateBalance balance = balanceOf(object).value_or(StateBalance());
        const bool stays = balance.restored <= open || !areKnown;
        contents.emplace_back(stays ? newReference(object) : mended(object, open));
        open = open - std::min(open, balance.restored) + balance.saved;
    }
    open += areKnown ? 1 : 1 + reserve / 2; // what the first stream saves too
    contents.emplace_back(restoring(open));
    contents.emplace_back(drawing);
    if (!areKnown) contents.emplace_back(restoring(reserve / 2));
    return contents;
}

const std::optional<StateBalance>& PageContents::balanceOf(const Ref<Object>& object) {
    const auto [place, isNew] = balances_.try_emplace(object->id());
    if (isNew) place->second = lookedThrough(object);
    return place->second;
}

std::optional<StateBalance> PageContents::lookedThrough(const Ref<Object>& object) {
    try {
        return stateBalanceOf(textOf(*budget_.decoded(changes_.document(), object)));
    } catch (const FailedStep& step) {
        // Data that is not understood is passed over; a source that cannot be read is a failure.
        if (step.code == SourceNotRead) throw;
        return std::nullopt;
    }
}

Ref<ObjectRef> PageContents::mended(const Ref<Object>& object, std::uint64_t open) {
    Ref<ObjectRef>& mended = mended_[{object->id(), open}];
    if (mended) return mended;
    std::string content(textOf(*budget_.decoded(changes_.document(), object)));
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
    std::string operators = changes_.document().lineEnding() == "\r" ? " \n" : "\n";
    operators += repeated("Q\n", open);
    restoring = added(operators);
    return restoring;
}

Ref<ObjectRef> PageContents::added(std::string_view operators) {
    constexpr std::size_t shortest = 64; // that deflating makes shorter
    const bool isLong = operators.size() > shortest;
    return changes_.add(newStream(operators, isLong ? Storing::Deflated : Storing::Plain));
}

} // namespace Libraries::Files::PDF::Tools
