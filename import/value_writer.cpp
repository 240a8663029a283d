#include "value_writer.h"

#include "report.h"
#include "spelling.h"

#include <pdf/errors.h>

#include <algorithm>

namespace Libraries::Files::PDF::Import {

namespace {

/// As deep as the library reads.
constexpr std::size_t deepest = 512;

/// Whether a value has no spelling that the library reads; the empty name is one of those.
bool hasNoSpelling(QPDFObjectHandle& value) {
    switch (value.getTypeCode()) {
    case ot_boolean:
    case ot_integer:
    case ot_real:
    case ot_string:
    case ot_array:
    case ot_dictionary:
    case ot_stream:
        return false;
    case ot_name:
        return value.isNameAndEquals("/");
    default:
        return true;
    }
}

/// Whether it is a part of how the file was stored (7.5.7, 7.5.8), not of the document.
bool isStorage(QPDFObjectHandle& object) {
    if (!object.isStream()) return false;
    QPDFObjectHandle type = object.getDict().getKey("/Type");
    return type.isNameAndEquals("/XRef") || type.isNameAndEquals("/ObjStm");
}

/// Keys as they are written: libqpdf keeps a number sign that encodes nothing as NUL, which would
/// have a place of its own in the order. Of two keys that are the same then one is kept.
Entries spelledAlike(Entries entries) {
    const auto isNul = [](const auto& entry) {
        return entry.first.find('\0') != std::string::npos;
    };
    for (auto place = entries.begin(); place != entries.end();) {
        const auto next = std::next(place);
        if (isNul(*place)) {
            auto entry = entries.extract(place);
            std::ranges::replace(entry.key(), '\0', '#');
            entries.insert(std::move(entry));
        }
        place = next;
    }
    return entries;
}

} // namespace

std::uint32_t Numbering::of(QPDFObjectHandle& reference) {
    const QPDFObjGen id = reference.getObjGen();
    const std::uint64_t key = static_cast<std::uint64_t>(static_cast<std::uint32_t>(id.getObj()))
                                  << 32U |
                              static_cast<std::uint32_t>(id.getGen());
    const auto [place, isNew] = numbers_.try_emplace(key, 0);
    if (!isNew || hasNoSpelling(reference) || isStorage(reference)) return place->second;
    objects_.push_back(reference);
    return place->second = count();
}

void ValueWriter::append(std::string& text, QPDFObjectHandle object) {
    beginDirect(text, object);
    finish(text);
}

void ValueWriter::append(std::string& text, Entries entries) {
    beginDictionary(text, std::move(entries));
    finish(text);
}

void ValueWriter::appendTrailer(std::string& text, Entries entries) {
    hexStrings_ = true;
    append(text, std::move(entries));
    hexStrings_ = false;
}

bool ValueWriter::isNothing(QPDFObjectHandle& value) {
    return value.isIndirect() ? numbering_.of(value) == 0 : hasNoSpelling(value);
}

void ValueWriter::begin(std::string& text, QPDFObjectHandle& value) {
    if (isNothing(value)) {
        text += "null";
    } else if (value.isIndirect()) {
        text += std::to_string(numbering_.of(value)) + " 0 R";
    } else {
        beginDirect(text, value);
    }
}

void ValueWriter::beginDirect(std::string& text, QPDFObjectHandle& value) {
    switch (value.getTypeCode()) {
    case ot_boolean:
        text += value.getBoolValue() ? "true" : "false";
        break;
    case ot_integer:
        text += std::to_string(value.getIntValue());
        break;
    case ot_real:
        Spelling::appendReal(text, value.getRealValue());
        break;
    case ot_string:
        hexStrings_ ? Spelling::appendHexString(text, value.getStringValue())
                    : Spelling::appendString(text, value.getStringValue());
        break;
    case ot_name:
        Spelling::appendName(text, value.getName());
        break;
    case ot_array:
        beginArray(text, value);
        break;
    case ot_dictionary:
        beginDictionary(text, value.getDictAsMap());
        break;
    default: // a stream that is not an object
        text += "null";
    }
}

void ValueWriter::beginArray(std::string& text, QPDFObjectHandle& array) {
    text += '[';
    std::vector<QPDFObjectHandle> items = array.getArrayAsVector();
    std::ranges::reverse(items);
    levels_.push_back({true, {}, std::move(items)});
}

void ValueWriter::beginDictionary(std::string& text, Entries entries) {
    text += "<<";
    entries.erase("/");
    levels_.push_back({false, spelledAlike(std::move(entries)), {}});
}

void ValueWriter::finish(std::string& text) {
    while (!levels_.empty()) {
        if (levels_.size() > deepest) fail(BeyondRepair, "values nest too deep");
        step(text);
    }
}

void ValueWriter::step(std::string& text) {
    Level& level = levels_.back();
    if (level.items.empty() && level.entries.empty()) {
        text += level.isArray ? " ]" : " >>";
        levels_.pop_back();
    } else if (level.isArray) {
        QPDFObjectHandle item = level.items.back();
        level.items.pop_back();
        text += ' ';
        begin(text, item);
    } else {
        auto entry = level.entries.extract(level.entries.begin());
        if (isNothing(entry.mapped())) return;
        text += ' ';
        Spelling::appendName(text, entry.key());
        text += ' ';
        begin(text, entry.mapped());
    }
}

} // namespace Libraries::Files::PDF::Import
