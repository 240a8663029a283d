#include "support/testing.h"

#include <pdf/tools/background.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/filling.h>

#include <functional>

namespace {

using namespace Libraries::Files::PDF;
using namespace Support;

/// Text field 6 "t" and choice 7 "c"; the resources of page 3 and its box are objects.
std::string mixedFile() {
    return DocumentBuilder::minimal()
        .object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox 9 0 R /Resources 8 0 R /Contents 4 0 R "
                   ">>")
        .object(5, "<< /Fields [ 6 0 R 7 0 R ] >>")
        .object(6, "<< /FT /Tx /T (t) /V (b) >>")
        .object(7, "<< /FT /Ch /Ff 2097152 /T (c) /Opt [ (b) ] /V (b) >>")
        .object(8, "<< /Font << >> >>")
        .object(9, "[ 0 0 9 9 ]")
        .bytes();
}

/// One thing of each kind that some document has.
struct Things {
    explicit Things(Ref<Document> of) : document(std::move(of)) {
        form = document->form();
        const auto pages = Tools::allPages(*document);
        page = (*pages)[0];
        stream = streamOf(*document, 4);
        resources = castTo<Dictionary>(valueOf(*document, 8));
        box = castTo<Array>(valueOf(*document, 9));
    }

    Ref<Document> document;
    Ref<Form> form;
    Tools::Page page;
    Ref<Stream> stream;
    Ref<Dictionary> resources;
    Ref<Array> box;
};

/// A page's entries without a Parent, but one that is an object's value.
Ref<Dictionary> orphan(Document& document) {
    const auto entries = castTo<Dictionary>(Tools::parseValue("<< /MediaBox [ 0 0 9 9 ] >>"));
    EXPECT_TRUE(document.addObject(entries));
    return entries;
}

const struct {
    const char* name;
    std::function<bool(Document&, Things&)> call;
} uses[] = {
    {"fillField",
     [](Document& to, Things& of) {
         return Tools::fillField(to, *of.form, "t", "x") == Tools::Filled::Shown;
     }},
    {"chooseOptions",
     [](Document& to, Things& of) {
         return Tools::chooseOptions(to, *of.form, "c", std::vector<std::string_view>{"b"}) !=
                Tools::Filled::Failed;
     }},
    {"fieldOptions",
     [](Document& to, Things& of) { return !Tools::fieldOptions(to, *of.form->field(1)).empty(); }},
    {"fieldValues",
     [](Document& to, Things& of) { return !Tools::fieldValues(to, *of.form->field(0)).empty(); }},
    {"isolatePage",
     [](Document& to, Things& of) { return Tools::isolatePage(to, of.page, "X") != nullptr; }},
    {"addPage: box",
     [](Document& to, Things& of) { return Tools::addPage(to, "", of.box) != nullptr; }},
    {"addPage: resources",
     [](Document& to, Things& of) {
         const auto box = Array::create({number(0), number(0), number(9), number(9)});
         return Tools::addPage(to, "", box, of.resources) != nullptr;
     }},
    {"insertPage",
     [](Document& to, Things& of) {
         return Tools::insertPage(to, 0, orphan(*of.document)) != nullptr;
     }},
    {"addObject", [](Document& to, Things& of) { return Tools::addObject(to, of.box) != nullptr; }},
    {"makeStream: entries",
     [](Document& to, Things& of) {
         return Tools::makeStream(to, "x", false, of.resources) != nullptr;
     }},
    {"setStreamData",
     [](Document& to, Things& of) { return Tools::setStreamData(to, of.stream, "x"); }},
    {"decodedBytes",
     [](Document& to, Things& of) { return Tools::decodedBytes(to, of.stream) != nullptr; }},
};

TEST(TwoDocuments, AreNotMixed) {
    for (const auto& use : uses) {
        const auto document = open(mixedFile());
        Things other(open(mixedFile()));
        const std::string before = write(*document);
        const RecordingLog quiet;
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(use.call(*document, other)) << use.name;
        EXPECT_EQ(Host::Error::get(), InvalidArgument) << use.name;
        EXPECT_EQ(write(*document), before) << use.name;
        Things own(document);
        EXPECT_TRUE(use.call(*document, own)) << use.name;
    }
}

TEST(TwoDocuments, AreKnownByTheValuesOfTheirObjects) {
    const auto document = open(mixedFile());
    Ref<Document> closed = open(mixedFile());
    const Ref<Value> left = valueOf(*closed, 9);
    const Ref<Object> object = closed->getObjects()[8];
    closed = nullptr;
    EXPECT_EQ(document->homeOf(*left), Home::Elsewhere);
    EXPECT_EQ(document->homeOf(*object), Home::Elsewhere);

    const auto fresh = castTo<Dictionary>(Tools::parseValue("<< /A << /B 3 0 R >> >>"));
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
    const auto document = open(mixedFile());
    const auto page = castTo<Dictionary>(
        Tools::parseValue("<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] >>"));
    const RecordingLog quiet;
    expectFailure(Tools::insertPage(*document, 0, page), InvalidArgument);
    EXPECT_TRUE(page->set("Parent", nullptr));
    EXPECT_TRUE(Tools::insertPage(*document, 0, page));
}

} // namespace
