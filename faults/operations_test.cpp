// Every operation with every one of its allocations failing, and every call of its stripes.

#include "failing_heap.h"
#include "import/modern_file.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"

#include <host/log.h>
#include <host/memory_stripe.h>
#include <host/stream.h>
#include <pdf/errors.h>
#include <pdf/form.h>
#include <pdf/tools/background.h>
#include <pdf/tools/files.h>
#include <pdf/tools/filling.h>
#include <pdf/tools/pages.h>
#include <pdf/tools/streams.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <set>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

namespace {

using Support::FailingHeap;
using Support::FailingStripe;

class Nowhere final : public Host::LogPrinter {
    void print(std::uint32_t, Host::LogLevel, std::string_view) noexcept override {}
};

/// The pages stand in the root of their tree or, `nested`, one of them twice below a node.
std::string sampleBytes(std::string_view content, bool nested = false) {
    Support::DocumentBuilder builder;
    builder.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 8 0 R >>")
        .object(2, "<< /Type /Pages /Kids [ 3 0 R 4 0 R ] /Count 2 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << /Font << /F1 7 0 R "
                   ">> /ProcSet [ /PDF /Text ] >> /Annots [ 10 0 R 11 0 R 8 0 R ] >>")
        .object(4, "<< /Type /Page /Parent 2 0 R /Contents [ 5 0 R 6 0 R ] >>")
        .stream(5, "/Filter /FlateDecode ", Support::deflated(content))
        .stream(6, "", std::string(70000, 'q'))
        .object(7, "<< /Type /Font /BaseFont /Helvetica /W [ 1 -2.5 true null ] /Id <00FE> >>")
        .object(8, "<< /Fields [ 9 0 R ] /DA (/F1 0 Tf) >>")
        .object(9, "<< /T (group) /Kids [ 10 0 R 11 0 R ] >>")
        .object(10, "<< /FT /Tx /T (name) /V (old) /MaxLen 9 /Parent 9 0 R /AP << /N 13 0 R >> "
                    "/Subtype /Widget /Rect "
                    "[ 0 0 50 20 ] /MK << /BG [ 1 ] >> >>")
        .object(11, "<< /FT /Btn /T (check) /V /Off /Parent 9 0 R /Subtype /Widget /Rect [ 60 0 70 "
                    "10 ] >>")
        // A second stream of each kind, so that there is something to undo.
        .stream(12, "/Filter /FlateDecode ", Support::deflated("q Q q Q"))
        .stream(13, "/BBox [ 0 0 9 9 ] ", "n");
    if (nested) {
        builder.object(2, "<< /Type /Pages /Rotate 90 /Kids [ 3 0 R 14 0 R 4 0 R ] >>")
            .object(14, "<< /MediaBox [ 0 0 15 0 R 9 ] /Resources << /A 1 >> /Kids 16 0 R >>")
            .object(15, "99")
            .object(16, "[ 4 0 R 17 0 R ]")
            .object(17, "<< /Contents 18 0 R /CropBox [ 1 1 8 8 ] >>")
            .object(18, "[ 5 0 R 6 0 R ]");
    }
    return builder.bytes();
}

/// A document under test and what an operation made of it.
struct Subject {
    explicit Subject(bool nested)
        : source(Support::stripeOf(sampleBytes("0 0 99 99 re f", nested))) {}

    Ref<Interfaces::Stripe> source;
    Ref<FailingStripe> failing = Host::make<FailingStripe>(source);
    Ref<Document> document;
    Ref<Document> foreign;
    Ref<Stream> stream;
    Ref<Interfaces::Stripe> result = Host::MemoryStripe::create();
    Ref<FailingStripe> failingTarget = Host::make<FailingStripe>(result);
    Ref<Interfaces::Stripe> target = failingTarget;

