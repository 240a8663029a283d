#include "costly.h"
#include "modern_file.h"
#include "object_file.h"

#include <host/string.h>
#include <pdf/form.h>
#include <pdf/tools/forms.h>

#include <string_view>
#include <vector>

namespace Benchmarks {
namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

/// So many bytes of what `unit` gives for 0, 1, 2 and so on.
template <class Unit>
std::string series(std::size_t bytes, Unit unit) {
    std::string text;
    for (std::size_t index = 0; text.size() < bytes; ++index)
        text += unit(index);
    return text;
}

/// `count` references, from one number on.
std::string references(std::size_t first, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index)
        text += reference(first + index);
    return text;
}

constexpr std::size_t firstFree = 5; ///< number of the first object behind those of `formFile`

/// A page, object 3, with annotations, and a form, object 4.
ObjectFile formFile(const std::string& page, const std::string& form) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R/AcroForm 4 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids[3 0 R]>>");
    file.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]" + page + ">>");
    file.add("<<" + form + ">>");
    return file;
}

/// One field with `entries` whose widgets, as many as go into `bytes`, have the given entries; they
/// are all on the page.
std::string fieldOfWidgets(std::size_t bytes, const std::string& entries,
                           const std::string& widget) {
    constexpr std::size_t around = 85; // what else an object takes, and the references to it
    const std::size_t count = bytes / (widget.size() + around) + 1;
    const std::string widgets = references(firstFree + 1, count);
    ObjectFile file = formFile("/Annots[" + widgets + "]", "/Fields[5 0 R]");
    file.add("<</T(f)" + entries + "/Kids[" + widgets + "]>>");
    while (file.next() < firstFree + 1 + count)
        file.add("<</Subtype/Widget/Rect[0 0 99 20]/Parent 5 0 R" + widget + ">>");
    return file.file();
}

std::string states(std::size_t bytes) {
    return series(bytes, [](std::size_t index) { return "/S" + std::to_string(index) + " 1"; });
}

/// Radio buttons whose widgets share a dictionary of looks, that of the field, with many states.
std::string sharedStates(std::size_t size) {
    return fieldOfWidgets(size / 2, "/FT/Btn/Ff 32768/V/S7/N<<" + states(size / 2) + ">>",
                          "/AP 5 0 R");
}

/// Pages that share a list of annotations, each of which shows something.
std::string sharedAnnotations(std::size_t size) {
    const std::size_t pages = size / 2 / 80 + 1;
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R/AcroForm<<>>>>");
    file.add("<</Type/Pages/Count 1/Kids[" + references(6, pages) + "]>>");
    file.add("[" + references(6 + pages, size / 2 / 110) + "]");
    file.addStream("/Subtype/Form/BBox[0 0 1 1]", "0 g");
    file.add("<</N 4 0 R>>");
    while (file.next() < 6 + pages)
        file.add("<</Type/Page/Parent 2 0 R/Annots 3 0 R>>");
    while (file.size() < size)
        file.add("<</Subtype/Widget/Rect[0 0 9 9]/AP 5 0 R>>");
    return file.file();
}

/// One widget, listed on each of some pages until the file is full.
std::string widgetListedOften(std::size_t size) {
    std::string widgets;
    while (widgets.size() < size)
        widgets += "5 0 R ";
    ObjectFile file = formFile("/Annots[" + widgets + "]", "/Fields[5 0 R]");
    file.add("<</Subtype/Widget/Rect[0 0 99 20]/T(f)/FT/Tx/V(text)>>");
    return file.file();
}

std::string widgetsWithLooks(std::size_t size) {
    const std::size_t count = size / 210 + 1;
    std::string widgets;
    for (std::size_t index = 0; index < count; ++index)
        widgets += reference(firstFree + 2 * index);
    ObjectFile file = formFile("/Annots[" + widgets + "]", "/Fields[" + widgets + "]");
    while (file.size() < size) {
        file.add("<</Subtype/Widget/Rect[0 0 9 9]/AP<</N " + reference(file.next() + 1) + ">>>>");
        file.addStream("/Subtype/Form/BBox[0 0 1 1]", "0 g");
    }
    return file.file();
}

