#include "support/testing.h"

#include <pdf/tools/result.h>

#include <functional>
#include <memory>

namespace {

using namespace Libraries::Files::PDF;
using Tools::Failure;
using Tools::Result;
using Tools::unexpect;
using Tools::Unexpected;

using Number = Result<int>;
using Nothing = Result<void>;
using Owner = Result<std::unique_ptr<int>>;
using Text = Result<std::string, int>;

// Passing a failure on needs no memory, which may be exhausted.
static_assert(std::is_nothrow_copy_constructible_v<Failure>);
static_assert(std::is_nothrow_copy_assignable_v<Failure>);
static_assert(std::is_nothrow_move_constructible_v<Result<Host::Ref<Document>>>);
// What is no success cannot become one unseen.
static_assert(!std::is_convertible_v<Failure, Number> && !std::is_convertible_v<Number, int>);
static_assert(!std::is_convertible_v<Number, bool> && !std::is_convertible_v<Number, Nothing>);
static_assert(!std::is_constructible_v<Result<bool>, Nothing>);
static_assert(!std::is_copy_constructible_v<Owner> && std::is_move_constructible_v<Owner>);
static_assert(!std::is_convertible_v<Result<Host::Ref<Value>>, Result<Host::Ref<Name>>>);
// What is taken out of a result that goes stays, so that a loop over it loops over what is there.
static_assert(std::is_same_v<decltype(Number().value()), int>);
static_assert(std::is_same_v<decltype(*Number()), int>);

const Failure failure{KeyNotFound, "Entry A is not there", 5};
const Number good = 3;
const Number bad = Unexpected(failure);

Number half(int number) {
    if (number % 2 == 0) return number / 2;
    return Number(unexpect, OutOfRange, "odd");
}

TEST(Result, PassesOnWhatItHolds) {
    const auto twice = [](int number) { return 2 * number; };
    const auto code = [](const Failure& error) { return Number(int(error.code())); };
    const auto later = [](const Failure& error) { return Failure(OutOfRange, error.text()); };
    const Number odd(unexpect, OutOfRange, "odd");
    const struct {
        const char* name;
        std::function<Number(const Number&)> step;
        Number ofGood, ofBad;
    } rows[] = {
        {"and_then", [](const Number& given) { return given.and_then(half); }, odd, bad},
        {"transform", [&](const Number& given) { return given.transform(twice); }, 6, bad},
        {"transform, and_then", [&](auto& given) { return given.transform(twice).and_then(half); },
         3, bad},
        {"or_else", [&](const Number& given) { return given.or_else(code); }, 3, int(KeyNotFound)},
        {"transform_error", [&](const Number& given) { return given.transform_error(later); }, 3,
         Number(unexpect, OutOfRange, "Entry A is not there")},
        {"through void",
         [](const Number& given) {
             return given.transform([](int) {}).and_then([] { return Number(8); });
         },
         8, bad},
        {"void to a value",
         [](const Number& given) {
             return given.transform([](int) {}).transform([] { return 9; });
         },
         9, bad},
        {"void mended",
         [](const Number& given) {
             const Nothing none = given.transform([](int) {});
             return none.or_else([](const Failure&) { return Nothing(); }).transform([] {
                 return 1;
             });
         },
         1, 1},
        {"error of void",
         [&](const Number& given) {
             const Nothing none = given.transform([](int) {});
             return none.transform_error(later).transform([] { return 1; });
         },
         1, Number(unexpect, OutOfRange, "Entry A is not there")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.step(good), row.ofGood) << row.name;
        EXPECT_EQ(row.step(bad), row.ofBad) << row.name;
    }
}

TEST(Result, MovesWhatCannotBeCopied) {
    const auto owner = [](int number) { return Owner(std::make_unique<int>(number)); };
    const auto next = [&](std::unique_ptr<int> held) { return owner(*held + 1); };
    const auto mended = [&](const Failure&) { return owner(7); };
    const auto same = [](Failure error) { return error; };
    EXPECT_EQ(*owner(1).and_then(next).value(), 2);
    EXPECT_EQ(owner(1).transform([](std::unique_ptr<int> held) { return *held; }), 1);
    EXPECT_EQ(*owner(1).or_else(mended).transform_error(same).value(), 1);
    EXPECT_EQ(**Owner(Unexpected(failure)).or_else(mended), 7);
    EXPECT_EQ(*owner(1).value_or(nullptr), 1);
    EXPECT_EQ(Owner(Unexpected(failure)).value_or(nullptr), nullptr);
    Owner held = owner(4), other = Unexpected(failure);
    held.swap(other);
    EXPECT_TRUE(!held && **other == 4);
    EXPECT_EQ(held.error(), failure);
    EXPECT_TRUE(held.emplace() == nullptr && held);
    const std::unique_ptr<int> taken = *std::move(other);
    EXPECT_EQ(*taken, 4);
}

TEST(Result, ConvertsValuesAndErrors) {
    const Text text = "from a literal";
    EXPECT_EQ(text->size(), 14U);
    EXPECT_EQ(good.transform(std::negate<>()), -3);
    EXPECT_EQ(text.transform(&std::string::size), 14U);
    EXPECT_EQ(Text(std::in_place, 3, 'x'), "xxx");
    EXPECT_EQ(Text(), "");
    EXPECT_EQ((Result<long, Failure>(good)), 3);
    EXPECT_EQ((Result<std::string, long>(Text(Unexpected(5)))), Unexpected(5L));
    EXPECT_EQ((Result<std::string, int>(Result<const char*, int>("x"))), "x");
    const Result<Host::Ref<Name>> name = Name::create("N");
    const Result<Host::Ref<Value>> value = name;
    EXPECT_EQ(Support::textOf(*value), "N");
    EXPECT_EQ(bad.error_or(Failure(OutOfRange)), failure);
    EXPECT_EQ(good.error_or(Failure(OutOfRange)).code(), OutOfRange);
    EXPECT_EQ(bad.value_or(8), 8);
    EXPECT_FALSE(Result<bool>(false).value()) << "a value that is false is one";
    EXPECT_TRUE(Result<bool>(false).has_value());
}

TEST(Result, ComparesAllThatIsTold) {
    EXPECT_TRUE(good == 3 && good == Number(3) && good != Number(4) && good != bad);
    EXPECT_TRUE(bad != 3 && bad == Unexpected(failure) && good != Unexpected(failure));
    EXPECT_TRUE(Nothing() == Nothing() && Nothing() != Nothing(Unexpected(failure)));
    for (const Failure& other : {Failure(KeyNotFound, "Entry A is not there", 6),
                                 Failure(KeyNotFound, "Entry B is not there", 5),
                                 Failure(OutOfRange, "Entry A is not there", 5)})
        EXPECT_TRUE(bad != Unexpected(other));
}

TEST(Result, ThrowsTheErrorWhereThereIsNoValue) {
    const auto caught = [](auto access) -> std::string {
        try {
            access();
        } catch (const Tools::BadResultAccess<Failure>& error) {
            EXPECT_EQ(error.error(), failure);
            const Tools::BadResultAccess<void>& any = error;
            return any.what();
        } catch (const Tools::BadResultAccess<void>& error) {
            return error.what();
        }
        return "nothing";
    };
    EXPECT_EQ(caught([] { return good.value(); }), "nothing");
    EXPECT_EQ(caught([] { return bad.value(); }), "Entry A is not there");
    EXPECT_EQ(caught([] { Nothing(Unexpected(failure)).value(); }), "Entry A is not there");
    EXPECT_EQ(caught([] { return Text(Unexpected(5)).value(); }), "a result holds no value");
}

TEST(Failure, AlwaysHasAText) {
    EXPECT_STREQ(Failure(KeyNotFound).text(), errorText(KeyNotFound));
    EXPECT_STREQ(Failure(4711).text(), errorText(4711));
    Failure copy(OutOfRange);
    Host::Error::set(77);
    {
        const Failure longer(KeyNotFound, std::string(1000, 'x'), 3);
        copy = longer;
    }
    EXPECT_EQ(copy.text(), std::string(1000, 'x'));
    EXPECT_EQ(copy.object(), 3U);
    EXPECT_EQ(Host::Error::get(), 77U);
    Host::Error::set(Host::NoError);
}

} // namespace
