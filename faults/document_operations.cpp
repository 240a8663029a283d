#include "import/modern_file.h"
#include "operations.h"

#include <pdf/errors.h>
#include <pdf/form.h>

#include <string>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

namespace Faults {

namespace {

void open(Subject& subject) {
    subject.document = nullptr;
    subject.document = Document::create(subject.source);
    require(subject.document != nullptr);
}

/// Direct parts of the page tree, null as an object, strings and names of all kinds, and a Length
/// behind a reference in an object stream, which is compressed.
std::string packedBytes() {
    const std::string held =
        "9 0 10 34 11 39 12 41 13 58 [10 0 R (a\\\\b) /A#42 1.05 (\\344)] null "
        "3 [<</Type/Page>>] <</Pages 4 0 R>>";
    const std::string data = Support::deflated(held);
    return Support::ModernFile()
        .object(1, "<</Pages <</Kids 12 0 R/Count 1>>/X 9 0 R>>")
        .object(6, "<</Length 11 0 R/Filter 7 0 R>>\nstream\nabc\nendstream")
        .object(7, "[/A]")
        .objectStream(8, {9, 10, 11, 12, 13},
                      "/First 28 /Filter /FlateDecode /Length " + std::to_string(data.size()), data)
        .bytes();
}

void openPacked(Subject& subject) {
    static const Ref<Host::MemoryStripe> source = Support::stripeOf(packedBytes());
    subject.document = nullptr;
    subject.document = Document::create(source, Structure::Any);
    require(subject.document != nullptr);
}

void fill(Subject& subject) {
    const Ref<Form> form = subject.document->form();
    const Ref<Field> field = form ? form->fieldByPath("group.name"_str) : nullptr;
    auto* text = dynamic_cast<Fields::Text*>(field.get());
    const Ref<String> value = String::create("new"_str);
    require(text != nullptr && value && text->setValue(value));
}

void setValue(Subject& subject) {
    SyntaxError error;
    const auto value = Value::parse("<< /A [ 1 0 R (a\\001) <FF> -.5 ] >>", &error);
    const auto same = Dictionary::create({{"A", Name::create("N")}, {"B", value}});
    const auto catalog = same ? subject.document->getCatalog() : nullptr;
    const auto entries = catalog ? catalog->valueAsDictionary() : nullptr;
    require(entries && entries->set("\xC3\xA9", same));
}

void reencode(Subject& subject, Compression target) {
    require(subject.document->setCompression(target));
}

void writeStream(Subject& subject, bool encoded) {
    const auto written = subject.document->writeStreamData(subject.stream, subject.target, encoded);
    require(written == 1);
}

} // namespace

std::vector<Operation> documentOperations() {
    return {{"open",
             open,
             {HeaderUnreadable, EndMarkerMissing, StartXrefMissing, TrailerMissing,
              TrailerUnreadable, XrefUnreadable, ObjectUnreadable},
             Does::Opens},
            {"open object streams", openPacked, {}, Does::Opens},
            {"decode",
             [](Subject& subject) {
                 subject.result = subject.document->readStreamData(subject.stream, true);
                 require(subject.result != nullptr);
             },
             {CodingFailed, CodingNotSetUp}},
            {"cache",
             [](Subject& subject) { require(subject.document->cacheStreamData()); },
             {StepFailed}},
            {"deflate",
             [](Subject& subject) { reencode(subject, Compression::FlateDecode); },
             {FilterNotUpdated, CodingFailed, StreamObjectInvalid}},
            {"inflate",
             [](Subject& subject) { reencode(subject, Compression::None); },
             {CodingFailed, StreamObjectInvalid}},
            {"fill", fill, {RootInvalid}},
            {"background",
             [](Subject& subject) { require(subject.document->addBackground(subject.foreign, 1)); },
             {StreamNotCopied, ForeignStreamUnread, StepFailed, PageTreeInvalid, PageInvalid,
              ForeignTreeInvalid, ForeignPageInvalid},
             Does::ChangesInPart}, // resources that were merged stay, and stand in the way
            {"write",
             [](Subject& subject) { require(subject.document->write(subject.target)); },
             {VersionNotWritten, ObjectNotWritten, TrailerNotWritten}},
            {"write a stream",
             [](Subject& subject) { writeStream(subject, false); },
             {CodingFailed, StreamObjectInvalid}},
            {"encode a stream",
             [](Subject& subject) { writeStream(subject, true); },
             {CodingFailed, StreamObjectInvalid}},
            {"parse and set a value", setValue, {RootInvalid}}};
}

} // namespace Faults
