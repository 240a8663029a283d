#include "generator/spelling.h"

namespace Generator {

namespace {

constexpr std::string_view delimiters = "()<>[]{}/%";

bool isRegular(char character) {
    return delimiters.find(character) == std::string_view::npos;
}

std::string octal(unsigned code, std::size_t digits) {
    std::string text;
    for (; digits > 0; --digits)
        text += static_cast<char>('0' + (code >> (3 * (digits - 1)) & 7U));
    return text;
}

} // namespace

std::string Spelling::blank() {
    if (!wild_) return " ";
    static constexpr std::string_view blanks[] = {" ",
                                                  " ",
                                                  " ",
                                                  "\n",
                                                  "\r\n",
                                                  "\r",
                                                  "\t",
                                                  "\f",
                                                  "  \n ",
                                                  std::string_view("\0", 1),
                                                  " % a comment (with [ all >> sorts\n",
                                                  "%\r",
                                                  "\n%%EOF\r\n"};
    return std::string(random_.oneOf(blanks));
}

std::string Spelling::join(const Tokens& tokens) {
    std::string text;
    for (const std::string& token : tokens) {
        const bool apart = !text.empty() && isRegular(text.back()) && isRegular(token.front());
        // A solidus alone is a name: what follows must not become one with it.
        const bool afterEmptyName = text.ends_with('/') && isRegular(token.front());
        if (apart || afterEmptyName || random_.chance(wild_ ? 40 : 70)) text += blank();
        text += token;
    }
    return text;
}

std::string Spelling::array(const Tokens& items) {
    Tokens tokens = {"["};
    tokens.insert(tokens.end(), items.begin(), items.end());
    tokens.emplace_back("]");
    return join(tokens);
}

std::string Spelling::dictionary(const Entries& entries) {
    Tokens tokens = {"<<"};
    for (const auto& [key, value] : entries) {
        tokens.push_back(key);
        tokens.push_back(value);
    }
    tokens.emplace_back(">>");
    return join(tokens);
}

std::string Spelling::number() {
    static constexpr std::string_view odd[] = {"+5",
                                               "007",
                                               "-0",
                                               "1.50",
                                               ".5",
                                               "5.",
                                               "-.5",
                                               "+.5",
                                               "-00.1",
                                               "0.001",
                                               "-0.000007",
                                               "2147483647",
                                               "4294967296",
                                               "-2147483648",
                                               "-12.",
                                               "+0",
                                               "9007199254740993",
                                               "0.12345678901234567890123",
                                               "00000000000000000012",
                                               "3.14159265358979"};
    if (random_.chance(40)) return std::string(random_.oneOf(odd));
    const std::string integer = std::to_string(random_.below(2000));
    const std::string sign = random_.chance(20) ? "-" : "";
    return sign + integer + (random_.chance(30) ? "." + std::to_string(random_.below(1000)) : "");
}

std::string Spelling::string() {
    return random_.chance(60) ? literal() : hexadecimal();
}

std::string Spelling::literal() {
    static constexpr std::string_view marks[] = {"\xFE\xFF", "\xFF\xFE", "\xEF\xBB\xBF",
                                                 "\\376\\377"};
    std::string text = "(";
    if (random_.chance(15)) text += random_.oneOf(marks);
    for (std::size_t left = random_.below(14); left > 0; --left)
        text += literalPiece();
    return text + ")";
}

std::string Spelling::literalPiece() {
    static constexpr std::string_view pieces[] = {
        "a",         "B ",   "\\n",  "\\r",    "\\t",    "\\b",   "\\f",  "\\(",  "\\)",  "\\\\",
        "(in(ner))", "\\\n", "\\\r", "\\\r\n", "\\q",    "\\8",   "\r",   "\n",   "\r\n", "\t",
        "%",         "<<",   "\\0",  "\\53",   "\\1234", "\\777", "\xE9", "\x81", "\xFF"};
    if (random_.chance(70)) return std::string(random_.oneOf(pieces));
    const auto code = static_cast<unsigned>(random_.below(256));
    if (random_.chance(50)) return "\\" + octal(code, 3);
    if (code == '(' || code == ')' || code == '\\') return "x";
    return {static_cast<char>(code)};
}

std::string Spelling::hexadecimal() {
    std::string text = "<";
    if (random_.chance(15)) text += "fEfF";
    for (std::size_t left = random_.below(12); left > 0; --left) {
        text += "0123456789abcdefABCDEF"[random_.below(22)]; // an odd number of digits as well
        if (random_.chance(10)) text += " \n\r\t\f"[random_.below(5)];
    }
    return text + ">";
}

std::string Spelling::name() {
    static constexpr std::string_view pieces[] = {"A",   "b",   "Name", "#20", "#2F", "#23",  "#e9",
                                                  "#41", ".",   "-",    "*",   "1",   "\xE9", "~",
                                                  "#0A", "#28", "#7f",  "|",   "'",   "!"};
    std::string text = "/";
    for (std::size_t left = random_.below(5) + (random_.chance(95) ? 1 : 0); left > 0; --left)
        text += random_.oneOf(pieces);
    return text;
}

std::string Spelling::value(unsigned depth, const Tokens& references) {
    switch (random_.below(depth == 0 ? 8 : 12)) {
    case 0:
    case 1:
        return number();
    case 2:
    case 3:
        return string();
    case 4:
        return name();
    case 5:
        return random_.chance(50) ? "true" : "false";
    case 6:
        return "null";
    case 7:
        return references.empty() ? number() : random_.oneOf(references);
    default:
        return container(depth, references);
    }
}

std::string Spelling::container(unsigned depth, const Tokens& references) {
    Tokens items;
    for (std::size_t left = random_.below(6); left > 0; --left)
        items.push_back(value(depth - 1, references));
    if (random_.chance(50)) return array(items);
    Entries entries;
    for (std::string& item : items) // a number makes each key another one
        entries.emplace_back(name() + "_" + std::to_string(entries.size()), std::move(item));
    return dictionary(entries);
}

} // namespace Generator
