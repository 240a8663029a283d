#include "support/results.h"

namespace {

using namespace Support;
using Tools::get;
using Tools::getOrAdd;

/// Dictionary 5 and array 9 lead to something of each sort.
Ref<Document> oddDocument() {
    return open(DocumentBuilder::minimal()
                    .object(5, "<< /Number 1 /Null null /Name 8 0 R /Gone 99 0 R /Old 7 1 R /List "
                               "9 0 R /Sub << /A 7 0 R >> >>")
                    .object(6, "0")
                    .object(7, "(text)")
                    .object(8, "/N")
                    .object(9, "[ 7 0 R 1 99 0 R null ]"));
}

Ref<Dictionary> entriesOf(const Ref<Document>& document) {
    return castTo<Dictionary>(valueOf(*document, 5));
}

/// The text of what is found, or what the failure tells.
template <class T, class From, class Key>
std::string look(const Ref<Document>& document, const From& from, const Key& key) {
    const auto found = resultOf([&] { return get<T>(document, from, key); });
    return found ? textOf(*found) : told(found);
}

TEST(Get, TellsWhatIsMissingFromWhatIsWrong) {
    const auto document = oddDocument();
    const auto from = entriesOf(document);
    const auto list = castTo<Array>(valueOf(*document, 9));
    using Look = std::string (*)(const Ref<Document>&, const Ref<Dictionary>&, const char* const&);
    const std::tuple<const char*, Look, std::string> rows[] = {
        {"Number", look<Number>, "1.0"},
        {"Number", look<Value>, "1.0"},
        {"Name", look<Name>, "N"},
        {"Absent", look<Value>, told(KeyNotFound, "Entry Absent is not there")},
        {"Null", look<Value>, told(KeyNotFound, "Entry Null is not there")},
        {"Number", look<Array>,
         told(UnexpectedKind, "Entry Number is a number instead of an array")},
        {"List", look<Dictionary>,
         told(UnexpectedKind, "Entry List is an array instead of a dictionary, by object 9 (0)",
              9)},
        {"Gone", look<Value>,
         told(ReferenceNotResolved, "Entry Gone leads nowhere, by object 99 (0)", 99)},
        {"Old", look<String>,
         told(ReferenceNotResolved, "Entry Old leads nowhere, by object 7 (1)", 7)},
    };
    for (const auto& [key, look, wanted] : rows)
        EXPECT_EQ(look(document, from, key), wanted) << key;

    const std::string elements[] = {
        "text", "1.0", told(ReferenceNotResolved, "Element 2 leads nowhere, by object 99 (0)", 99),
        told(KeyNotFound, "Element 3 is not there"),
        told(OutOfRange, "There is no element 4 in an array of 4")};
    for (std::uint64_t index = 0; index < std::size(elements); ++index)
        EXPECT_EQ(look<Value>(document, list, index), elements[index]) << index;

    expectRefusal(get<Name>(document, from->find("Gone")), ReferenceNotResolved, "The value leads");
    expectRefusal(get<Name>(document, Ref<Value>()), KeyNotFound, "The value is not there");
    expectRefusal(get<Name>(nullptr, from, "Name"), NullArgument);
    expectRefusal(get<Name>(document, Ref<Dictionary>(), "Name"), NullArgument);
    expectRefusal(get<Name>(document, Ref<Array>(), 0), NullArgument);
    const auto other = oddDocument();
    expectRefusal(get<Name>(other, from, "Name"), InvalidArgument, "another document");
    expectRefusal(get<Value>(other, list, 0), InvalidArgument, "another document");
    EXPECT_FALSE(document->changed());
}

TEST(GetOrAdd, AddsADictionaryOnlyWhereThereIsNone) {
    const std::tuple<const char*, const char*, std::uint32_t> rows[] = {
        {"Sub", "<< A -> 7 (0) >>", 0},
        {"Absent", "<< >>", 0},
        {"Null", "<< >>", 0},
        {"Number", "", UnexpectedKind},
        {"Gone", "", ReferenceNotResolved},
    };
    for (const auto& [key, wanted, code] : rows) {
        const auto document = oddDocument();
        const auto from = entriesOf(document);
        const std::string before = write(*document);
        const auto found = resultOf([&, key = key] { return getOrAdd(document, from, key); });
        const bool isAdded = found && write(*document) != before;
        EXPECT_EQ(isAdded, std::string_view(wanted) == "<< >>") << key;
        EXPECT_EQ(isAdded, textOf(from->find(key)) == "10 (0)") << key;
        if (code != 0) {
            expectRefusal(found, code, key);
            EXPECT_EQ(write(*document), before) << key;
        } else {
            EXPECT_EQ(textOf(*found), wanted) << key;
            EXPECT_EQ(*get<Dictionary>(document, from, key), *found) << key << ": shared";
        }
    }
    const auto document = oddDocument(), other = oddDocument();
    expectRefusal(getOrAdd(document, entriesOf(other), "Absent"), InvalidArgument);
    expectRefusal(getOrAdd(document, nullptr, "A"), NullArgument);
    expectRefusal(getOrAdd(document, dictionary({}), ""), InvalidArgument);
    EXPECT_EQ(write(*document), write(*other));
}

} // namespace