/// Text fields that take an entry in turn from one object and from another.
std::string inTurn(std::size_t size, const std::string& entries, const std::string& key,
                   const std::string& value, const std::string& form = "") {
    const std::size_t count = size / 3 / (entries.size() + 140) + 1;
    const std::string widgets = references(firstFree + 2, count);
    ObjectFile file = formFile("/Annots[" + widgets + "]", "/Fields[" + widgets + "]" + form);
    file.add(value);
    file.add(value);
    while (file.next() < firstFree + 2 + count) {
        file.add("<</Subtype/Widget/Rect[0 0 99 20]/T(" + std::to_string(file.next()) + ")" +
                 entries + "/" + key + " " + reference(firstFree + file.next() % 2) + ">>");
    }
    return file.file();
}

std::string longAppearances(std::size_t size) {
    const std::string text = series(size / 3, [](std::size_t) { return "0 g "; }) + "/Helv 9 Tf";
    return inTurn(size, "/FT/Tx/V(text)", "DA", "(" + text + ")");
}

std::string manyOptions(std::size_t bytes) {
    return "[" +
           series(bytes, [](std::size_t index) { return "(" + std::to_string(index) + ")"; }) + "]";
}

std::string longOptions(std::size_t size) {
    return inTurn(size, "/FT/Ch/Ff 131072/V(text)", "Opt", manyOptions(size / 3));
}

/// List boxes so high, of letters so small, that all that is selected is seen.
std::string longSelections(std::size_t size) {
    return inTurn(size, "/FT/Ch/Opt[(0)]", "V", manyOptions(size / 3));
}

std::string longTexts(std::size_t size) {
    const std::string text = series(
        size / 3, [](std::size_t index) { return std::to_string(index * 7919 % 100003) + " "; });
    return inTurn(size, "/FT/Tx/Ff 4096", "V", "(" + text + ")");
}

std::string longLists(std::size_t size) {
    return inTurn(size, "/FT/Ch/DA(/Helv .001 Tf)", "Opt", manyOptions(size / 3));
}

std::string differences(std::size_t bytes) {
    return "<</Differences[" + series(bytes, [](std::size_t) { return "65/A "; }) + "]>>";
}

/// One font of many differences, for many fields.
std::string longDifferences(std::size_t size) {
    return inTurn(size, "/FT/Tx/V(text)/DA(/F 9 Tf)", "M", differences(size / 3),
                  "/DR<</Font<</F<</Subtype/Type1/BaseFont/Helvetica/Encoding 5 0 R>>>>>>");
}

/// Many fonts with one list of differences, each for a field.
std::string sharedDifferences(std::size_t size) {
    const std::size_t count = size / 2 / 160 + 1;
    std::string fonts;
    for (std::size_t index = 0; index < count; ++index) {
        fonts +=
            "/F" + std::to_string(index) + "<</Subtype/Type1/BaseFont/Helvetica/Encoding 5 0 R>>";
    }
    const std::string widgets = references(firstFree + 1, count);
    ObjectFile file = formFile("/Annots[" + widgets + "]",
                               "/Fields[" + widgets + "]/DR<</Font<<" + fonts + ">>>>");
    file.add(differences(size / 2));
    for (std::size_t index = 0; index < count; ++index) {
        file.add("<</Subtype/Widget/Rect[0 0 99 20]/T(" + std::to_string(index) +
                 ")/FT/Tx/V(text)/DA(/F" + std::to_string(index) + " 9 Tf)>>");
    }
    return file.file();
}

/// Fields within fields; all but the first have no name.
std::string namelessFields(std::size_t size) {
    ObjectFile file = formFile("", "/Fields[5 0 R]");
    file.add("<</T(f)/FT/Tx/V(text)/Kids[6 0 R]>>");
    while (file.size() < size)
        file.add("<</FT/Tx/Kids[" + reference(file.next() + 1) + "]>>");
    file.add("<</FT/Tx>>");
    return file.file();
}

/// Pages whose contents, so many bytes for each, become a thousand times as long when they are
/// decoded; each has a widget, so that they are looked through.
std::string expanding(std::size_t size, std::size_t each) {
    const std::string contents = deflated(std::string(each * 1000, ' '));
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R/AcroForm<<>>>>");
    const std::size_t pages = size / (contents.size() + 250) + 1;
    std::string kids;
    for (std::size_t page = 0; page < pages; ++page)
        kids += reference(5 + 3 * page);
    file.add("<</Type/Pages/Kids[" + kids + "]/Count 1>>");
    file.addStream("/Subtype/Form/BBox[0 0 1 1]", "0 g");
    file.add("<</N 3 0 R>>");
    while (file.next() < 5 + 3 * pages) {
        const std::size_t page = file.next();
        file.add("<</Type/Page/Contents " + reference(page + 2) + "/Annots[" + reference(page + 1) +
                 "]>>");
        file.add("<</Subtype/Widget/Rect[0 0 9 9]/AP 4 0 R>>");
        file.addStream("/Filter/FlateDecode", contents);
    }
    return file.file();
}

