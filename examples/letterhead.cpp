// Lays a letterhead beneath the pages of a document, or a stamp over them.

#include "program.h"

#include <pdf/tools/letterheads.h>
#include <pdf/tools/pages.h>

using Libraries::Files::PDF::Document;
namespace Tools = Libraries::Files::PDF::Tools;

namespace {

/// "3" or "1-3": pages as people count them. Nothing where the text is no such range.
std::optional<Tools::PageRange> rangeOf(std::string_view text) {
    const std::size_t dash = std::min(text.find('-'), text.size());
    const auto first = Program::number<std::uint64_t>(text.substr(0, dash));
    const auto last =
        dash == text.size() ? first : Program::number<std::uint64_t>(text.substr(dash + 1));
    if (!first || !last || *first == 0 || *first > *last) return std::nullopt;
    return Tools::PageRange{*first - 1, *last - 1};
}

/// Adds the ranges of a list like "1-3,7"; false where it is none.
bool addRanges(std::string_view list, Tools::LetterheadOptions& options) {
    while (true) {
        const std::size_t comma = std::min(list.find(','), list.size());
        const auto range = rangeOf(list.substr(0, comma));
        if (!range) return false;
        options.ranges.push_back(*range);
        if (comma == list.size()) return true;
        list.remove_prefix(comma + 1);
    }
}

/// What the options say; nothing where one of them is wrong.
std::optional<Tools::LetterheadOptions> optionsOf(const Program::Arguments& arguments) {
    Tools::LetterheadOptions options;
    options.above = arguments.has("--above");
    options.asIs = arguments.has("--as-is");
    if (const auto text = arguments.value("--mode")) {
        const auto mode = Program::number<std::uint32_t>(*text);
        if (!mode || *mode > 3) return std::nullopt;
        options.mode = static_cast<Tools::LetterheadPages>(*mode);
    }
    const auto pages = arguments.value("--pages");
    if (pages && !addRanges(*pages, options)) return std::nullopt;
    return options;
}

/// Whether the pages that are asked for are there; the first that is not is reported.
bool hasPages(const Host::Ref<Document>& document, const Tools::LetterheadOptions& options,
              std::string_view file) {
    const auto pages = Tools::Pages::of(document);
    if (!pages) return Program::failure(file, pages.error()) == Program::done;
    for (const Tools::PageRange& range : options.ranges) {
        if (range.last < pages->size()) continue;
        const std::string what = "page " + std::to_string(range.last + 1) + " is asked for";
        const std::string next = "it has " + std::to_string(pages->size());
        return Program::failure(file, Host::OutOfRange, what, next) == Program::done;
    }
    return true;
}

const std::vector<Program::Option> own = {
    {"--above", "", "draws it over the pages: a stamp"},
    {"--as-is", "", "keeps its coordinates: neither turned nor scaled nor moved"},
    {"--mode", "0|1|2|3", "which of its pages goes where; 1, the first onto all, without it"},
    {"--pages", "LIST", "only onto these pages, counted from 1: 1-3,7"},
};

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"letterhead IN LETTERHEAD OUT",
         "Lays the first page of LETTERHEAD beneath every page of IN, as large as it fits.",
         Program::writingOptions(own)});
    if (!arguments.are(3)) return arguments.refuse();
    const auto options = optionsOf(arguments);
    if (!options) return arguments.refuse("--mode is 0 to 3, --pages a list such as 1-3,7");

    Host::Ref<Document> document;
    Host::Ref<Document> letterhead;
    const auto open = [&](const Program::Opening& how) {
        document = Program::open(arguments[0], how);
        letterhead = document ? Program::open(arguments[1], how) : nullptr;
        return letterhead && hasPages(document, *options, arguments[0]);
    };
    const auto lay = [&] { return Tools::letterhead(document, letterhead, *options); };
    const auto how = Program::opening(arguments);
    const int status = Program::changeOpened(arguments[0], how, open, lay);
    if (status != Program::done) return status;
    return Program::save(document, arguments[2], Program::saving(arguments));
}
