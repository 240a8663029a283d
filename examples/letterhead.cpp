// Lays a letterhead beneath the pages of a document, or a stamp over them.

#include "program.h"

#include <pdf/tools/background.h>

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

/// Takes the options out; nothing where one of them is wrong.
std::optional<Tools::LetterheadOptions> takeOptions(Program::Arguments& arguments) {
    Tools::LetterheadOptions options;
    options.above = arguments.take("--above");
    options.asIs = arguments.take("--as-is");
    if (const auto text = arguments.takeValue("--mode")) {
        const auto mode = Program::number<std::uint32_t>(*text);
        if (!mode || *mode > 3) return std::nullopt;
        options.mode = static_cast<Tools::LetterheadPages>(*mode);
    }
    const auto pages = arguments.takeValue("--pages");
    if (pages && !addRanges(*pages, options)) return std::nullopt;
    return options;
}

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage =
        "letterhead [--above] [--as-is] [--mode 0|1|2|3] [--pages 1-3,7] [--no-verify] [--force] "
        "[--faithful] [--any [--password P]] IN LETTERHEAD OUT";
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    const auto options = takeOptions(arguments);
    if (!options || !arguments.are(3)) return Program::usage(usage);

    const auto document = Program::open(arguments[0], how);
    const auto letterhead = document ? Program::open(arguments[1], how) : nullptr;
    if (!letterhead) return Program::failed;
    if (!Tools::letterhead(*document, letterhead, *options)) return Program::failure();
    return Program::save(*document, arguments[2], saving);
}
