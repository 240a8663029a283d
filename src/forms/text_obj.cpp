#include "forms/text_obj.h"

#include "values/failure.h"

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// Whether the value is a string of at most `limit` characters. Bytes count as UTF-16 code units
/// behind a byte-order mark, be there one or not.
bool fits(const String& value, std::uint64_t limit) noexcept {
    if (const Ref<Host::String> text = value.text()) return text->length() <= limit;
    const auto bytes = value.bytes();
    if (!bytes) return false;
    const std::uint64_t units = bytes->size() / 2;
    return units - std::min<std::uint64_t>(units, 1) <= limit;
}

} // namespace

TextObj::TextObj(FieldPlace place) : FieldObj(std::move(place)) {
    readEntries(*dict, {{"MaxLen"_str, checking<Number>()}});
}

std::uint64_t TextObj::maxLen() const noexcept {
    const Ref<Number> number = dict->findAsNumber("MaxLen"_str, true);
    return number ? static_cast<std::uint64_t>(number->integer()) : 0;
}

bool TextObj::setValue(Ref<String> value) noexcept {
    if (value) {
        const std::uint64_t limit = maxLen();
        if (limit != 0 && !fits(*value, limit)) return fail(InvalidArgument);
    }
    return dict->set("V"_str, std::move(value));
}

Ref<String> TextObj::value() const noexcept {
    return dict->findAsString("V"_str, true);
}

Ref<String> TextObj::defaultValue() const noexcept {
    return dict->findAsString("DV"_str, true);
}

} // namespace Libraries::Files::PDF
