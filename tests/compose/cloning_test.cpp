#include "compose/cloning.h"

#include "document/document_obj.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/sub_stripe.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Libraries::Files::PDF;
using Testing::AnyValue;
using Testing::array;
using Testing::contentsOf;
using Testing::dictionary;
using Testing::DocumentBuilder;
using Testing::FailingStripe;
using Testing::foreign;
using Testing::RecordingLog;
using Testing::reference;
using Testing::stripeOf;
using Testing::textOf;
using Testing::valueOf;

/// A document to copy into: objects 1 to 4, so that copies are numbered from 5 on.
struct Target {
    Ref<Document> document = Testing::open(DocumentBuilder::minimal().bytes());
    DocumentState& state = dynamic_cast<DocumentObj&>(*document).state();
    Cloner cloner{state, *document};
};

Ref<Document> foreignWith(std::initializer_list<std::pair<std::uint32_t, std::string>> objects) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    for (const auto& [id, body] : objects)
        builder.object(id, body);
    return Testing::open(builder.bytes());
}

TEST(Cloner, CopiesEveryKindAndFollowsReferences) {
    const Ref<Document> source = foreignWith(
        {{5, "<< /A [true false null 1.50 -7 (a) <FFFE4100> /N << >> [ ]] /B 6 0 R /C 6 0 R >>"},
         {6, "[7 0 R]"},
         {7, "<< /Length 3 /X 8 0 R >>\nstream\nabc\nendstream"},
         {8, "(twice)"}});
    Target target;
    const Ref<Value> value = valueOf(*source, 5);
    const Ref<Value> copy = target.cloner.cloneValue(value, source);
    // Innermost first, and each time anew.
    EXPECT_EQ(textOf(copy),
              "<< A -> [truefalseNull1.50-7.0aAN<< >>[ ] ] B -> 7 (0) C -> 10 (0) >>");
    EXPECT_EQ(textOf(valueOf(*target.document, 10)), "[9 (0) ]");
    EXPECT_EQ(textOf(valueOf(*target.document, 9)), "@-1 << Length -> 3.0 X -> 8 (0) >>");
    EXPECT_EQ(textOf(valueOf(*target.document, 8)), "twice");
    EXPECT_EQ(target.document->getObjects().size(), 10U);
    EXPECT_TRUE(target.state.modified);

    const auto elements = [](const Ref<Value>& dict) {
        return castTo<Dictionary>(dict)->findAsArray(Testing::text("A"));
    };
    EXPECT_TRUE(elements(copy)->equal(elements(value)));
    for (std::uint64_t index = 0; index < elements(copy)->size(); ++index)
        EXPECT_NE(elements(copy)->get(index), elements(value)->get(index)) << index;
    // Not through String::create, which would turn it into bytes.
    const Ref<Value> wide = newValue<StringObj>(Testing::text("\xC3\xA9"));
    EXPECT_EQ(castTo<String>(target.cloner.cloneValue(wide, source))->text()->utf8(), "\xC3\xA9");
}

TEST(Cloner, KeepsReferencesOfItsOwnDocument) {
    Target target;
    const Ref<Value> ref = Testing::reference(4, 0);
    EXPECT_EQ(target.cloner.cloneValue(ref, target.document), ref);
    EXPECT_EQ(target.state.objects.size(), 4U);
    EXPECT_FALSE(target.state.modified);
}

TEST(Cloner, CopiesOfOneStreamShareItsBytes) {
    const Ref<Document> source = foreignWith({{5, "[4 0 R 4 0 R]"}});
    Target target;
    ASSERT_TRUE(target.cloner.cloneValue(valueOf(*source, 5), source));
    const auto data = [&](std::uint32_t id) {
        return dynamic_cast<StreamObj&>(*valueOf(*target.document, id)).strmData();
    };
    EXPECT_NE(data(5), data(6));
    EXPECT_EQ(data(5)->window(0).data(), data(6)->window(0).data());
    EXPECT_EQ(data(5)->position(4), 4U);
    EXPECT_EQ(contentsOf(data(6)), "0 0 9 9 re f");
    EXPECT_EQ(data(5)->position(), 4U);
    EXPECT_EQ(data(5)->position(13), 12U);
    EXPECT_EQ(data(5)->writeBytes(nullptr, 1), 0U);
    EXPECT_EQ(Host::Error::get(), NotSupported);
}

TEST(Cloner, LeavesTheTableAsItWasOnFailure) {
    struct Row {
        const char* name;
        AnyValue value;
        std::uint32_t code;
        const char* log;
        std::uint32_t numbers = 0; ///< used up on the way
    };
    const Row rows[] = {
        {"null", nullptr, NullArgument, ""},
        {"kind", foreign(12), NotSupported, "Value type not supported for cloning: Ch (12)\n"},
        {"name", foreign(1), InvalidArgument, "Failed to convert to be cloned name to Name\n"},
        {"stream", foreign(7), InvalidArgument,
         "Failed to convert to be cloned stream to Stream\n"},
        {"string", newValue<StringObj>(Ref<Host::String>()), InvalidArgument,
         "Invalid String value to be cloned\n"},
        {"element", array({reference(4, 0), nullptr}), InvalidArgument,
         "Element of to be cloned array is NULL: 1h (1)\n", 2},
        {"no stream dictionary", newValue<StreamObj>(nullptr, 0U), InvalidArgument,
         "Failed to retrieve to be cloned stream's dictionary\n"},
        {"no stream data", newValue<StreamObj>(dictionary({}), 1'000'000U), InvalidArgument,
         "Failed to retrieve to be cloned stream's data\n"},
        {"in reference", reference(5, 0), InvalidArgument,
         "Failed to resolve to be cloned object reference: 99 (0)\n"
         "Failed to clone array element of to be cloned array: 1h (1)\n"
         "Failed to clone object: 5 (0)\n",
         2},
        {"in dictionary", dictionary({{"A", reference(4, 0)}, {"B", reference(98, 1)}}),
         InvalidArgument,
         "Failed to resolve to be cloned object reference: 98 (1)\n"
         "Failed to clone value of key in to be cloned dictionary: B\n",
         2},
    };
    const Ref<Document> source = foreignWith({{5, "[4 0 R 99 0 R]"}});
    for (const Row& row : rows) {
        Target target;
        RecordingLog log;
        EXPECT_FALSE(target.cloner.cloneValue(row.value, source)) << row.name;
        EXPECT_EQ(Host::Error::get(), row.code) << row.name;
        EXPECT_EQ(log.text(), row.log) << row.name;
        EXPECT_FALSE(target.cloner.addClonedObject(row.value, source)) << row.name;
        EXPECT_EQ(Host::Error::get(), row.value ? StepFailed : NullArgument) << row.name;
        EXPECT_EQ(target.state.objects.size(), 4U) << row.name;
        EXPECT_EQ(target.state.nextObjectId, 5 + row.numbers) << row.name;
    }
}