    void open() {
        document = Document::create(source);
        foreign = Support::open(sampleBytes("q Q"));
        stream = Support::streamOf(*document, 5);
    }
};

bool opened(Subject& subject) {
    subject.document = nullptr;
    subject.document = Document::create(subject.source);
    return subject.document != nullptr;
}

bool openedAny(Subject& subject) {
    subject.document = nullptr;
    subject.document = Document::create(subject.source, Structure::Any);
    return subject.document != nullptr;
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

const Ref<Host::MemoryStripe> packedSource = Support::stripeOf(packedBytes());

bool openedPacked(Subject& subject) {
    subject.document = nullptr;
    subject.document = Document::create(packedSource, Structure::Any);
    return subject.document != nullptr;
}

bool filled(Subject& subject) {
    const Ref<Form> form = subject.document->form();
    const Ref<Field> field = form ? form->fieldByPath("group.name"_str) : nullptr;
    auto* text = dynamic_cast<Fields::Text*>(field.get());
    const Ref<String> value = String::create("new"_str);
    return text != nullptr && value && text->setValue(value);
}

bool filledIn(Subject& subject, const char* path, const char* text) {
    const Ref<Form> form = Tools::openForm(*subject.document);
    return form && Tools::fillField(*subject.document, *form, path, text) != Tools::Filled::Failed;
}

/// Codes of laying a letterhead: of its own steps, and of the operation that it uses.
const std::set<std::uint32_t> layingCodes = {
    SourceNotRead,      OutOfMemory,        RootInvalid,         CatalogInvalid,
    PageTreeInvalid,    PageInvalid,        CodingFailed,        StreamNotCopied,
    ForeignTreeInvalid, ForeignPageInvalid, ForeignStreamUnread, StepFailed};

/// Page by page, so that pages of one stream and of several are copied. Made beforehand: the ranges
/// take memory.
const Tools::LetterheadOptions beneath = {.mode = Tools::LetterheadPages::PageByPage,
                                          .ranges = {{1, 3}}};
const Tools::LetterheadOptions above = {.mode = Tools::LetterheadPages::PageByPage, .above = true};

bool laid(Subject& subject, const Tools::LetterheadOptions& options) {
    return Tools::letterhead(*subject.document, subject.foreign, options);
}

struct Operation {
    const char* name;
    bool (*run)(Subject&);
    std::set<std::uint32_t> codes; ///< that a failure may have
    /// A failure leaves what is written as it was. Else it leaves the pages' contents: resources
    /// that were merged stay, and stand in the way of a second attempt.
    bool allOrNothing = true;
    bool nested = false; ///< the document's page tree is
};

const Operation operations[] = {
    {"open",
     opened,
     {HeaderUnreadable, EndMarkerMissing, StartXrefMissing, TrailerMissing, TrailerUnreadable,
      XrefUnreadable, ObjectUnreadable, OutOfMemory}},
    {"open any structure", openedAny, {NotPdf, FileDamaged, SourceNotRead, OutOfMemory}},
    {"open object streams", openedPacked, {OutOfMemory}},
    {"decode",
     [](Subject& subject) {
         subject.result = subject.document->readStreamData(subject.stream, true);
         return subject.result != nullptr;
     },
     {CodingFailed, CodingNotSetUp, OutOfMemory}},
    {"cache",
     [](Subject& subject) { return subject.document->cacheStreamData(); },
     {StepFailed, OutOfMemory}},
    {"deflate",
     [](Subject& subject) { return subject.document->setCompression(Compression::FlateDecode); },
     {FilterNotUpdated, CodingFailed, StreamObjectInvalid, OutOfMemory}},
    {"inflate",
     [](Subject& subject) { return subject.document->setCompression(Compression::None); },
     {CodingFailed, StreamObjectInvalid, OutOfMemory}},
    {"compress streams",
     [](Subject& subject) { return Tools::compressStreams(*subject.document); },
     {SourceNotRead, OutOfMemory}},
    {"expand streams",
     [](Subject& subject) { return Tools::expandStreams(*subject.document); },
     {SourceNotRead, OutOfMemory}},
    {"fill", filled, {RootInvalid, OutOfMemory}},
    {"fill in a text",
     [](Subject& subject) { return filledIn(subject, "group.name", "caf\xC3\xA9"); },
     {RootInvalid, OutOfMemory}},
    {"fill in what no font shows",
     [](Subject& subject) { return filledIn(subject, "group.name", "\xCE\xA9"); },
     {RootInvalid, OutOfMemory}},
    {"fill in a state",
     [](Subject& subject) { return filledIn(subject, "group.check", "On"); },
     {RootInvalid, OutOfMemory}},
    {"flatten the form",
     [](Subject& subject) { return Tools::flattenForm(*subject.document); },
     {RootInvalid, CatalogInvalid, PageTreeInvalid, SourceNotRead, OutOfMemory}},
    {"background",
     [](Subject& subject) { return subject.document->addBackground(subject.foreign, 1); },
     {StreamNotCopied, ForeignStreamUnread, StepFailed, PageTreeInvalid, PageInvalid,
      ForeignTreeInvalid, ForeignPageInvalid, OutOfMemory},
     false},
    {"write",
     [](Subject& subject) { return subject.document->write(subject.target); },
     {VersionNotWritten, ObjectNotWritten, TrailerNotWritten, OutOfMemory}},
    {"save",
     [](Subject& subject) {
         const char* const path = "files-fault.pdf"; // in the folder that tests run in
         const bool saved = Tools::save(*subject.document, path) == Tools::Saved::Done;
         std::remove(path);
         return saved;
     },
     {VersionNotWritten, ObjectNotWritten, TrailerNotWritten, Host::FileNotOpened,
      Host::FileNotWritten, ResultUnsound, OutOfMemory}},
    {"write a stream",
     [](Subject& subject) {
         return subject.document->writeStreamData(subject.stream, subject.target, false) == 1;
     },
     {CodingFailed, StreamObjectInvalid, OutOfMemory}},
    {"encode a stream",
     [](Subject& subject) {
         return subject.document->writeStreamData(subject.stream, subject.target, true) == 1;
     },
     {CodingFailed, StreamObjectInvalid, OutOfMemory}},
    {"parse and set a value",
     [](Subject& subject) {
         SyntaxError error;
         const auto value = Tools::parseValue("<< /A [ 1 0 R (a\\001) <FF> -.5 ] >>", &error);
         const auto same = Dictionary::create({{"A", Name::create("N")}, {"B", value}});
         const auto catalog = same ? subject.document->getCatalog() : nullptr;
         const auto entries = catalog ? catalog->valueAsDictionary() : nullptr;
         return entries && entries->set("\xC3\xA9", same);
     },
     {OutOfMemory, RootInvalid}},
    {"add an object",
     [](Subject& subject) {
         const auto ref = Tools::addObject(*subject.document, String::create("caf\xC3\xA9"));
         return ref != nullptr;
     },
     {OutOfMemory, NullArgument}},
    {"remove an object",
     [](Subject& subject) {
         const auto ref = ObjectRef::create(8);
         return ref && Tools::removeObject(*subject.document, ref);
     },
     {OutOfMemory}},
    {"make a stream",
     [](Subject& subject) {
         return Tools::makeStream(*subject.document, "q Q", true) &&
                Tools::makeStream(*subject.document, "q Q", false);
     },
     {OutOfMemory},
     false},
    {"set a stream's data",
     [](Subject& subject) {
         return Tools::setStreamData(*subject.document, subject.stream, "0 0 1 1 re f");
     },
     {OutOfMemory}},
    {"decoded bytes",
     [](Subject& subject) {
         subject.result = Tools::decodedBytes(*subject.document, subject.stream);
         return subject.result != nullptr;
     },
     {OutOfMemory, SourceNotRead}},
    {"all pages",
     [](Subject& subject) {
         const auto pages = Tools::allPages(*subject.document);
         return pages && pages->size() == 4;
     },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid},
     true,
     true},
    {"flatten",
     [](Subject& subject) { return Tools::flattenPages(*subject.document); },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid},
     true,
     true},
    {"add a page",
     [](Subject& subject) {
         const Ref<Array> box = Tools::as<Array>(Tools::parseValue("[ 0 0 9 9 ]"));
         return box && Tools::addPage(*subject.document, "q Q", box);
     },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid},
     true,
     true},
    {"insert a page",
     [](Subject& subject) {
         const Ref<Value> page = Tools::parseValue("<< /MediaBox [ 0 0 9 9 ] >>");
         return page && Tools::insertPage(*subject.document, 1, page);
     },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid},
     true,
     true},
    {"remove a page",
     [](Subject& subject) { return Tools::removePage(*subject.document, 1) != nullptr; },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid},
     true,
     true},
    {"isolate a page",
     [](Subject& subject) {
         const auto pages = Tools::allPages(*subject.document);
         return pages && Tools::isolatePage(*subject.document, (*pages)[2], "X") &&
                Tools::isolatePage(*subject.document, (*pages)[0], "X");
     },
     {OutOfMemory, RootInvalid, CatalogInvalid, PageTreeInvalid, SourceNotRead},
     false,
     true},
    {"letterhead", [](Subject& subject) { return laid(subject, beneath); }, layingCodes, true,
     true},
    {"stamp", [](Subject& subject) { return laid(subject, above); }, layingCodes, true, true}};

