#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/references.h"
#include "tools/stored_data.h"
#include "tools/stream_budget.h"
#include "tools/stream_coding.h"

#include <host/memory_stripe.h>
#include <pdf/errors.h>
#include <pdf/tools/streams.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

enum class Task { Compress, Expand };

/// A stream to be stored otherwise.
struct Work {
    std::uint32_t id;
    Ref<StreamObj> stream;
    Ref<Dictionary> entries;
    Coding coding;
    Ref<Interfaces::Stripe> data;
    Ref<Host::MemoryStripe> recoded; ///< null where it stays as it is
};

/// Stores the streams of a document otherwise. Throws `std::bad_alloc`.
class Recoding {
public:
    Recoding(Document& document, Task task, std::optional<std::uint64_t> limit) noexcept
        : document_(document), task_(task), limit_(limit) {}

    [[nodiscard]] bool run();

private:
    [[nodiscard]] bool collect();
    [[nodiscard]] bool consider(const Ref<Object>& object);
    [[nodiscard]] bool isWanted(const Dictionary& entries, const Coding& coding) const;
    [[nodiscard]] bool findData();
    [[nodiscard]] bool recode(Work& work);
    [[nodiscard]] bool compress(Work& work);
    [[nodiscard]] bool expand(Work& work);
    [[nodiscard]] bool losesLineFeed(const Host::ByteBuffer& plain) const noexcept;
    [[nodiscard]] bool change();
    [[nodiscard]] bool describe(Changes& changes, const Work& work) const;

    Document& document_;
    Task task_;
    std::optional<std::uint64_t> limit_;
    std::vector<Work> works_;
    std::unordered_set<const Stream*> met_;
    std::unordered_map<const Dictionary*, std::size_t> users_; ///< streams with that dictionary
};

bool isEncrypted(const Document& document) {
    const Ref<Dictionary> trailer = document.trailer();
    return trailer && entryOf(document, *trailer, "Encrypt");
}

bool Recoding::run() {
    if (isEncrypted(document_)) return true;
    return collect() && findData() &&
           std::ranges::all_of(works_, [this](Work& work) { return recode(work); }) && change();
}

bool Recoding::collect() {
    Host::Error::set(Host::NoError);
    const auto objects = document_.getObjects();
    if (objects.empty() && Host::Error::get() != Host::NoError) return false;
    for (const Ref<Object>& object : objects) {
        if (object->valueType() == Value::Type::Stream && !consider(object)) return false;
    }
    std::erase_if(works_, [this](const Work& work) { return users_[work.entries.get()] > 1; });
    return true;
}

bool Recoding::consider(const Ref<Object>& object) {
    const Ref<Stream> stream = quietly([&] { return object->valueAsStream(); });
    if (!stream || !met_.insert(stream.get()).second) return true;
    const Ref<Dictionary> entries = stream->dict();
    if (!entries) {
        return fail(StreamDictionaryMissing, "The stream has no dictionary: ", object);
    }
    ++users_[entries.get()];
    const Ref<StreamObj> held = Host::cast<StreamObj>(stream);
    if (!held) return true;
    const Coding coding = codingOf(document_, *entries);
    if (isWanted(*entries, coding)) {
        works_.push_back({object->id(), held, entries, coding, nullptr, nullptr});
    }
    return true;
}

bool Recoding::isWanted(const Dictionary& entries, const Coding& coding) const {
    if (entryOf(document_, entries, "F")) return false; // its data is in another file
    if (task_ == Task::Expand) return coding.kind == Coding::Kind::Flate;
    return coding.kind == Coding::Kind::Plain &&
           !isName(followEntry(document_, entries, "Type"), "Metadata");
}

bool Recoding::findData() {
    StreamBudget budget;
    std::uint64_t total = 0;
    for (Work& work : works_) {
        const bool held = work.stream->strmData() != nullptr;
        work.data = rawData(document_, work.stream);
        if (!work.data) return false;
        const std::uint64_t size = work.data->size();
        total += size;
        if (held) {
            budget.addHeld(size);
        } else {
            budget.addStored(work.stream->strmOfs(), size);
        }
    }
    const std::uint64_t allowed = budget.bytes();
    if (total > allowed) return fail(ExpansionTooBig, "Streams lie in each other");
    if (!limit_) limit_ = allowed;
    return true;
}

bool Recoding::recode(Work& work) {
    const bool done = task_ == Task::Compress ? compress(work) : expand(work);
    work.data = nullptr;
    return done;
}

Failure notRead(const Work& work) {
    return fail(SourceNotRead, "Failed to read the data of stream ", work.id);
}

Ref<Host::MemoryStripe> held(Host::ByteBuffer bytes) {
    bytes.shrink();
    return orThrow(Host::MemoryStripe::create(std::move(bytes)));
}

bool Recoding::compress(Work& work) {
    // What the dictionary takes more.
    constexpr std::string_view entry = " /Filter /FlateDecode";
    Host::ByteBuffer deflated;
    switch (deflate(*work.data, deflated)) {
    case Converted::Done:
        break;
    case Converted::NotRead:
        return notRead(work);
    default:
        return fail(CodingFailed, "Failed to deflate the data of stream ", work.id);
    }
    if (deflated.size() + entry.size() < work.data->size())
        work.recoded = held(std::move(deflated));
    return true;
}

bool Recoding::expand(Work& work) {
    Host::ByteBuffer plain;
    switch (inflate(*work.data, plain, *limit_)) {
    case Converted::Done:
        break;
    case Converted::NotRead:
        return notRead(work);
    case Converted::TooLarge:
        return fail(ExpansionTooBig, "Expanded streams take more than is allowed, at stream ",
                    work.id);
    default:
        return true;
    }
    const Host::Prediction& prediction = work.coding.prediction;
    if (!prediction.fillsRows(plain.size()) || !Host::undoPrediction(prediction, plain))
        return true;
    if (losesLineFeed(plain)) return true;
    *limit_ -= plain.size();
    work.recoded = held(std::move(plain));
    return true;
}

bool Recoding::losesLineFeed(const Host::ByteBuffer& plain) const noexcept {
    return document_.lineEnding() == "\r" && !plain.empty() && *plain.data() == '\n';
}

/// From here on only the entries can fail, and they go back.
bool Recoding::change() {
    std::erase_if(works_, [](const Work& work) { return !work.recoded; });
    Changes changes(document_);
    for (const Work& work : works_) {
        if (!describe(changes, work)) return false;
    }
    changes.keep();
    for (const Work& work : works_)
        work.stream->strmData(work.recoded);
    return true;
}

bool Recoding::describe(Changes& changes, const Work& work) const {
    const auto size = static_cast<std::int64_t>(work.recoded->size());
    const Ref<Value> filter =
        task_ == Task::Compress ? orThrow(Name::create("FlateDecode")) : nullptr;
    // Parameters without a filter said nothing, and must not begin to.
    return changes.set(work.entries, "Length", orThrow(Number::create(size))) &&
           changes.set(work.entries, "Filter", filter) && changes.drop(work.entries, "DecodeParms");
}

bool recode(Document& document, Task task, std::optional<std::uint64_t> limit) noexcept {
    const std::uint32_t code = Host::Error::get();
    return guarded([&] {
        const bool done = Recoding(document, task, limit).run();
        if (done) Host::Error::set(code);
        return done;
    });
}

} // namespace

bool compressStreams(Document& document) noexcept {
    return recode(document, Task::Compress, std::nullopt);
}

bool expandStreams(Document& document, const ExpandOptions& options) noexcept {
    return recode(document, Task::Expand, options.limit);
}

} // namespace Libraries::Files::PDF::Tools
