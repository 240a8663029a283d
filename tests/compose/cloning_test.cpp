#include "compose/cloning.h"

#include "document/document_obj.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/sub_stripe.h"

#include <host/stripe_adapters.h>
#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Testing;

/// A document to copy into: objects 1 to 4, so that copies are numbered from 5 on.
struct Target {
    Ref<Document> document = open(DocumentBuilder::minimal().bytes());
    DocumentState& state = dynamic_cast<DocumentObj&>(*document).state();
    Cloner cloner{dynamic_cast<DocumentObj&>(*document)};
};

Ref<Document> foreignWith(std::initializer_list<std::pair<std::uint32_t, std::string>> objects) {
    DocumentBuilder builder = DocumentBuilder::minimal();
    for (const auto& [id, body] : objects)
        builder.object(id, body);
    return open(builder.bytes());
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
    const Ref<Value> own = reference(4, 0);
    EXPECT_EQ(target.cloner.cloneValue(own, target.document), own);
    const auto list = text("A");
    EXPECT_NE(castTo<Dictionary>(copy)->find(list), castTo<Dictionary>(value)->find(list));
    // Not through String::create, which would turn it into bytes.
    const Ref<Value> wide = makeOrThrow<StringObj>(text("\xC3\xA9"));
    EXPECT_EQ(castTo<String>(target.cloner.cloneValue(wide, source))->text()->utf8(), "\xC3\xA9");
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
    EXPECT_EQ(data(5)->write("a", 1) + data(5)->writeBytes(nullptr, 1), 0U);
    EXPECT_EQ(Host::Error::get(), NotSupported);
}

Ref<Value> failing(FailingStripe::Call call, FailingStripe::Fault fault) {
    const auto stripe = makeOrThrow<FailingStripe>(stripeOf("abc"));
    stripe->failAt(call, 1, fault);
    return makeOrThrow<StreamObj>(dictionary({}), stripe);
}

TEST(Cloner, LeavesTheTableAsItWasOnFailure) {
    const auto small = Adapters::Stripe::ElementSize::create(stripeOf("abc"), 1);
    const auto large =
        makeOrThrow<SubStripe>(stripeOf(""), 0U, 0x1'0000'0000U, Host::Mon::create());
    const struct {
        AnyValue value;
        std::uint32_t code;
        std::string log;
        std::uint32_t numbers = 0; ///< used up on the way
    } rows[] = {
        {nullptr, NullArgument, ""},
        {foreign(12), NotSupported, "Value type not supported for cloning: Ch (12)\n"},
        {foreign(1), InvalidArgument, "Failed to convert to be cloned name to Name\n"},
        {array({reference(4, 0), nullptr}), InvalidArgument,
         "Element of to be cloned array is NULL: 1h (1)\n", 1},
        {makeOrThrow<StreamObj>(dictionary({}), 1'000'000U), InvalidArgument,
         "Failed to retrieve to be cloned stream's data\n"},
        {makeOrThrow<StreamObj>(dictionary({}), small), InvalidArgument,
         "To be cloned raw stream as a different element size (1h (1)) than the current stream "
         "(4h (4))\n"},
        {makeOrThrow<StreamObj>(dictionary({}), large), OutOfRange,
         "Stream size is too large: 100000000h (4294967296)\n"},
        {failing(FailingStripe::Call::Seek, FailingStripe::Fault::Misplaced), InvalidArgument,
         "Failed to navigate in to be cloned stream's data\n"},
        {reference(5, 0), InvalidArgument,
         "Failed to resolve to be cloned object reference: 99 (0)\n"
         "Failed to clone array element of to be cloned array: 1h (1)\n"
         "Failed to clone object: 5 (0)\n",
         1},
        {dictionary({{"A", reference(4, 0)}, {"B", reference(98, 1)}}), InvalidArgument,
         "Failed to resolve to be cloned object reference: 98 (1)\n"
         "Failed to clone value of key in to be cloned dictionary: B\n",
         1},
        {failing(FailingStripe::Call::Read, FailingStripe::Fault::Short), StepFailed,
         "Failed to read from to be cloned stream's data\n"},
    };
    const Ref<Document> source = foreignWith({{5, "[4 0 R 99 0 R]"}});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.log);
        Target target;
        const RecordingLog log;
        EXPECT_FALSE(target.cloner.cloneValue(row.value, source));
        EXPECT_EQ(Host::Error::get(), row.code);
        EXPECT_EQ(log.text(), row.log);
        EXPECT_EQ(target.state.objects.size(), 4U);
        EXPECT_EQ(target.state.nextObjectId, 5 + row.numbers);
    }
}

/// `count` arrays from object 5 on, each with references to the next and the last to `last`. A
/// string follows.
Ref<Document> chain(std::uint32_t count, bool twice, std::uint32_t last) {
    DocumentBuilder builder = DocumentBuilder::minimal().object(5 + count, "(end)");
    for (std::uint32_t id = 5; id < 5 + count; ++id) {
        const std::string next = std::to_string(id + 1 < 5 + count ? id + 1 : last) + " 0 R ";
        builder.object(id, "[" + next + (twice ? next : "") + "]");
    }
    return open(builder.bytes());
}

TEST(Cloner, EndsWhatWouldHaveNoEnd) {
    const struct {
        const char* name;
        Ref<Document> source;
        std::uint32_t numbers; ///< used up on the way
    } rows[] = {{"itself", chain(1, false, 5), 0},
                {"chain", chain(3'000, false, 3'005), 0},
                {"doubling", chain(40, true, 45), Cloner::addedLimit}};
    for (const auto& row : rows) {
        Target target;
        const RecordingLog log;
        EXPECT_FALSE(target.cloner.addClonedObject(reference(5, 0), row.source)) << row.name;
        EXPECT_EQ(Host::Error::get(), StepFailed) << row.name;
        EXPECT_EQ(target.state.objects.size(), 4U) << row.name;
        EXPECT_EQ(target.state.nextObjectId, 5 + row.numbers) << row.name;
        EXPECT_TRUE(log.text().ends_with("Failed to clone object: 5 (0)\n")) << row.name;
    }
    Target target;
    const RecordingLog log;
    EXPECT_TRUE(target.cloner.cloneValue(nested(512), target.document));
    EXPECT_FALSE(target.cloner.cloneValue(nested(513), target.document));
    // An array and a reference are two levels.
    EXPECT_TRUE(target.cloner.cloneValue(reference(5, 0), chain(255, false, 260)));
    EXPECT_FALSE(target.cloner.cloneValue(reference(5, 0), chain(256, false, 261)));
}

} // namespace