std::string contentsOfPages(const Document& document) {
    std::string all;
    for (const auto& page : document.getPages())
        all += Support::textOf(page->valueAsDictionary()->find("Contents"_str)) + '\n';
    return all;
}

/// What the operation is expected to lead to.
struct Expected {
    std::string contents; ///< of the pages, before
    std::string before;
    std::string after;
    std::string result;
    std::string foreign; ///< in any case
};

Expected expectedOf(const Operation& operation) {
    Subject before(operation.nested);
    before.open();
    Subject after(operation.nested);
    after.open();
    EXPECT_TRUE(operation.run(after));
    return {contentsOfPages(*before.document), Support::write(*before.document),
            Support::write(*after.document), Support::contentsOf(after.result),
            Support::write(*before.foreign)};
}

void expectUsable(const Operation& operation, const Expected& expected, Subject& subject,
                  bool done) {
    if (!subject.document) {
        EXPECT_TRUE(operation.run == opened || operation.run == openedAny ||
                    operation.run == openedPacked);
        EXPECT_FALSE(done);
    } else if (done || operation.allOrNothing) {
        EXPECT_EQ(Support::write(*subject.document), done ? expected.after : expected.before);
    } else {
        EXPECT_EQ(contentsOfPages(*subject.document), expected.contents);
        EXPECT_TRUE(Support::open(Support::write(*subject.document)));
    }
    EXPECT_EQ(Support::write(*subject.foreign), expected.foreign);
    if (done || !operation.allOrNothing) return;
    EXPECT_TRUE(operation.run(subject)) << "once there is memory again";
    EXPECT_EQ(Support::write(*subject.document), expected.after);
}