TEST(Cloner, FailsWhenObjectNumbersAreUsedUp) {
    Target target;
    target.state.nextObjectId = std::numeric_limits<std::uint32_t>::max() - 1;
    EXPECT_TRUE(target.cloner.addClonedObject(Testing::null(), target.document));
    EXPECT_FALSE(target.cloner.addClonedObject(Testing::null(), target.document));
    EXPECT_EQ(Host::Error::get(), StepFailed);
    EXPECT_EQ(target.state.objects.size(), 5U);
}

TEST(Cloner, RefusesStreamDataItCannotCopy) {
    using Call = FailingStripe::Call;
    using Fault = FailingStripe::Fault;
    const auto failing = [](Call call, Fault fault) {
        const auto stripe = newValue<FailingStripe>(stripeOf("abc"));
        stripe->failAt(call, 1, fault);
        return stripe;
    };
    struct Row {
        Ref<Interfaces::Stripe> data;
        std::uint32_t code;
        const char* log;
    };
    const Row rows[] = {
        {Adapters::Stripe::ElementSize::create(stripeOf("abc"), 1), InvalidArgument,
         "To be cloned raw stream as a different element size (1h (1)) than the current stream "
         "(4h (4))\n"},
        {failing(Call::Seek, Fault::Misplaced), InvalidArgument,
         "Failed to navigate in to be cloned stream's data\n"},
        {failing(Call::Read, Fault::Short), StepFailed,
         "Failed to read from to be cloned stream's data\n"},
        {newValue<SubStripe>(stripeOf("abc"), 0U, 0x1'0000'0000U, Host::Mon::create()), OutOfRange,
         "Stream size is too large: 100000000h (4294967296)\n"},
    };
    for (const Row& row : rows) {
        Target target;
        RecordingLog log;
        const Ref<Value> stream = newValue<StreamObj>(dictionary({}), row.data);
        EXPECT_FALSE(target.cloner.cloneValue(stream, target.document)) << row.log;
        EXPECT_EQ(Host::Error::get(), row.code) << row.log;
        EXPECT_EQ(log.text(), row.log);
    }
}

std::string refTo(std::size_t id) {
    return std::to_string(id) + " 0 R";
}

/// Objects from number 5 on that refer on and on.
std::string endless(std::size_t count, bool twice, bool cycle) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    for (std::size_t id = 5; id < 5 + count; ++id) {
        const std::string next = refTo(cycle && id + 1 == 5 + count ? 5 : id + 1);
        builder.object(static_cast<std::uint32_t>(id),
                       "[" + next + (twice ? " " + next : "") + "]");
    }
    if (!cycle) builder.object(static_cast<std::uint32_t>(5 + count), "(end)");
    return builder.bytes();
}

TEST(Cloner, EndsWhatWouldHaveNoEnd) {
    struct Row {
        const char* name;
        std::string bytes;
        std::uint32_t numbers; ///< used up on the way
    };
    const Row rows[] = {{"itself", endless(1, false, true), 0},
                        {"cycle", endless(3, true, true), 0},
                        {"chain", endless(3'000, false, false), 0},
                        {"doubling", endless(40, true, false), Cloner::addedLimit}};
    for (const Row& row : rows) {
        const Ref<Document> source = Testing::open(row.bytes);
        Target target;
        RecordingLog log;
        EXPECT_FALSE(target.cloner.addClonedObject(Testing::reference(5, 0), source)) << row.name;
        EXPECT_EQ(Host::Error::get(), StepFailed) << row.name;
        EXPECT_EQ(target.state.objects.size(), 4U) << row.name;
        EXPECT_EQ(target.state.nextObjectId, 5 + row.numbers) << row.name;
        EXPECT_TRUE(log.text().ends_with("Failed to clone object: 5 (0)\n")) << row.name;
    }
}

TEST(Cloner, GoesExactlyAsDeepAsTheLimit) {
    Target target;
    const RecordingLog log;
    EXPECT_TRUE(target.cloner.cloneValue(Testing::nested(512), target.document));
    EXPECT_FALSE(target.cloner.cloneValue(Testing::nested(513), target.document));
    // An array and a reference are two levels.
    const Ref<Document> fits = Testing::open(endless(255, false, false));
    const Ref<Document> deep = Testing::open(endless(256, false, false));
    EXPECT_TRUE(target.cloner.cloneValue(Testing::reference(5, 0), fits));
    EXPECT_FALSE(target.cloner.cloneValue(Testing::reference(5, 0), deep));
}

} // namespace
