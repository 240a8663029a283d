#include "spelling.h"

#include "spelling/spelling.h"

namespace Libraries::Files::PDF::Import::Spelling {

using namespace PDF::Spelling;

namespace {

void appendCharacter(std::string& text, char character) {
    const unsigned code = codeOf(character);
    const std::size_t known = escaped.find(character);
    if (known != std::string_view::npos) {
        text += '\\';
        text += escapes[known];
    } else if (code >= 0x80) {
        text += '\\';
        for (const unsigned shift : {6U, 3U, 0U})
            text += static_cast<char>('0' + (code >> shift & 7U));
    } else {
        text += character;
    }
}

} // namespace

void appendName(std::string& text, std::string_view name) {
    text += '/';
    // libqpdf keeps a number sign that encodes nothing as NUL, which no name holds.
    for (const char character : name.substr(1))
        appendNameCharacter(text, character == '\0' ? '#' : character);
}

void appendString(std::string& text, std::string_view bytes) {
    if (!isLiteral(bytes)) {
        appendHexString(text, bytes);
        return;
    }
    text += '(';
    for (const char character : bytes)
        appendCharacter(text, character);
    text += ')';
}

void appendHexString(std::string& text, std::string_view bytes) {
    text += '<';
    for (const char character : bytes)
        appendHex(text, character);
    text += '>';
}

void appendReal(std::string& text, std::string_view real) {
    PDF::Spelling::appendReal(text, real);
}

} // namespace Libraries::Files::PDF::Import::Spelling
