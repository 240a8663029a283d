#include "compose/cloning.h"

#include "document/document_obj.h"
#include "support/testing.h"
#include "values/sub_stripe.h"

namespace {

using namespace Support;

/// A document to copy into: objects 1 to 4, so that copies are numbered from 5 on.
struct Target {
    Ref<Document> document = open(DocumentBuilder::minimal());
    DocumentState& state = dynamic_cast<DocumentObj&>(*document).state();
    Cloner cloner{dynamic_cast<DocumentObj&>(*document)};
};

Ref<Document>
foreignWith(std::initializer_list<std::pair<std::uint32_t, std::string_view>> bodies) {
    return open(DocumentBuilder::minimal().objects(bodies));
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
    const auto sized = [](std::uint64_t size) {
        const auto view = makeOrThrow<SubStripe>(stripeOf(""), 0U, size, Host::Mon::create());
        return makeOrThrow<StreamObj>(dictionary({}), view);
    };
    const struct {
        AnyValue value;
        std::uint32_t code;
        std::string log;
        std::uint32_t numbers = 0; ///< used up on the way
    } rows[] = {
        {nullptr, NullArgument, ""},
        {foreign(12), NotSupported, "Value type not supported for cloning: Ch (12)\n"},
        {array({foreign(1)}), StepFailed,
         "Failed to convert to be cloned name to Name\n"
         "Failed to clone array element of to be cloned array: 0h (0)\n"},
        {array({reference(4, 0), nullptr}), InvalidArgument,
         "Element of to be cloned array is NULL: 1h (1)\n", 1},
        {makeOrThrow<StreamObj>(dictionary({}), 1'000'000U), InvalidArgument,
         "Failed to retrieve to be cloned stream's data\n"},
        {makeOrThrow<StreamObj>(dictionary({}), small), InvalidArgument,
         "To be cloned raw stream as a different element size (1h (1)) than the current stream "
         "(4h (4))\n"},
        {sized(1ULL << 32), OutOfRange, "Stream size is too large: 100000000h (4294967296)\n"},
        {sized(UINT32_MAX), StepFailed,
         "Read from base 0h (0) of requested FFFFFFFFh (4294967295)\n"
         "Failed to read from to be cloned stream's data\n"},
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
        EXPECT_EQ(outcomeOf([&] { return bool(target.cloner.cloneValue(row.value, source)); }),
                  failure(row.code, row.log));
        EXPECT_EQ(target.state.objects.size(), 4U);
        EXPECT_EQ(target.state.nextObjectId, 5 + row.numbers);
    }
}

TEST(Cloner, CopiesDataOfAnySize) {
    for (const std::string data : {"", "1", "22"}) {
        Target target;
        const Ref<Value> stream = makeOrThrow<StreamObj>(dictionary({}), stripeOf(data));
        const Ref<Value> copy = target.cloner.cloneValue(stream, foreignWith({}));
        EXPECT_EQ(contentsOf(dynamic_cast<StreamObj&>(*copy).strmData()), data);
    }
}

TEST(Cloner, EndsAtItsBudget) {
    Target target;
    const Ref<Document> source = foreignWith({});
    const auto clone = [&] { return bool(target.cloner.cloneValue(number(1), source)); };
    const auto add = [&] { return bool(target.cloner.addClonedObject(number(1), source)); };
    target.cloner.budget(CopyBudget({1, 1}, 1)); // 64 times what is there, at 8 bytes a value
    for (int value = 0; value < 8; ++value)
        EXPECT_EQ(outcomeOf(clone), "") << value;
    EXPECT_EQ(outcomeOf(clone),
              failure(StepFailed, "More is to be copied than a sound document needs\n"));
    target.cloner.budget(CopyBudget({1, 1'000}, 1));
    for (int object = 0; object < 64; ++object)
        EXPECT_EQ(outcomeOf(add), "") << object;
    EXPECT_EQ(outcomeOf(add),
              failure(StepFailed, "More objects are to be copied than a sound document needs\n"));
}

/// `count` arrays from object 5 on, each with references to the next and the last to `last`. A
/// string follows.
Ref<Document> chain(std::uint32_t count, bool twice, std::uint32_t last) {
    DocumentBuilder builder = DocumentBuilder::minimal().object(5 + count, "(end)");
    for (std::uint32_t id = 5; id < 5 + count; ++id) {
        const std::string next = std::to_string(id + 1 < 5 + count ? id + 1 : last) + " 0 R ";
        builder.object(id, "[" + next + (twice ? next : "") + "]");
    }
    return open(builder);
}

TEST(Cloner, EndsWhatWouldHaveNoEnd) {
    const std::tuple<const char*, Ref<Document>, std::uint32_t> rows[] = {
        {"itself", chain(1, false, 5), 0},
        {"chain", chain(3'000, false, 3'005), 0},
        {"doubling", chain(40, true, 45), Cloner::addedLimit}};
    for (const auto& [name, source, numbers] : rows) {
        Target target;
        const RecordingLog log;
        EXPECT_FALSE(target.cloner.addClonedObject(reference(5, 0), source)) << name;
        EXPECT_EQ(Host::Error::get(), StepFailed) << name;
        EXPECT_EQ(target.state.objects.size(), 4U) << name;
        EXPECT_EQ(target.state.nextObjectId, 5 + numbers) << name;
        EXPECT_TRUE(log.text().ends_with("Failed to clone object: 5 (0)\n")) << name;
    }
    Target target;
    const std::uint32_t first = target.state.nextObjectId;
    for (const std::uint32_t next : {0U, UINT32_MAX, UINT32_MAX - 1, UINT32_MAX}) {
        if (next != UINT32_MAX) target.state.nextObjectId = next;
        const auto added = target.cloner.addClonedObject(number(1), target.document);
        EXPECT_EQ(textOf(added), next == UINT32_MAX - 1 ? "4294967294 (0)" : "(null)") << next;
    }
    target.state.nextObjectId = first;
    const RecordingLog log;
    EXPECT_TRUE(target.cloner.cloneValue(nested(512), target.document));
    EXPECT_FALSE(target.cloner.cloneValue(nested(513), target.document));
    // An array and a reference are two levels.
    EXPECT_TRUE(target.cloner.cloneValue(reference(5, 0), chain(255, false, 260)));
    EXPECT_FALSE(target.cloner.cloneValue(reference(5, 0), chain(256, false, 261)));
}

} // namespace