/// One run with a fault; false when the operation is over before it. `stop` says which it was.
template <class Arm, class Stop>
bool survives(const Operation& operation, const Expected& expected, Subject& subject, Arm arm,
              Stop stop) {
    subject.open();
    Host::Error::set(Host::NoError);
    arm();
    const bool done = operation.run(subject);
    const bool faulty = stop();
    const std::uint32_t code = Host::Error::get();
    EXPECT_TRUE(done || operation.codes.contains(code))
        << "a failure has one of its codes: " << code;
    EXPECT_TRUE(done || faulty) << "without a fault it succeeds";
    if (done) {
        EXPECT_EQ(Support::contentsOf(subject.result), expected.result);
    }
    subject.result = subject.target = Host::MemoryStripe::create();
    expectUsable(operation, expected, subject, done);
    return faulty;
}

bool survivesWithoutMemory(const Operation& operation, const Expected& expected,
                           std::uint64_t number, FailingHeap::Fault fault) {
    const std::int64_t live = FailingHeap::live();
    const bool faulty = [&] {
        Subject subject(operation.nested);
        return survives(
            operation, expected, subject, [&] { FailingHeap::failAt(number, fault); },
            FailingHeap::stop);
    }();
    EXPECT_EQ(FailingHeap::live(), live) << "nothing leaks";
    return faulty;
}

struct StripeFault {
    bool ofSource;
    FailingStripe::Call call;
    FailingStripe::Fault fault;
};

bool survivesWithoutStripe(const Operation& operation, const Expected& expected,
                           std::uint64_t number, const StripeFault& fault) {
    Subject subject(operation.nested);
    FailingStripe& stripe = fault.ofSource ? *subject.failing : *subject.failingTarget;
    if (fault.ofSource) subject.source = subject.failing;
    return survives(
        operation, expected, subject, [&] { stripe.failAt(fault.call, number, fault.fault); },
        [&] {
            const bool faulty = stripe.calls(fault.call) >= number;
            stripe.failAt(fault.call, 0);
            return faulty;
        });
}

/// Puts messages together, which takes memory as well, and shows them to nobody.
void logToNowhere() {
    static Nowhere nowhere;
    Host::SysLogStream::printer(nowhere);
    Host::SysLogFilter::level(Host::LogLevel::Note);
}

