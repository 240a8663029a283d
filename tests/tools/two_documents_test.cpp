#include "support/results.h"

#include <pdf/tools/forms.h>

namespace {

using namespace Support;
using Tools::FormEditor;
using Tools::Pages;
using Tools::Storing;

/// Text field 6 "t" and choice 7 "c"; the resources of page 3 and its box are objects.
Ref<Document> mixed() {
    return open(DocumentBuilder::minimal()
                    .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>")
                    .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox 9 0 R /Resources 8 0 R "
                               "/Contents 4 0 R >>")
                    .object(5, "<< /Fields [ 6 0 R 7 0 R ] >>")
                    .object(6, "<< /FT /Tx /T (t) /V (b) >>")
                    .object(7, "<< /FT /Ch /Ff 2097152 /T (c) /Opt [ (b) ] /V (b) >>")
                    .object(8, "<< /Font << >> >>")
                    .object(9, "[ 0 0 9 9 ]"));
}

/// A page's entries without a Parent, but one that is an object's value.
Ref<Dictionary> orphan(const Ref<Document>& document) {
    const auto entries = castTo<Dictionary>(*Tools::parseValue("<< /MediaBox [ 0 0 9 9 ] >>"));
    EXPECT_TRUE(document->addObject(entries));
    return entries;
}

const auto box = [](auto& document) { return castTo<Array>(valueOf(*document, 9)); };
const auto dict = [](auto& document) { return castTo<Dictionary>(valueOf(*document, 8)); };
const auto form = [](auto& document) { return FormEditor::of(document).value(); };
const auto pages = [](const Ref<Document>& document) { return Pages::of(document).value(); };

/// Entries of a stream that is encoded.
Ref<Dictionary> encoded(const Ref<Document>& document) {
    EXPECT_TRUE(dict(document)->set("Filter", name("DCTDecode")));
    return dict(document);
}

/// Uses a thing of document `of` in document `to`; gives what is told then.
const std::pair<const char*, std::string (*)(const Ref<Document>& to, const Ref<Document>& of)>
    uses[] = {
        {"kind", [](auto& to, auto& of) { return told(form(to).kind(of->form()->field(0))); }},
        {"flags", [](auto& to, auto& of) { return told(form(to).flags(of->form()->field(0))); }},
        {"options",
         [](auto& to, auto& of) { return told(form(to).options(of->form()->field(1))); }},
        {"values", [](auto& to, auto& of) { return told(form(to).values(of->form()->field(0))); }},
        {"add", [](auto& to, auto& of) { return told(pages(to).add("", box(of))); }},
        {"resources",
         [](auto& to, auto& of) {
             return told(
                 pages(to).add("", castTo<Array>(*Tools::parseValue("[ 0 0 9 9 ]")), dict(of)));
         }},
        {"insert", [](auto& to, auto& of) { return told(pages(to).insert(0, orphan(of))); }},
        {"get", [](auto& to, auto& of) { return told(Tools::get<Value>(to, dict(of), "Font")); }},
        {"element", [](auto& to, auto& of) { return told(Tools::get<Value>(to, box(of), 0)); }},
        {"getOrAdd", [](auto& to, auto& of) { return told(Tools::getOrAdd(to, dict(of), "A")); }},
        {"addObject", [](auto& to, auto& of) { return told(Tools::addObject(to, box(of))); }},
        {"addStream",
         [](auto& to, auto& of) {
             return told(Tools::addStream(to, "x", Storing::Plain, dict(of)));
         }},
        {"addEncodedStream",
         [](auto& to, auto& of) { return told(Tools::addEncodedStream(to, "x", encoded(of))); }},
        {"setStreamData",
         [](auto& to, auto& of) { return told(Tools::setStreamData(to, streamOf(*of, 4), "x")); }},
        {"decodedBytes",
         [](auto& to, auto& of) { return told(Tools::decodedBytes(to, streamOf(*of, 4))); }},
};

TEST(TwoDocuments, AreNotMixed) {
    for (const auto& [name, use] : uses) {
        const auto document = mixed(), other = mixed();
        const std::string before = write(*document);
        const std::string mixing = use(document, other);
        EXPECT_TRUE(mixing.starts_with(std::to_string(InvalidArgument))) << name << mixing;
        EXPECT_TRUE(mixing.ends_with("another document") || mixing.ends_with("document's object"));
        EXPECT_EQ(write(*document), before) << name;
        EXPECT_EQ(use(document, document), "") << name;
    }
}

TEST(TwoDocuments, AreKnownByTheValuesOfTheirObjects) {
    const auto document = mixed();
    Ref<Document> closed = mixed();
    const Ref<Value> left = valueOf(*closed, 9);
    const Ref<Object> object = closed->getObjects()[8];
    closed = nullptr;
    EXPECT_EQ(document->homeOf(*left), Home::Elsewhere);
    EXPECT_EQ(document->homeOf(*object), Home::Elsewhere);
    EXPECT_EQ(document->homeOf(*document->form()), Home::Here);
    EXPECT_EQ(document->homeOf(*mixed()->form()), Home::Elsewhere);

    const auto fresh = castTo<Dictionary>(*Tools::parseValue("<< /A << /B 3 0 R >> >>"));
    EXPECT_EQ(document->homeOf(*fresh), Home::Unknown);
    const Ref<Object> added = document->addObject(fresh);
    EXPECT_EQ(document->homeOf(*fresh), Home::Here);
    EXPECT_EQ(document->homeOf(*added), Home::Here);
    EXPECT_EQ(document->homeOf(*fresh->find("A")), Home::Unknown);
    EXPECT_TRUE(document->removeObject(added));
    EXPECT_EQ(document->homeOf(*fresh), Home::Unknown) << "as before it was added";
    EXPECT_EQ(document->homeOf(*added), Home::Elsewhere);
}

TEST(TwoDocuments, AreKnownByAPagesParent) {
    Pages own = pages(mixed());
    const auto page = castTo<Dictionary>(
        *Tools::parseValue("<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] >>"));
    expectRefusal(resultOf([&] { return own.insert(0, page); }), InvalidArgument,
                  "The page has a Parent, and is no object's of this document");
    EXPECT_TRUE(page->set("Parent", nullptr));
    EXPECT_TRUE(own.insert(0, page));
}

} // namespace