bool listOptions(const Ref<Document>& document) {
    const auto form = Tools::FormEditor::of(document).value();
    const Ref<Field> field = form.field("f").value();
    return form.options(field)->size() > 7 && form.values(field)->size() == 1;
}

/// Looks at a chain of fields, each the only kid of the one before.
bool listValues(const Ref<Document>& document) {
    const auto form = Tools::FormEditor::of(document).value();
    Ref<Field> field = document->form()->field(0);
    for (; field && field->childCount() == 1; field = field->child(0)) {
        if (form.values(field)->size() > 1) return false;
    }
    return field != nullptr;
}

/// Sets the field, which then looks so in every viewer.
bool fill(const Ref<Document>& document, std::string_view text) {
    const auto filled = Tools::FormEditor::of(document).value().fill("f", text);
    return filled && !filled->viewerNeeded;
}

bool chooseState(const Ref<Document>& document) {
    return fill(document, "S7");
}

bool fillText(const Ref<Document>& document) {
    return fill(document, "text");
}

/// Chooses all options of a field.
bool chooseAll(const Ref<Document>& document) {
    auto form = Tools::FormEditor::of(document).value();
    const auto options = form.options(form.field("f").value()).value();
    std::vector<std::string_view> texts;
    for (const Tools::FieldOption& option : options)
        texts.push_back(option.value);
    const auto chosen = form.choose("f", texts);
    return chosen && !chosen->viewerNeeded;
}

constexpr CostlyFile files[] = {
    {"fields: states shared by radio buttons, listed", sharedStates, lookAt<listOptions>,
     Ending::Done},
    {"fields: states shared by radio buttons, chosen", sharedStates, changeAndSave<chooseState>,
     Ending::Done},
    {"fields: nameless ones within each other", namelessFields, lookAt<listValues>, Ending::Done},
    {"fields: one of many widgets, filled",
     [](std::size_t size) { return fieldOfWidgets(size, "/FT/Tx", ""); }, changeAndSave<fillText>,
     Ending::Done},
    {"fields: one of many options, all chosen",
     [](std::size_t size) {
         return fieldOfWidgets(1, "/FT/Ch/Ff 2097152/Opt" + manyOptions(size), "");
     },
     changeAndSave<chooseAll>, Ending::Done},
    {"flattening: one widget listed often", widgetListedOften, changeAndSave<Tools::flattenForm>,
     Ending::Done},
    {"flattening: annotations shared by pages", sharedAnnotations,
     changeAndSave<Tools::flattenForm>, Ending::Refused},
    {"flattening: many widgets with looks of their own", widgetsWithLooks,
     changeAndSave<Tools::flattenForm>, Ending::Done},
    {"flattening: two long default appearances", longAppearances, changeAndSave<Tools::flattenForm>,
     Ending::Done},
    {"flattening: two long lists of options", longOptions, changeAndSave<Tools::flattenForm>,
     Ending::Done},
    {"flattening: two long selections", longSelections, changeAndSave<Tools::flattenForm>,
     Ending::Refused},
    {"flattening: two long lists shown whole", longLists, changeAndSave<Tools::flattenForm>,
     Ending::Refused},
    {"flattening: two long texts", longTexts, changeAndSave<Tools::flattenForm>, Ending::Refused},
    {"flattening: a font of many differences", longDifferences, changeAndSave<Tools::flattenForm>,
     Ending::Done},
    {"flattening: fonts that share their differences", sharedDifferences,
     changeAndSave<Tools::flattenForm>, Ending::Done},
    {"flattening: one page that expands", [](std::size_t size) { return expanding(size, size); },
     changeAndSave<Tools::flattenForm>, Ending::Done},
    {"flattening: many pages that expand", [](std::size_t size) { return expanding(size, 1000); },
     changeAndSave<Tools::flattenForm>, Ending::Done},
};

} // namespace

std::span<const CostlyFile> costlyForms() {
    return files;
}

} // namespace Benchmarks
