#include "rewrite.h"

#include "document/document_obj.h"
#include "host/windows_1252.h"
#include "target.h"
#include "walk.h"
#include "writer/output.h"
#include "writer/serializer.h"

#include <host/memory_stripe.h>

#include <algorithm>
#include <string_view>

namespace Fuzzing {

using namespace Libraries::Files::PDF;

namespace {

using Libraries::Strings::Encodings::ANSI::Windows_1252;

bool hasCode(const Ref<Value>& value, bool (*wanted)(char32_t)) {
    const auto* string = dynamic_cast<const String*>(value.get());
    const Ref<Host::String> text = string != nullptr ? string->text() : nullptr;
    for (std::uint64_t index = 0; text && index < text->length(); ++index) {
        if (wanted((*text)[index])) return true;
    }
    return false;
}

bool anyHasCode(const Document& document, bool (*wanted)(char32_t)) {
    bool found = false;
    visitAll(document, [&](const Ref<Value>& value) { found = found || hasCode(value, wanted); });
    return found;
}

// An octal escape goes up to 511, and the code page does not have all of those characters.
bool isUnwritable(char32_t code) {
    return code > 0xFF && !Windows_1252::fromUnicode(code);
}

// A backslash comes in as an octal escape. It is written as two, which are read as no character.
bool isBackslash(char32_t code) {
    return code == U'\\';
}

bool allDataReadable(Document& document) {
    return std::ranges::all_of(streamsOf(document), [&](const Ref<Stream>& stream) {
        return document.readStreamData(stream, false) != nullptr;
    });
}

// The table that is written counts on from its first number, which is that of a free entry. It
// belies objects before that number's successor and behind a gap.
bool tableIsTrue(const Document& document) {
    const auto& state = dynamic_cast<const DocumentObj&>(document).state();
    std::uint64_t expected = state.xrefFirstId;
    return std::ranges::all_of(state.objects.slots(), [&](const ObjectTable::Slot& slot) {
        return slot.id() == ++expected;
    });
}

// Behind the keyword "stream" a lone carriage return may end the line, and then a line feed that
// the data begins with is taken for the second half of the line ending.
bool lineFeedIsLost(Document& document) {
    if (document.lineEnding() != "\r") return false;
    return std::ranges::any_of(streamsOf(document), [&](const Ref<Stream>& stream) {
        const auto data = document.readStreamData(stream, false);
        return data->size() != 0 && contentsOf(*data).front() == '\n';
    });
}

// The trailer is found backwards from its end by counting pairs of angle brackets, and those in
// strings count. A string may have held them in another form, which did not mislead the search.
bool trailerIsFound(const Document& document) {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    Output output(*target);
    const DocumentState state;
    Serializer serializer(output, state);
    if (!serializer.write(document.trailer()) || !output.flush()) return false;

    const std::string text = contentsOf(*target);
    std::int64_t open = 0;
    bool seen = false;
    for (std::size_t end = text.size(); end > 0; --end) {
        const std::string_view pair = std::string_view(text).substr(end > 1 ? end - 2 : 0, 2);
        if (seen && open == 0) return false; // it ends inside the dictionary
        if (pair == ">>") {
            ++open;
            seen = true;
            --end;
        } else if (pair == "<<") {
            --open;
            --end;
        }
    }
    return seen && open == 0;
}

} // namespace

Rewriting expectedOf(Document& document) {
    if (anyHasCode(document, isUnwritable) || !allDataReadable(document)) return Rewriting::Refused;
    if (!tableIsTrue(document)) return Rewriting::Unloadable;
    if (anyHasCode(document, isBackslash) || lineFeedIsLost(document) ||
        !trailerIsFound(document)) {
        return Rewriting::Uncertain;
    }
    return Rewriting::Kept;
}

} // namespace Fuzzing
