#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"
#include "tools/stored_data.h"
#include "tools/stream_budget.h"
#include "tools/stream_coding.h"

#include <host/memory_stripe.h>
#include <pdf/errors.h>
#include <pdf/tools/streams.h>

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

/// Stores the streams of a document otherwise.
class Recoding {
public:
    Recoding(Document& document, Task task, std::optional<std::uint64_t> limit) noexcept
        : document_(document), task_(task), limit_(limit) {}

    void run();

private:
    void collect();
    void consider(const Ref<Object>& object);
    [[nodiscard]] bool isWanted(const Ref<Dictionary>& entries, const Coding& coding) const;
    void findData();
    void recode(Work& work);
    static void compress(Work& work);
    void expand(Work& work);
    [[nodiscard]] bool losesLineFeed(const Host::ByteBuffer& plain) const noexcept;
    void change();
    void describe(Changes& changes, const Work& work) const;

    Document& document_;
    Task task_;
    std::optional<std::uint64_t> limit_;
    std::vector<Work> works_;
    std::unordered_set<const Stream*> met_;
    std::unordered_map<const Dictionary*, std::size_t> users_; ///< streams with that dictionary
};

void Recoding::run() {
    if (entryOf(document_, document_.trailer(), "Encrypt")) return;
    collect();
    findData();
    for (Work& work : works_)
        recode(work);
    change();
}

void Recoding::collect() {
    Host::Error::set(Host::NoError);
    const auto objects = document_.getObjects();
    if (objects.empty() && Host::Error::get() != Host::NoError) failAsBefore();
    for (const Ref<Object>& object : objects) {
        if (object->valueType() == Value::Type::Stream) consider(object);
    }
    std::erase_if(works_, [this](const Work& work) { return users_[work.entries.get()] > 1; });
}

void Recoding::consider(const Ref<Object>& object) {
    const Ref<Stream> stream = quietly([&] { return object->valueAsStream(); });
    if (!stream || !met_.insert(stream.get()).second) return;
    const Ref<Dictionary> entries = stream->dict();
    if (!entries) fail(StreamDictionaryMissing, "The stream has no dictionary: ", object);
    ++users_[entries.get()];
    const Ref<StreamObj> ours = Host::cast<StreamObj>(stream);
    if (!ours) return;
    const Coding coding = codingOf(document_, entries);
    if (isWanted(entries, coding))
        works_.push_back({object->id(), ours, entries, coding, nullptr, nullptr});
}

bool Recoding::isWanted(const Ref<Dictionary>& entries, const Coding& coding) const {
    if (entryOf(document_, entries, "F")) return false; // its data is in another file
    if (task_ == Task::Expand) return coding.kind == Coding::Kind::Flate;
    return coding.kind == Coding::Kind::Plain &&
           !isName(followEntry(document_, entries, "Type"), "Metadata");
}

void Recoding::findData() {
    StreamBudget budget;
    std::uint64_t total = 0;
    for (Work& work : works_) {
        const bool held = work.stream->strmData() != nullptr;
        work.data = atObject(work.id, [&] { return rawData(document_, work.stream); });
        const std::uint64_t size = work.data->size();
        total += size;
        if (held) {
            budget.addHeld(size);
        } else {
            budget.addStored(work.stream->strmOfs(), size);
        }
    }
    const std::uint64_t allowed = budget.bytes();
    if (total > allowed)
        fail(ExpansionTooBig, "Streams lie in each other: they have ", total, " bytes together");
    if (!limit_) limit_ = allowed;
}

void Recoding::recode(Work& work) {
    atObject(work.id, [&] { task_ == Task::Compress ? compress(work) : expand(work); });
    work.data = nullptr;
}

void Recoding::compress(Work& work) {
    // What the dictionary takes more.
    constexpr std::string_view entry = " /Filter /FlateDecode";
    Host::ByteBuffer smaller = deflated(*work.data);
    if (smaller.size() + entry.size() < work.data->size()) work.recoded = held(std::move(smaller));
}

void Recoding::expand(Work& work) {
    Host::ByteBuffer plain;
    const Inflated inflated = inflate(*work.data, plain, *limit_);
    if (inflated == Inflated::Damaged) return;
    if (inflated == Inflated::TooLarge) {
        fail(ExpansionTooBig, "Streams, up to this one, expand to more than is allowed");
    }
    const Host::Prediction& prediction = work.coding.prediction;
    if (!prediction.fillsRows(plain.size()) || !Host::undoPrediction(prediction, plain)) return;
    if (losesLineFeed(plain)) return;
    *limit_ -= plain.size();
    plain.shrink();
    work.recoded = held(std::move(plain));
}

bool Recoding::losesLineFeed(const Host::ByteBuffer& plain) const noexcept {
    return document_.lineEnding() == "\r" && !plain.empty() && *plain.data() == '\n';
}

/// From here on only the entries can fail, and they go back.
void Recoding::change() {
    std::erase_if(works_, [](const Work& work) { return !work.recoded; });
    Changes changes(document_);
    for (const Work& work : works_)
        describe(changes, work);
    changes.keep();
    for (const Work& work : works_)
        work.stream->strmData(work.recoded);
}

void Recoding::describe(Changes& changes, const Work& work) const {
    changes.set(work.entries, "Length", newNumber(work.recoded->size()));
    changes.set(work.entries, "Filter", task_ == Task::Compress ? newName("FlateDecode") : nullptr);
    // Parameters without a filter said nothing, and must not begin to.
    changes.drop(work.entries, "DecodeParms");
}

Result<void> recode(const Ref<Document>& document, Task task,
                    std::optional<std::uint64_t> limit) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        Recoding(*document, task, limit).run();
    });
}

} // namespace

Result<void> compressStreams(const Ref<Document>& document) noexcept {
    return recode(document, Task::Compress, std::nullopt);
}

Result<void> expandStreams(const Ref<Document>& document, const ExpandOptions& options) noexcept {
    return recode(document, Task::Expand, options.limit);
}

} // namespace Libraries::Files::PDF::Tools
