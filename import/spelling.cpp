#include "spelling.h"

#include "spelling/digits.h"
#include "spelling/names.h"
#include "spelling/numbers.h"
#include "spelling/strings.h"

namespace Libraries::Files::PDF::Import::Spelling {

using namespace PDF::Spelling;

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
        text += literalCodes[codeOf(character)].view();
    text += ')';
}

void appendHexString(std::string& text, std::string_view bytes) {
    text += '<';
    for (const char character : bytes)
        appendHex(text, codeOf(character));
    text += '>';
}

void appendReal(std::string& text, std::string_view real) {
    PDF::Spelling::appendReal(text, real);
}

} // namespace Libraries::Files::PDF::Import::Spelling
