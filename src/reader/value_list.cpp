#include "reader/characters.h"
#include "reader/scanner.h"
#include "values/array.h"
#include "values/failure.h"
#include "values/nesting.h"

#include <limits>
#include <utility>

namespace Libraries::Files::PDF {

using Characters::isWhite;
using Host::Cursor;

Ref<Dictionary> Scanner::readDictionary() {
    int former = cursor_.next();
    while (former != Cursor::end) {
        const int code = cursor_.next();
        if (former == '<' && code == '<') return readDictionaryBody(cursor_.position() - 2);
        former = code;
    }
    return nullptr;
}

Ref<Dictionary> Scanner::readDictionaryBody(std::uint64_t offset) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return nullptr;
    const std::size_t first = items_.size();
    Ref<Dictionary> dict;
    if (readValueList(List::Dictionary, first)) dict = takeDictionary(first, offset);
    items_.resize(first);
    return dict;
}

Ref<Array> Scanner::readArray() {
    const Nesting nesting(depth_);
    if (nesting.tooDeep()) return nullptr;
    const std::size_t first = items_.size();
    Ref<Array> array;
    if (readValueList(List::Array, first)) array = takeArray(first);
    items_.resize(first);
    return array;
}

Ref<Value> Scanner::takeValue(Item& item) {
    if (!item.isNumber()) return std::move(item.value);
    return makeOrThrow<NumberObj>(item.integer, item.fraction);
}

Ref<Array> Scanner::takeArray(std::size_t first) {
    ArrayObj::Elements elements;
    elements.reserve(items_.size() - first);
    for (std::size_t index = first; index < items_.size(); ++index) {
        elements.push_back(takeValue(items_[index]));
    }
    return makeOrThrow<ArrayObj>(std::move(elements));
}

Ref<Dictionary> Scanner::takeDictionary(std::size_t first, std::uint64_t offset) {
    const std::size_t count = items_.size() - first;
    if (count % 2 != 0) {
        return refuse("Uneven number of values in dictionary: ", count, "; offset: ", offset);
    }
    DictionaryObj::Entries entries;
    entries.reserve(count / 2);
    for (std::size_t index = first; index < items_.size(); index += 2) {
        const NameObj* key = static_cast<NameObj*>(ofKind<Name>(items_[index].value));
        if (key == nullptr) return refuse("Expected identifier in dictionary at ", offset);
        entries.push_back({key->text(), takeValue(items_[index + 1])});
    }
    return makeOrThrow<DictionaryObj>(std::move(entries));
}

bool Scanner::readValueList(List mode, std::size_t first) {
    token_.clear();
    for (;;) {
        const int code = cursor_.next();
        if (code == Cursor::end) return false;
        switch (code) {
        case '<':
            if (!readAngle(first)) return false;
            break;
        case '%':
            if (!completeToken(first) || !skipComment()) return false;
            break;
        case '/':
        case '(':
        case '[': {
            const std::uint64_t offset = cursor_.position() - 1;
            if (!completeToken(first) || !readNested(code, offset)) return false;
            break;
        }
        case ']':
            if (mode == List::Array) return completeToken(first);
            appendToToken(code, cursor_.position() - 1);
            break;
        case '>':
            if (mode == List::Dictionary && !token_.empty() && token_.back() == '>') {
                token_.pop_back();
                return completeToken(first);
            }
            appendToToken(code, cursor_.position() - 1);
            break;
        default:
            if (isWhite(code) ? !completeToken(first) : !readWord(code, mode, first)) return false;
        }
    }
}

bool Scanner::readWord(int code, List mode, std::size_t first) {
    const std::uint64_t offset = cursor_.position() - 1;
    const std::string_view ahead = cursor_.ahead();
    const std::size_t rest = Characters::tokenStop.find(ahead);
    const bool simpleEnd = rest < ahead.size() && ahead[rest] != '<' && ahead[rest] != '>' &&
                           (ahead[rest] != ']' || mode == List::Array);
    if (token_.empty() && simpleEnd) {
        cursor_.skip(rest);
        return pushToken({ahead.data() - 1, rest + 1}, offset, first);
    }
    appendToToken(code, offset);
    token_.append(ahead, 0, rest);
    cursor_.skip(rest);
    return true;
}

bool Scanner::readAngle(std::size_t first) {
    const std::uint64_t offset = cursor_.position() - 1;
    const int next = cursor_.next();
    if (next == Cursor::end) return false;
    if (next == '<') return completeToken(first) && pushDictionary(offset);
    if (next == '>' || Characters::hexValue(next) >= 0) {
        if (!completeToken(first)) return false;
        Ref<Value> string = readHexString(next);
        if (!string) return refuse("Failed to read hex string in value list at offset ", offset);
        push(std::move(string));
        return true;
    }
    cursor_.back();
    appendToToken('<', offset);
    return true;
}

bool Scanner::readNested(int code, std::uint64_t offset) {
    Ref<Value> value;
    if (code == '/') {
        value = readName();
        if (!value) return refuse("Failed to read identifier in array at ", offset);
    } else if (code == '(') {
        value = readLiteralString();
        if (!value) return refuse("Failed to read string in array at offset ", offset);
    } else {
        value = readArray();
        if (!value) return refuse("Failed to read array in array at offset ", offset);
    }
    push(std::move(value));
    return true;
}

bool Scanner::pushDictionary(std::uint64_t offset) {
    Ref<Value> dict = readDictionaryBody(offset);
    if (!dict) return refuse("Failed to read dictionary in array at offset ", offset);
    push(std::move(dict));
    return true;
}

bool Scanner::skipComment() noexcept {
    for (int code = cursor_.next(); code != Cursor::end; code = cursor_.next()) {
        if (Characters::isLineEnding(code)) return true;
    }
    return false;
}

bool Scanner::completeToken(std::size_t first) {
    if (token_.empty()) return true;
    const bool pushed = pushToken(token_, tokenOffset_, first);
    token_.clear();
    return pushed;
}

bool Scanner::pushToken(std::string_view token, std::uint64_t offset, std::size_t first) {
    if (token == "R") return pushReference(offset + 1, first);
    if (token == "true" || token == "false") {
        push(boolean(token == "true"));
        return true;
    }
    if (token == "null") {
        if (!null_) null_ = makeOrThrow<NullObj>();
        push(null_);
        return true;
    }
    std::optional<Item> number = readNumber(token, offset, Place::ValueList);
    if (!number) return false;
    items_.push_back(std::move(*number));
    return true;
}

bool Scanner::pushReference(std::uint64_t end, std::size_t first) {
    const auto whole = [](const Item& item) { return item.isNumber() && item.fraction == 0; };
    const std::size_t count = items_.size();
    if (count - first < 2 || !whole(items_[count - 2]) || !whole(items_[count - 1]) ||
        items_[count - 2].integer > std::numeric_limits<std::uint32_t>::max() ||
        items_[count - 1].integer > std::numeric_limits<std::uint16_t>::max()) {
        return refuse("Invalid object reference in array before ", end);
    }
    // Negative numbers pass and wrap, as the bounds above are the only ones.
    const auto generation = static_cast<std::uint16_t>(items_[count - 1].integer);
    items_.pop_back();
    items_.back() = {makeOrThrow<ObjectRefObj>(
                         static_cast<std::uint32_t>(items_[count - 2].integer), generation),
                     0, 0};
    return true;
}

} // namespace Libraries::Files::PDF
