#include "reader/scanner.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/sub_stripe.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Testing;
using namespace Libraries::Files::PDF;
using Bytes = Host::TConstArray<unsigned char>;

AnyValue string(std::string_view utf8) {
    return String::create(text(utf8));
}

TEST(Scalar, HasATextForm) {
    const std::pair<AnyValue, const char*> rows[] = {
        {number(INT64_MIN, UINT64_MAX), "-9223372036854775808.18446744073709551615"},
        {reference(UINT32_MAX, 65535), "4294967295 (65535)"},
        {string("a\x7F\u00E9\U0001F600"), "a\x7F\u00E9\U0001F600"},
        {byteString({}), ""},
        {byteString({0xFE, 0xFF, 0x0A}), "FEFF0A"}, // an odd number of bytes
        {byteString({0x01, 0xAB}), "01AB"},         // no mark
        {byteString({0xFE, 0xFF}), ""},
        {byteString({0xFF, 0xFE, 'A', 0}), "A"},
        {byteString({0xFE, 0xFF, 0, 'A'}), "A"},
    };
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(textOf(value), expected);
}

/// Values of which no two are equal, made anew at each call.
Ref<Array> differentValues() {
    const auto source = stripeOf("[ null true false 1 1.5 1.50 /A /a (A) (A ) <41> <4100> <> 5 0 R "
                                 "5 1 R 6 0 R [] [1] [1 2] [2 1] << >> << /A 1 >> << /A 2 >> "
                                 "<< /B 1 >> << /A 1 /B [null] >> ]");
    Host::Cursor cursor(*source);
    return castTo<Array>(Scanner(cursor).readObjectValue());
}

TEST(Value, EqualsItsLikeAndNothingElse) {
    const Ref<Array> values = differentValues();
    const Ref<Array> others = differentValues();
    ASSERT_EQ(values->size(), 25U);
    for (std::uint64_t left = 0; left < values->size(); ++left) {
        const AnyValue value = values->get(left);
        for (std::uint64_t right = 0; right < others->size(); ++right)
            EXPECT_EQ(value->equal(others->get(right)), left == right) << left << ", " << right;
        EXPECT_FALSE(value->equal(nullptr)) << left;
        EXPECT_FALSE(value->equal(foreign(static_cast<std::uint32_t>(value->type())))) << left;
        EXPECT_FALSE(value->changed()) << left;
    }
}

TEST(Stream, KnowsItsPlaceAndItsChange) {
    const auto dict = dictionary({{"Length", number(12)}});
    const auto stream = newValue<StreamObj>(dict, std::uint64_t{1024});
    EXPECT_EQ(textOf(stream), "@1024 << Length -> 12.0 >>");
    const auto holder = dictionary({{"S", stream}});
    dict->set(text("A"), number(1));
    EXPECT_FALSE(stream->changed() || holder->changed()) << "its dictionary does not count";
    stream->strmData(stripeOf("new"));
    EXPECT_TRUE(stream->changed() && holder->changed());
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

TEST(Errors, HaveATextWhateverTheCode) {
    EXPECT_STREQ(errorText(Host::NoError), "no error");
    EXPECT_STREQ(errorText(ForeignTreeInvalid), errorText(NoTrailer + 256));
    EXPECT_STREQ(errorText(NoTrailer + 512), "unknown error");
}

} // namespace
