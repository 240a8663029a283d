#include "structures/value_scanner.h"

#include "host/numbers.h"
#include "packed/short_number.h"
#include "spelling/digits.h"
#include "spelling/numbers.h"
#include "structures/flaw.h"
#include "structures/syntax.h"
#include "values/nesting.h"

#include <limits>

namespace Libraries::Files::PDF {

using Host::Cursor;
using Spelling::isReadAsWhite;

PackedValue ValueScanner::read(Cursor& cursor) {
    cursor_ = &cursor;
    packer_.clear();
    depth_ = 0;
    int code = cursor.next();
    while (isReadAsWhite(code) || code == '%') {
        if (code == '%') skipComment();
        code = cursor.next();
    }
    const Value::Type kind = readValue(code);
    return {packer_.bytes(), kind, packer_.spelled(), packer_.unwritable(), Stream::noOffset};
}

/// The value that begins with `code`, which was read.
Value::Type ValueScanner::readValue(int code) {
    switch (code) {
    case '/':
        return readName();
    case '(':
        readLiteral();
        return Value::Type::String;
    case '[':
        readArray();
        return Value::Type::Array;
    case '<':
        return readAngle();
    case Cursor::end:
        damaged(cursor().position(), "the data ends before a value");
    case ')':
    case ']':
    case '>':
    case '{':
    case '}':
        damaged(here(), "this begins no value");
    default:
        return readWord();
    }
}

Value::Type ValueScanner::readAngle() {
    const int code = cursor().next();
    if (code != '<') {
        readHexadecimal(code);
        return Value::Type::String;
    }
    readDictionary();
    return Value::Type::Dictionary;
}

void ValueScanner::readArray() {
    const std::uint64_t offset = here();
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) damaged(offset, "values nest too deep");
    Packer::List list;
    packer_.beginArray(list);
    for (int code = cursor().next(); code != ']'; code = cursor().next()) {
        if (isReadAsWhite(code)) continue;
        if (code == '%') {
            skipComment();
        } else if (code == Cursor::end) {
            damaged(offset, "this array does not end");
        } else {
            static_cast<void>(readValue(code));
        }
    }
    packer_.endArray(list);
}

void ValueScanner::readDictionary() {
    const std::uint64_t offset = here() - 1;
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) damaged(offset, "values nest too deep");
    Packer::List list;
    packer_.beginDictionary(list);
    for (int code = cursor().next(); code != '>'; code = cursor().next()) {
        if (isReadAsWhite(code)) continue;
        if (code == '%') {
            skipComment();
        } else if (code == Cursor::end) {
            damaged(offset, "this dictionary does not end");
        } else {
            static_cast<void>(readValue(code));
        }
    }
    if (cursor().next() != '>') damaged(offset, "this dictionary ends in a single bracket");
    switch (packer_.endDictionary(list)) {
    case Packer::Ending::Uneven:
        damaged(offset, "in this dictionary a key has no value");
    case Packer::Ending::KeyIsNoName:
        damaged(offset, "in this dictionary a key is no name");
    default:
        break;
    }
}

void ValueScanner::skipComment() noexcept {
    for (int code = cursor().next(); code != Cursor::end; code = cursor().next()) {
        if (Spelling::isLineEnding(code)) return;
    }
}

/// The word whose first character was read.
Value::Type ValueScanner::readWord() {
    const std::uint64_t offset = here();
    const std::string_view ahead = cursor().ahead();
    const std::size_t rest = Syntax::wordEnd.find(ahead);
    if (rest < ahead.size()) {
        const std::string_view word = cursor().lastAndAhead(rest);
        cursor().skip(rest);
        return packWord(word, offset);
    }
    text_.assign(cursor().lastAndAhead(rest));
    cursor().skip(rest);
    for (int code = cursor().next(); code != Cursor::end; code = cursor().next()) {
        if (Syntax::wordEnd.has(code)) {
            cursor().back();
            break;
        }
        text_.push_back(static_cast<char>(code));
    }
    return packWord(text_, offset);
}

Value::Type ValueScanner::packWord(std::string_view word, std::uint64_t offset) {
    const char first = word.front();
    if (Spelling::isDigit(first) || first == '-' || first == '.' || first == '+') {
        packNumber(word, offset);
        return Value::Type::Number;
    }
    if (word == "R" && depth_ != 0) {
        packReference(offset);
        return Value::Type::ObjectRef;
    }
    if (word == "true" || word == "false") {
        packer_.keyword(word);
        return Value::Type::Boolean;
    }
    if (word != "null") damaged(offset, "this word is no value");
    packer_.nothing();
    return Value::Type::Null;
}

namespace {

/// Whether the word is a sign or none, and digits with a point among them or none.
bool isNumber(std::string_view word) noexcept {
    if (word.front() == '+' || word.front() == '-') word.remove_prefix(1);
    std::size_t digits = 0;
    std::size_t points = 0;
    for (const char character : word) {
        digits += Spelling::isDigit(character) ? 1U : 0U;
        points += character == '.' ? 1U : 0U;
    }
    return digits != 0 && points <= 1 && digits + points == word.size();
}

} // namespace

void ValueScanner::packNumber(std::string_view word, std::uint64_t offset) {
    using Host::StrConv::num;
    if (ShortNumber number; number.parse(word)) {
        packer_.number(word, number.integer, number.fraction, number.canonical);
        return;
    }
    if (!isNumber(word)) damaged(offset, "this is no number");
    if (word.find('.') == std::string_view::npos) {
        const auto integer = num<std::int64_t>(word);
        if (!integer) damaged(offset, "this number is too large");
        packer_.number(word, *integer, 0, false);
        return;
    }
    canonical_.clear();
    Spelling::appendReal(canonical_, word);
    const std::string_view real = canonical_;
    const std::size_t point = real.find('.');
    const auto integer = num<std::int64_t>(real.substr(0, point));
    const auto fraction = point == std::string_view::npos
                              ? std::uint64_t{0}
                              : *num<std::uint64_t>(real.substr(point + 1));
    packer_.number(real, *integer, fraction, false);
}

void ValueScanner::packReference(std::uint64_t offset) {
    if (entries_ == nullptr) {
        if (!packer_.reference()) damaged(offset, "this follows no two numbers of a reference");
        return;
    }
    const auto reference = packer_.takeReference();
    if (!reference) damaged(offset, "this follows no two numbers of a reference");
    const std::uint32_t id = entries_->newNumber(reference->id, reference->generation);
    id != 0 ? packer_.reference(id) : packer_.nothing();
}

} // namespace Libraries::Files::PDF
