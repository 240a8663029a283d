#include "reader/scanner.h"
#include "support/document_builder.h"
#include "support/values.h"

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
        {array({null(), boolean(true), boolean(false)}), "[Nulltruefalse ]"},
        {number(7), "7.0"},
        {number(INT64_MIN, UINT64_MAX), "-9223372036854775808.18446744073709551615"},
        {name("A B#20"), "A B#20"},
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

TEST(Scalar, IsNotMadeOfNothing) {
    EXPECT_FALSE(Name::create(text("")));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
    EXPECT_FALSE(Name::create(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    EXPECT_FALSE(StringObj(Ref<Host::String>()).asText());
    EXPECT_EQ(Host::Error::get(), StepFailed);
    EXPECT_FALSE(String::create(Ref<Host::String>()) || String::create(Ref<Bytes>()));
    EXPECT_EQ(Host::Error::get(), NullArgument);
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

} // namespace
