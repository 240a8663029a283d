#include "support/document_builder.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/object.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace Testing;
using namespace Libraries::Files::PDF;
using namespace Host::Literals;

template <auto accessor>
AnyValue inArray(const AnyValue& value) {
    return (array({value}).get()->*accessor)(0);
}
template <auto accessor>
AnyValue inDictionary(const AnyValue& value) {
    return (dictionary({{"K", value}}).get()->*accessor)("K"_str, true);
}
template <auto accessor>
AnyValue inObject(const AnyValue& value) {
    return (ObjectObj(1, 0, value).*accessor)();
}

TEST(TypedAccess, GivesItsKindAndNoOther) {
    const AnyValue string = String::create(text("s"));
    const AnyValue stream = newValue<StreamObj>(dictionary({}), std::uint64_t{9});
    const std::tuple<std::string, AnyValue, AnyValue (*)(const AnyValue&)> rows[] = {
        {"ObjectRef", reference(1, 0), inArray<&Array::getAsObjectRef>},
        {"Name", name("N"), inArray<&Array::getAsName>},
        {"String", string, inArray<&Array::getAsString>},
        {"ObjectRef", reference(1, 0), inDictionary<&Dictionary::findAsObjectRef>},
        {"Array", array({}), inDictionary<&Dictionary::findAsArray>},
        {"Dictionary", dictionary({}), inDictionary<&Dictionary::findAsDictionary>},
        {"Name", name("N"), inDictionary<&Dictionary::findAsName>},
        {"Number", number(1), inDictionary<&Dictionary::findAsNumber>},
        {"String", string, inDictionary<&Dictionary::findAsString>},
        {"Dictionary", dictionary({}), inObject<&Object::valueAsDictionary>},
        {"Dictionary", array({}), inObject<&Object::valueAsArray>}, // spelled so
        {"Stream", stream, inObject<&Object::valueAsStream>},
    };
    for (const auto& [kind, right, get] : rows) {
        const auto type = std::to_string(static_cast<std::uint32_t>(right->type()));
        const RecordingLog log;
        Host::Error::set(Host::NoError);
        EXPECT_EQ(get(right), right) << kind;
        EXPECT_FALSE(get(null()) || Host::Error::get() != UnexpectedKind) << kind;
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(get(foreign(static_cast<std::uint32_t>(right->type())))) << kind;
        EXPECT_EQ(Host::Error::get(), UnexpectedKind) << kind;
        EXPECT_EQ(log.text(),
                  (right == stream ? "Unexpected type of value; expected = 7h (7), got = 9h (9)\n"
                                   : "Expected value of type " + type + "h (" + type +
                                         ")\n, but got one of type 9h (9)\n") +
                      "Failed to cast value to " + kind + "\n");
        EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Error);
        EXPECT_EQ(log.entries()[0].filter, Host::SysLogFilter::id("PDF"));
    }
}

TEST(Array, LeavesTheCodeAloneBehindItsEnd) {
    const Ref<Array> values = array({number(1), nullptr, name("N")});
    EXPECT_EQ(textOf(values), "[1.0 nullN ]");
    EXPECT_FALSE(values->equal(values)) << "a null element equals nothing";
    const RecordingLog log;
    Host::Error::set(77);
    EXPECT_FALSE(values->get(3) || values->getAsName(1) || values->getAsString(18));
    EXPECT_EQ(Host::Error::get(), 77U);
    EXPECT_EQ(log.text(), "Index out of range in array: 1h (1)\n"
                          "Index out of range in array: 12h (18)\n");
    EXPECT_EQ(ObjectObj(12, 3, nullptr).valueType(), Value::Type::Invalid);
    EXPECT_EQ(Host::Error::get(), NoValue);
    EXPECT_FALSE(values->add(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    EXPECT_TRUE(values->add(foreign(3)) && values->size() == 4);
    EXPECT_FALSE(values->changed()) << "not even when an element is";
}

TEST(Dictionary, ReportsMissingKeysUnlessQuiet) {
    const std::tuple<Ref<Host::String>, std::uint32_t, const char*> rows[] = {
        {"Absent"_str, KeyNotFound, "Key not found in dictionary: Absent\n"},
        {nullptr, NullArgument, "Key not found in dictionary: \n"},
        {text(""), InvalidArgument, "Key not found in dictionary: \n"}};
    const auto dict = dictionary({{"K", null()}});
    for (const auto& [key, code, message] : rows) {
        const RecordingLog log;
        for (const bool quiet : {false, true}) {
            Host::Error::set(Host::NoError);
            EXPECT_FALSE(dict->findAsName(key, quiet)) << message;
            EXPECT_EQ(Host::Error::get(), code) << message;
        }
        EXPECT_EQ(log.text(), message) << "once";
        EXPECT_EQ(dict->set(key, nullptr), code == KeyNotFound) << message;
        EXPECT_EQ(Host::Error::get(), code) << message;
    }
}

TEST(Dictionary, KeepsTheLastOfEqualKeysInOrder) {
    std::uint32_t state = 1;
    for (const std::uint32_t size : {2U, 10U, 24U, 25U, 300U}) {
        std::map<std::string, std::uint32_t> last;
        DictionaryObj::Entries entries;
        const auto built = dictionary({});
        for (std::uint32_t index = 0; index < size; ++index) {
            state = state * 1664525U + 1013904223U;
            const std::uint32_t choice = (state >> 16) % (size * 2 / 3);
            const std::string key = (choice % 5 == 4 ? "\u4E2D" : "K") + std::to_string(choice);
            last[key] = index;
            entries.push_back({text(key), number(index)});
            built->set(text(key), number(index));
        }
        std::string expected = "<<";
        for (const auto& [key, index] : last)
            expected += " " + key + " -> " + std::to_string(index) + ".0";
        const auto dict = newValue<DictionaryObj>(std::move(entries));
        EXPECT_EQ(textOf(dict), expected + " >>") << size;
        EXPECT_EQ(textOf(built), expected + " >>") << size;
        EXPECT_FALSE(dict->changed());
        for (const auto& [key, index] : last)
            built->set(text(key), nullptr);
        EXPECT_EQ(textOf(built), "<< >>") << size;
    }
}

TEST(Dictionary, KnowsWhetherItChanged) {
    const auto inner = dictionary({});
    const auto listed = dictionary({});
    const auto outer = dictionary({{"A", array({listed})}, {"D", inner}});
    listed->set("X"_str, number(1));
    EXPECT_FALSE(outer->changed()) << "arrays do not report";
    inner->set("Absent"_str, nullptr);
    EXPECT_TRUE(outer->changed()) << "removing what is not there is a change";
}

TEST(Nesting, EndsAfter512Levels) {
    for (int repeat = 0; repeat < 2; ++repeat) { // a walk that failed leaves no trace
        EXPECT_TRUE(nested(512)->asText() && nested(512)->equal(nested(512)));
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(nested(513)->asText());
        EXPECT_EQ(Host::Error::get(), StepFailed);
        EXPECT_FALSE(nested(513)->equal(nested(513)));
    }
    AnyValue chain = foreign(3); // which reports a change
    for (int depth = 1; depth <= 513; ++depth) {
        chain = dictionary({{"K", chain}});
        EXPECT_EQ(chain->changed(), depth <= 512) << depth;
    }
    const auto endless = dictionary({});
    endless->set("A"_str, endless);
    endless->set("B"_str, endless);
    EXPECT_FALSE(endless->asText() || endless->equal(endless));
    endless->set("B"_str, nullptr);
    endless->set("A"_str, nullptr);
}

} // namespace
