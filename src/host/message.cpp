#include "host/message.h"

#include "host/unicode.h"

namespace Host {

void Message::add(char32_t character) {
    Unicode::appendUtf8(text_, character);
}

void Message::add(Codes codes) {
    for (char code : codes.bytes)
        add(static_cast<char32_t>(static_cast<unsigned char>(code)));
}

void Message::addNumber(std::uint64_t number) {
    char digits[20];
    const auto hex = std::to_chars(digits, digits + sizeof(digits), number, 16).ptr;
    for (char* digit = digits; digit != hex; ++digit) {
        text_ += *digit >= 'a' ? static_cast<char>(*digit - 'a' + 'A') : *digit;
    }
    text_ += "h (";
    text_.append(digits, std::to_chars(digits, digits + sizeof(digits), number).ptr);
    text_ += ")";
}

} // namespace Host
