#pragma once

// Documents with a form, what tools do with it, and what it then shows.

#include "support/results.h"

#include <pdf/tools/forms.h>

#include <map>
#include <string>
#include <string_view>

namespace Support {

constexpr std::string_view formEntries =
    "<< /Fields [ 10 0 R ] /DA (/Helv 10 Tf 1 0 0 rg) /DR << /Font << /Helv 9 0 R /Wide 8 0 R >> "
    ">> /XFA (x) >>";

/// A document with one form, whose first field is object 10.
inline Host::Ref<PDF::Document>
formDocument(std::initializer_list<std::pair<std::uint32_t, std::string_view>> objects,
             std::string_view entries = formEntries) {
    DocumentBuilder file = DocumentBuilder::minimal();
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>").object(5, entries);
    std::map<std::uint32_t, std::string_view> all = {
        {8, "<< /Type /Font /Subtype /Type0 >>"},
        {9, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>"}};
    for (const auto& [id, body] : objects)
        all[id] = body;
    for (std::uint32_t id = 3; id <= all.rbegin()->first; ++id) { // a gap would not be written
        if (id > 5 || all.contains(id)) file.object(id, all.contains(id) ? all[id] : "<< >>");
    }
    return open(file);
}

/// The same with the text field t, unless its entries say otherwise.
inline Host::Ref<PDF::Document> textDocument(const std::string& entries,
                                             std::string_view form = formEntries) {
    return formDocument({{10, "<< /FT /Tx /T (t) /Rect [ 0 0 100 20 ] " + entries + " >>"}}, form);
}

inline Host::Ref<PDF::Dictionary> dictionary(const Host::Ref<PDF::Document>& document,
                                             std::uint32_t id) {
    return Host::cast<PDF::Dictionary>(valueOf(*document, id));
}

inline std::string entry(const Host::Ref<PDF::Document>& document, std::uint32_t id,
                         std::string_view key) {
    return textOf(dictionary(document, id)->find(key));
}

/// What a widget's normal appearance draws, in a state where it has several.
inline std::string looksOf(const Host::Ref<PDF::Document>& document, std::uint32_t id,
                           const std::string& state = {}) {
    AnyValue looks = at(document, dictionary(document, id), {"AP", "N"});
    if (castTo<PDF::Dictionary>(looks)) looks = at(document, looks, {state});
    return castTo<PDF::Stream>(looks) ? decoded(document, looks) : "none";
}

/// What `tool` gives, which logs nothing and leaves the thread's code as it was.
template <class Tool>
auto quiet(Tool tool) {
    return resultOf([&] {
        const RecordingLog log;
        auto result = tool();
        EXPECT_EQ(log.text(), "");
        return result;
    });
}

inline PDF::Tools::FormEditor editorOf(const Host::Ref<PDF::Document>& document) {
    return quiet([&] { return PDF::Tools::FormEditor::of(document); }).value();
}

/// "shown", or why a viewer is needed, or what failed.
inline std::string ending(const PDF::Tools::Result<PDF::Tools::Filled>& filled) {
    if (!filled) return told(filled);
    EXPECT_EQ(filled->viewerNeeded, !filled->reason.empty());
    return filled->viewerNeeded ? filled->reason : "shown";
}

inline std::string fill(const Host::Ref<PDF::Document>& document, std::string_view path,
                        std::string_view text) {
    PDF::Tools::FormEditor form = editorOf(document);
    return ending(quiet([&] { return form.fill(path, text); }));
}

} // namespace Support