TEST(Faults, ExhaustedMemoryIsAnOrdinaryFailure) {
    logToNowhere();
    for (const Operation& operation : operations) {
        const Expected expected = expectedOf(operation);
        for (const auto fault : {FailingHeap::Fault::Once, FailingHeap::Fault::FromThenOn}) {
            std::uint64_t number = 1;
            while (survivesWithoutMemory(operation, expected, number, fault) && !HasFailure())
                ++number;
            ASSERT_FALSE(HasFailure()) << operation.name << ", allocation " << number
                                       << (fault == FailingHeap::Fault::Once ? "" : " and on");
            EXPECT_GT(number, 1U) << operation.name << " allocates something";
        }
    }
}

TEST(Faults, AFailingStripeIsAnOrdinaryFailure) {
    using Call = FailingStripe::Call;
    using Fault = FailingStripe::Fault;
    constexpr StripeFault faults[] = {
        {true, Call::Read, Fault::Failed},    {true, Call::Read, Fault::Short},
        {true, Call::Read, Fault::NoByte},    {true, Call::Seek, Fault::Failed},
        {true, Call::Seek, Fault::Misplaced}, {false, Call::Write, Fault::Failed},
        {false, Call::Write, Fault::Short},   {false, Call::Seek, Fault::Failed},
        {false, Call::Seek, Fault::Misplaced}};
    logToNowhere();
    std::uint64_t survived = 0;
    for (const Operation& operation : operations) {
        const Expected expected = expectedOf(operation);
        for (const StripeFault& fault : faults) {
            std::uint64_t number = 1;
            while (survivesWithoutStripe(operation, expected, number, fault) && !HasFailure())
                ++number;
            ASSERT_FALSE(HasFailure())
                << operation.name << (fault.ofSource ? ", source" : ", target") << " call "
                << number << ", fault " << static_cast<int>(fault.fault);
            survived += fault.ofSource ? 0 : number - 1;
        }
    }
    EXPECT_GT(survived, 2U) << "targets fail as well as sources";
}

TEST(Faults, WhatTheHostMakesSaysThatMemoryIsExhausted) {
    constexpr bool (*makers[])() = {
        [] { return bool(Host::String::create("text")); },
        [] { return bool(Host::MemoryStripe::create()); },
        [] { return bool(Host::ZlibFilter::createCompressorStream(0)); },
        [] { return Host::ByteBuffer().reserve(1); }};
    for (const auto& make : makers) {
        Host::Error::set(Host::NoError);
        FailingHeap::failAt(1, FailingHeap::Fault::Once);
        const bool made = make();
        EXPECT_TRUE(FailingHeap::stop() && !made) << &make - makers;
        EXPECT_EQ(Host::Error::get(), Host::OutOfMemory) << &make - makers;
    }
}

// Neither handles nor values: a hundred views of stream data, and buffers that grow by doubling.
TEST(Rewriting, MakesNothingForSingleObjects) {
    Support::DocumentBuilder file = Support::DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 3'000; ++id)
        file.object(id, id % 2 == 0 ? "<< /K [ (text) 7 0 R 1.50 ] /B (\\n) >>" : "[ 1.05 <00> ]");
    for (std::uint32_t id = 3'000; id < 3'100; ++id)
        file.stream(id, "/K 1 ", "data");
    const Ref<Interfaces::Stripe> source = Support::stripeOf(file.bytes());
    const Ref<Interfaces::Stripe> target = Host::MemoryStripe::create();
    FailingHeap::failAt(300, FailingHeap::Fault::FromThenOn);
    const Ref<Document> document = Document::create(source);
    const bool written = document && document->write(target) && !document->changed();
    EXPECT_FALSE(FailingHeap::stop());
    EXPECT_TRUE(written);
}

TEST(Lookups, AllocateNothing) {
    const Ref<Document> document = Support::open(sampleBytes("q Q"));
    const Ref<Dictionary> catalog = document->getCatalog()->valueAsDictionary();
    const Ref<Array> kids =
        document->getPageCatalog()->valueAsDictionary()->findAsArray("Kids"_str);
    // An object is made when it is asked for, once.
    const Ref<Object> page = document->getObject(kids->getAsObjectRef(1));
    FailingHeap::failAt(1, FailingHeap::Fault::FromThenOn);
    const bool found = catalog->findAsName("Type"_str) && !catalog->find("Absent"_str) &&
                       catalog->findAsName("Type") && !catalog->find("Absent") &&
                       document->getObject(catalog->findAsObjectRef("Pages"_str)) &&
                       document->getObject(kids->getAsObjectRef(1)) == page;
    EXPECT_FALSE(FailingHeap::stop());
    EXPECT_TRUE(found);
}

} // namespace
