#include "operations.h"

#include <pdf/errors.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/files.h>
#include <pdf/tools/forms.h>
#include <pdf/tools/letterheads.h>
#include <pdf/tools/losses.h>
#include <pdf/tools/pages.h>
#include <pdf/tools/streams.h>

#include <cstdio>
#include <string_view>

using namespace Libraries::Files::PDF;

namespace Faults {

namespace {

void openFrom(Subject& subject) {
    subject.document = nullptr;
    subject.document = Tools::openFrom(subject.source).value();
}

void save(Subject& subject) {
    const char* const path = "files-fault.pdf"; // in the folder that tests run in
    const auto saved = Tools::save(subject.document, path);
    std::remove(path);
    saved.value();
}

void lookUp(Subject& subject) {
    const auto& document = subject.document;
    const auto catalog = Tools::get<Dictionary>(document, document->trailer(), "Root").value();
    const auto form = Tools::get<Dictionary>(document, catalog, "AcroForm").value();
    const auto fields = Tools::get<Array>(document, form, "Fields").value();
    Tools::get<Dictionary>(document, fields, 0).value();
}

void addEntry(Subject& subject) {
    Tools::getOrAdd(subject.document, subject.document->trailer(), "Info").value();
}

void makeValues(Subject& subject) {
    Tools::real(1.05).value();
    Tools::byteString("\x01\x80").value();
    Tools::nameOf("A name").value();
    Tools::keyOf("A key").value();
    Tools::referenceTo(Tools::Pages::of(subject.document).value()[0].object).value();
    const auto text = Tools::textString("caf\xC3\xA9\n").value();
    Tools::addObject(subject.document, text).value();
}

void addParsed(Subject& subject) {
    const auto value = Tools::parseValue("<< /A [ 1 0 R (a\\001) <FF> -.5 ] >>").value();
    Tools::addObject(subject.document, value).value();
}

void removeObject(Subject& subject) {
    static const Ref<ObjectRef> form = ObjectRef::create(8);
    Tools::removeObject(subject.document, form).value();
}

void addStreams(Subject& subject) {
    Tools::addStream(subject.document, "q Q").value();
    Tools::addStream(subject.document, "q Q", Tools::Storing::Plain).value();
}

void addEncodedStream(Subject& subject) {
    const auto value = Tools::parseValue("<< /Filter /DCTDecode >>").value();
    const auto entries = Tools::get<Dictionary>(subject.document, value).value();
    Tools::addEncodedStream(subject.document, "jpeg", entries).value();
}

/// Pages, and a change of them. A failure leaves what they tell.
template <class Change>
void changePages(Subject& subject, Change change) {
    auto pages = Tools::Pages::of(subject.document).value();
    const std::size_t before = pages.size();
    const auto changed = change(pages);
    if (!changed && pages.size() != before)
        throw Tools::BadResultAccess(Tools::Failure(Host::StepFailed));
    changed.value();
}

void addPage(Subject& subject) {
    const auto value = Tools::parseValue("[ 0 0 9 9 ]").value();
    const auto box = Tools::get<Array>(subject.document, value).value();
    changePages(subject, [&](Tools::Pages& pages) { return pages.add("q Q", box); });
}

void insertPage(Subject& subject) {
    const auto page = Tools::parseValue("<< /MediaBox [ 0 0 9 9 ] >>").value();
    changePages(subject, [&](Tools::Pages& pages) { return pages.insert(1, page); });
}

void isolatePages(Subject& subject) {
    for (const std::uint64_t index : {2U, 0U})
        changePages(subject, [&](Tools::Pages& pages) { return pages.isolate(index, "X"); });
}

void fillIn(Subject& subject, std::string_view path, std::string_view text) {
    Tools::FormEditor::of(subject.document).value().fill(path, text).value();
}

void choose(Subject& subject) {
    constexpr std::string_view options[] = {"b", "a"};
    Tools::FormEditor::of(subject.document).value().choose("list", options).value();
}

void lookAtFields(Subject& subject) {
    const auto form = Tools::FormEditor::of(subject.document).value();
    const auto field = form.field("list").value();
    for (const auto& each : form) {
        form.kind(each).value();
        form.flags(each).value();
    }
    form.options(field).value();
    form.values(field).value();
}

/// Page by page, so that pages of one stream and of several are copied. Made beforehand: the ranges
/// take memory.
const Tools::LetterheadOptions beneath = {.mode = Tools::LetterheadPages::PageByPage,
                                          .ranges = {{1, 3}}};
const Tools::LetterheadOptions above = {.mode = Tools::LetterheadPages::PageByPage, .above = true};

const std::set<std::uint32_t> unread = {SourceNotRead};
/// Of looking for the catalog and the root of the page tree, which tell no exhausted memory.
const std::set<std::uint32_t> unfound = {RootInvalid, CatalogInvalid, PageTreeInvalid};
const std::set<std::uint32_t> unfoundOrUnread = {RootInvalid, CatalogInvalid, PageTreeInvalid,
                                                 SourceNotRead};
constexpr bool nested = true;

std::vector<Operation> editing() {
    return {{"open from a stripe", openFrom, {NotPdf, FileDamaged, SourceNotRead}, Does::Opens},
            {"save",
             save,
             {VersionNotWritten, ObjectNotWritten, TrailerNotWritten, Host::FileNotOpened,
              Host::FileNotWritten, ResultUnsound}},
            {"save into memory",
             [](Subject& subject) { Tools::save(subject.document).value(); },
             {VersionNotWritten, ObjectNotWritten, TrailerNotWritten, ResultUnsound}},
            {"look up", lookUp, {}},
            {"get or add", addEntry, {}},
            {"losses", [](Subject& subject) { Tools::losses(subject.document).value(); }, {}},
            {"make values", makeValues, unfound},
            {"add what was parsed", addParsed, {}},
            {"remove an object", removeObject, {}},
            {"add streams", addStreams, {}, Does::ChangesInPart},
            {"add an encoded stream", addEncodedStream, {}},
            {"set a stream's data",
             [](Subject& subject) {
                 Tools::setStreamData(subject.document, subject.stream, "0 0 1 1 re f").value();
             },
             {}},
            {"decoded bytes",
             [](Subject& subject) {
                 subject.result = Tools::decodedBytes(subject.document, subject.stream).value();
             },
             unread},
            {"compress streams",
             [](Subject& subject) { Tools::compressStreams(subject.document).value(); }, unread},
            {"expand streams",
             [](Subject& subject) { Tools::expandStreams(subject.document).value(); }, unread}};
}

std::vector<Operation> pages() {
    return {{"find pages", [](Subject& subject) { Tools::Pages::of(subject.document).value(); },
             unfound, Does::Changes, nested},
            {"flatten",
             [](Subject& subject) {
                 changePages(subject, [](Tools::Pages& pages) { return pages.flatten(); });
             },
             unfound, Does::Changes, nested},
            {"add a page", addPage, unfound, Does::Changes, nested},
            {"insert a page", insertPage, unfound, Does::Changes, nested},
            {"remove a page",
             [](Subject& subject) {
                 changePages(subject, [](Tools::Pages& pages) { return pages.remove(1); });
             },
             unfound, Does::Changes, nested},
            {"isolate pages", isolatePages, unfoundOrUnread, Does::ChangesInPart, nested},
            {"letterhead",
             [](Subject& subject) {
                 Tools::letterhead(subject.document, subject.foreign, beneath).value();
             },
             unfoundOrUnread, Does::Changes, nested},
            {"stamp",
             [](Subject& subject) {
                 Tools::letterhead(subject.document, subject.foreign, above).value();
             },
             unfoundOrUnread, Does::Changes, nested}};
}

std::vector<Operation> forms() {
    return {{"look at fields", lookAtFields, unfound},
            {"fill in a text",
             [](Subject& subject) { fillIn(subject, "group.name", "caf\xC3\xA9"); }, unfound},
            {"fill in what no font shows",
             [](Subject& subject) { fillIn(subject, "group.name", "\xCE\xA9"); }, unfound},
            {"fill in a state", [](Subject& subject) { fillIn(subject, "group.check", "On"); },
             unfound},
            {"choose", choose, unfound},
            {"flatten the form",
             [](Subject& subject) { Tools::flattenForm(subject.document).value(); },
             unfoundOrUnread}};
}

} // namespace

std::vector<Operation> toolOperations() {
    std::vector<Operation> operations;
    for (const auto& table : {editing(), pages(), forms()})
        operations.insert(operations.end(), table.begin(), table.end());
    for (Operation& operation : operations)
        operation.isTool = true;
    return operations;
}

} // namespace Faults
