#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/object.h"
#include "values/sub_stripe.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using namespace Libraries::Files::PDF;

TEST(Object, WithoutValueHasNoKind) {
    const ObjectObj object(12, 3, nullptr);
    EXPECT_EQ(object.asText()->utf8(), "12 (3)");
    const RecordingLog log;
    EXPECT_EQ(object.valueType(), Value::Type::Invalid);
    EXPECT_EQ(Host::Error::get(), NoValue);
    EXPECT_FALSE(object.valueAsDictionary() || object.valueAsArray() || object.valueAsStream());
    ASSERT_EQ(log.entries().size(), 4U);
    EXPECT_TRUE(log.text().ends_with("\nObject has no valid value\n"));
}

TEST(Stream, TellsItsCompression) {
    const std::pair<AnyValue, Compression> rows[] = {
        {nullptr, Compression::None},
        {name("FlateDecode"), Compression::FlateDecode},
        {name("DCTDecode"), Compression::None},
        {array({name("FlateDecode")}), Compression::Unknown},
        {foreign(1), Compression::Unknown},
    };
    for (const auto& [filter, compression] : rows) {
        const auto dict = dictionary({});
        if (filter) dict->set(text("Filter"), filter);
        EXPECT_EQ(StreamObj(dict, 0).compression(), compression) << textOf(filter);
    }
    EXPECT_EQ(StreamObj(nullptr, 0).compression(), Compression::Unknown);
}

TEST(Stream, KnowsItsPlaceAndItsChange) {
    const auto dict = dictionary({{"Length", number(12)}});
    const auto stream = newValue<StreamObj>(dict, std::uint64_t{1024});
    EXPECT_EQ(textOf(stream), "@1024 << Length -> 12.0 >>");
    EXPECT_EQ(StreamObj(nullptr, stripeOf("")).asText()->utf8(), "@-1 null");
    EXPECT_FALSE(stream->equal(stream));
    const auto holder = dictionary({{"S", stream}});
    dict->set(text("A"), number(1));
    EXPECT_FALSE(stream->changed() || holder->changed()) << "its dictionary does not count";
    stream->strmData(stripeOf("new"));
    EXPECT_TRUE(stream->changed() && holder->changed());
    stream->resetChanged();
    EXPECT_FALSE(stream->changed() || holder->changed());
}

TEST(SubStripe, ReadsItsRangeOnly) {
    for (const std::uint64_t start : {0U, 3U}) {
        const auto base = stripeOf("0123456789ABCDEF");
        const auto view = newValue<SubStripe>(base, start, 10U, Host::Mon::create());
        std::uint32_t elements[100] = {};
        EXPECT_EQ(view->position(4), 4U);
        EXPECT_EQ(view->read(elements, 100), 6U);
        Host::Error::set(77);
        EXPECT_EQ(view->position(11), 10U);
        EXPECT_EQ(view->read(elements, 1), 0U);
        // The bound counts the start of the view in.
        EXPECT_EQ(Host::Error::get(), start == 0 ? std::uint32_t{OutOfRange} : 77U);
        EXPECT_EQ(contentsOf(view), start == 0 ? "0123456789" : "3456789ABC");
        const auto window = view->window(8);
        EXPECT_EQ(std::string(window.begin(), window.end()), start == 0 ? "89" : "BC");
        EXPECT_TRUE(view->window(10).empty());
        EXPECT_EQ(view->write(elements, 1) + view->writeBytes(nullptr, 0), 0U);
        EXPECT_EQ(Host::Error::get(), NotSupported);
        EXPECT_EQ(view->read(nullptr, 1) + view->readBytes(nullptr, 1), 0U);
        EXPECT_EQ(Host::Error::get(), InvalidArgument);
        EXPECT_EQ(contentsOf(base), "0123456789ABCDEF");
    }
}

TEST(SubStripe, SurvivesItsBase) {
    const auto base = Host::make<FailingStripe>(stripeOf("0123456789"));
    SubStripe view(base, 2, 6, Host::Mon::create());
    const RecordingLog log;
    std::uint32_t elements[6] = {};
    Host::Error::set(77);
    base->failAt(FailingStripe::Call::Seek, 1, FailingStripe::Fault::Misplaced);
    EXPECT_EQ(view.read(elements, 6), 0U);
    base->failAt(FailingStripe::Call::Read, 1, FailingStripe::Fault::Short);
    EXPECT_EQ(view.read(elements, 6), 3U);
    ASSERT_EQ(log.text(), "Read from base 3h (3) of requested 6h (6)\n");
    EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Warning);
    EXPECT_EQ(Host::Error::get(), 77U);
    EXPECT_EQ(view.read(elements, 6), 3U);
    EXPECT_EQ(elements[0], std::uint32_t{'5'});
}

} // namespace
