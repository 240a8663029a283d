#include "reader/characters.h"
#include "reader/scanner.h"
#include "spelling/digits.h"
#include "values/failure.h"
#include "values/nesting.h"

namespace Libraries::Files::PDF {

using Characters::isWhite;
using Host::Cursor;

bool Scanner::readDictionary() {
    begin();
    kind_ = Value::Type::Dictionary;
    int former = cursor_.next();
    while (former != Cursor::end) {
        const int code = cursor_.next();
        if (former == '<' && code == '<') return readDictionaryBody(cursor_.position() - 2);
        former = code;
    }
    return false;
}

bool Scanner::readElements() {
    begin();
    kind_ = Value::Type::Array;
    return readArray();
}

bool Scanner::readDictionaryBody(std::uint64_t offset) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return false;
    Packer::List list;
    packer_.beginDictionary(list);
    return readList(Mode::Dictionary) && endDictionary(list, offset);
}

bool Scanner::endDictionary(Packer::List& list, std::uint64_t offset) {
    switch (packer_.endDictionary(list)) {
    case Packer::Ending::Uneven:
        return refuse("Uneven number of values in dictionary: ", list.count(),
                      "; offset: ", offset);
    case Packer::Ending::KeyIsNoName:
        return refuse("Expected identifier in dictionary at ", offset);
    default:
        return true;
    }
}

bool Scanner::readArray() {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return false;
    Packer::List list;
    packer_.beginArray(list);
    if (!readList(Mode::Array)) return false;
    packer_.endArray(list);
    return true;
}

bool Scanner::readList(Mode mode) {
    token_.clear();
    for (;;) {
        const int code = cursor_.next();
        if (code == Cursor::end) return false;
        switch (code) {
        case '<':
            if (!readAngle()) return false;
            break;
        case '%':
            if (!completeToken() || !skipComment()) return false;
            break;
        case '/':
        case '(':
        case '[': {
            const std::uint64_t offset = cursor_.position() - 1;
            if (!completeToken() || !readNested(code, offset)) return false;
            break;
        }
        case ']':
            if (mode == Mode::Array) return completeToken();
            appendToToken(code, cursor_.position() - 1);
            break;
        case '>':
            if (mode == Mode::Dictionary && !token_.empty() && token_.back() == '>') {
                token_.pop_back();
                return completeToken();
            }
            appendToToken(code, cursor_.position() - 1);
            break;
        default:
            if (isWhite(code) ? !completeToken() : !readWord(code, mode)) return false;
        }
    }
}

bool Scanner::readWord(int code, Mode mode) {
    const std::uint64_t offset = cursor_.position() - 1;
    const std::string_view ahead = cursor_.ahead();
    const std::size_t rest = Characters::tokenStop.find(ahead);
    const bool simpleEnd = rest < ahead.size() && ahead[rest] != '<' && ahead[rest] != '>' &&
                           (ahead[rest] != ']' || mode == Mode::Array);
    if (token_.empty() && simpleEnd) {
        const std::string_view word = cursor_.lastAndAhead(rest);
        cursor_.skip(rest);
        return packToken(word, offset);
    }
    appendToToken(code, offset);
    token_.append(ahead, 0, rest);
    cursor_.skip(rest);
    return true;
}

bool Scanner::readAngle() {
    const std::uint64_t offset = cursor_.position() - 1;
    const int next = cursor_.next();
    if (next == Cursor::end) return false;
    if (next == '<') return completeToken() && readNestedDictionary(offset);
    if (next == '>' || Spelling::hexValue(next) >= 0) {
        if (!completeToken()) return false;
        return readHexString(next) ||
               refuse("Failed to read hex string in value list at offset ", offset);
    }
    cursor_.back();
    appendToToken('<', offset);
    return true;
}

bool Scanner::readNested(int code, std::uint64_t offset) {
    if (code == '/') {
        return readName() || refuse("Failed to read identifier in array at ", offset);
    }
    if (code == '(') {
        return readLiteralString() || refuse("Failed to read string in array at offset ", offset);
    }
    return readArray() || refuse("Failed to read array in array at offset ", offset);
}

bool Scanner::readNestedDictionary(std::uint64_t offset) {
    return readDictionaryBody(offset) ||
           refuse("Failed to read dictionary in array at offset ", offset);
}

bool Scanner::skipComment() noexcept {
    for (int code = cursor_.next(); code != Cursor::end; code = cursor_.next()) {
        if (Spelling::isLineEnding(code)) return true;
    }
    return false;
}

bool Scanner::completeToken() {
    if (token_.empty()) return true;
    const bool packed = packToken(token_, tokenOffset_);
    token_.clear();
    return packed;
}

bool Scanner::packToken(std::string_view token, std::uint64_t offset) {
    if (packWord(token, offset)) return true;
    unknownWord_ = offset;
    return false;
}

bool Scanner::packWord(std::string_view token, std::uint64_t offset) {
    if (token == "R") {
        return packer_.reference() ||
               refuse("Invalid object reference in array before ", offset + 1);
    }
    if (token == "true" || token == "false" || token == "null") {
        packer_.keyword(token);
        return true;
    }
    return packNumber(token, offset, Place::ValueList);
}

} // namespace Libraries::Files::PDF
