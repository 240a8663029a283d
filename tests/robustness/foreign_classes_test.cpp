// Values of classes that an application made itself, sound ones and ones that break their promises.

#include "compose/resources.h"
#include "document/document_obj.h"
#include "state/object_obj.h"
#include "support/document_builder.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using namespace Testing;
using Text = Ref<Host::String>;

using Keys = Ref<Host::TVector<Text>>;

/// Has these keys, and under each the same value.
class OwnDictionary final : public Foreign<Dictionary> {
public:
    OwnDictionary(Keys keys, AnyValue value)
        : Foreign(Type::Dictionary), keys_(std::move(keys)), value_(std::move(value)) {}

    [[nodiscard]] Keys keys() const noexcept override { return keys_; }
    [[nodiscard]] AnyValue find(const Text&) const noexcept override { return value_; }
    bool set(Text, AnyValue) noexcept override { return false; }

private:
    Keys keys_;
    AnyValue value_;
};

class OwnNumber final : public Foreign<Number> {
public:
    OwnNumber() : Foreign(Type::Number) {}
    [[nodiscard]] std::int64_t integer() const noexcept override { return 12; }
    [[nodiscard]] std::uint64_t fraction() const noexcept override { return 0; }
};

class OwnStream final : public Foreign<Stream> {
public:
    OwnStream() : Foreign(Type::Stream) {}
    [[nodiscard]] std::uint64_t strmOfs() const noexcept override { return noOffset; }
    [[nodiscard]] Ref<Dictionary> dict() const noexcept override { return nullptr; }
    [[nodiscard]] Compression compression() const noexcept override { return Compression::None; }
};

AnyValue ownDictionary(std::vector<Text> keys, AnyValue value) {
    return makeOrThrow<OwnDictionary>(makeOrThrow<Host::TVector<Text>>(std::move(keys)),
                                      std::move(value));
}

/// A small document with one more object, number 5.
Ref<Document> with(AnyValue value) {
    auto document = open(DocumentBuilder::minimal().bytes());
    auto& objects = dynamic_cast<DocumentObj&>(*document).state().objects;
    objects.append(5, 0, std::move(value));
    return document;
}

TEST(ForeignClasses, ContainersMayBreakTheirPromises) {
    const struct {
        AnyValue value;
        const char *written, *cloned, *target, *added; ///< or what the failure says first
    } rows[] = {
        {ownDictionary({"K"_str, text("\u4E2D")}, number(1)), "<< /K 1 /- 1 >>", // cut to 8 bits
         "<< K -> 1.0 \u4E2D -> 1.0 >>", "Failed to add cloned value of A\n",
         "<< Font -> << K -> 1.0 \u4E2D -> 1.0 >> >>"},
        {makeOrThrow<OwnDictionary>(nullptr, nullptr), "Failed to retrieve keys of dictionary\n",
         "Failed to retrieve keys of the be cloned dictionary\n",
         "Failed to retrieve keys of resource dictionary Font\n",
         "Failed to retrieve resource keys of resource to add Font\n"},
        {ownDictionary({nullptr}, number(1)), "Failed to retrieve dictionary key 0h (0)\n",
         "Key in to be cloned dictionary is NULL: 0h (0)\n",
         "Failed to retrieve resource key 0h (0) of resoure Font\n",
         "Failed to retrieve resource key\n"},
        {array({nullptr}), "Array element is NULL: 0h (0)\n",
         "Element of to be cloned array is NULL: 0h (0)\n",
         "Array value 0h (0) is invalid of original resource Font\n",
         "Array value 0h (0) is invalid of resource to add: Font\n"},
        {ownDictionary({"K"_str}, nullptr), "Failed to retrieve value for dictionary key K\n",
         "Failed to retrieve value of key in to be cloned dictionary: K\n",
         "Failed to add cloned value of A\n",
         "Failed to retrieve value of K of resource to add Font\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.written);
        const RecordingLog log;
        std::size_t logged = 0;
        const auto expect = [&](const std::string& result, const char* expected) {
            const std::string all = result.empty() ? log.text().substr(logged) : result;
            EXPECT_NE(all.find(expected), std::string::npos) << all;
            logged = log.text().size();
        };
        const auto document = with(row.value);
        Cloner cloner(dynamic_cast<DocumentObj&>(*document));
        expect(write(*document), row.written);
        const auto copy = cloner.cloneValue(row.value, document);
        expect(copy ? textOf(copy) : "", row.cloned);
        const auto own = dictionary({{"Font", row.value}});
        const AnyValue more = row.value->type() == Value::Type::Array
                                  ? AnyValue(array({number(1)}))
                                  : dictionary({{"A", number(1)}});
        const auto plain = dictionary({{"Font", more}});
        const auto none = dictionary({});
        ResourceMerge merge(*document, cloner);
        expect(merge.merge(*none, *own, document) ? textOf(none) : "", row.added);
        expect(merge.merge(*own, *plain, document) ? textOf(own) : "", row.target);
    }
}

TEST(ForeignClasses, StreamsAreNotReencoded) {
    const auto stream = [](AnyValue length) {
        return makeOrThrow<StreamObj>(dictionary({{"Length", std::move(length)}}), stripeOf("abc"));
    };
    const struct {
        AnyValue value;
        std::uint32_t code;
        std::string message;
        bool cached = false;
    } rows[] = {
        {foreign(7), NoValue, "Failed to cast value of object 5h (5) to stream\n"},
        {makeOrThrow<OwnStream>(), StreamObjectInvalid,
         "Failed to cast Stream to StreamObj for 5h (5)\n"},
        {stream(makeOrThrow<OwnNumber>()), StreamObjectInvalid,
         "Failed to cast Length number to LengthObj for stream 5h (5)\n", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        const auto document = with(row.value);
        const RecordingLog log;
        EXPECT_FALSE(document->setCompression(Compression::FlateDecode));
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_TRUE(log.text().ends_with(row.message)) << log.text();
        EXPECT_EQ(document->changed(), row.value->changed());
        EXPECT_EQ(document->cacheStreamData(), row.cached);
        EXPECT_TRUE(row.cached || log.text().ends_with("Failed to cast to stream object: 5 (0)\n"));
    }
}

} // namespace
