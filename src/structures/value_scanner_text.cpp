#include "spelling/digits.h"
#include "spelling/names.h"
#include "spelling/strings.h"
#include "structures/flaw.h"
#include "structures/syntax.h"
#include "structures/value_scanner.h"

namespace Libraries::Files::PDF {

using Host::Cursor;

/// The name whose solidus was read.
Value::Type ValueScanner::readName() {
    const std::string_view ahead = cursor().ahead();
    const std::size_t plain = Spelling::notPlainInName.find(ahead);
    if (plain != 0 && plain < ahead.size() && Syntax::wordEnd.has(ahead[plain])) {
        packer_.name(ahead.substr(0, plain));
        cursor().skip(plain);
        return Value::Type::Name;
    }
    completeName();
    if (text_.empty()) {
        packer_.emptyName();
        return Value::Type::Null;
    }
    packer_.name(canonical_);
    return Value::Type::Name;
}

void ValueScanner::completeName() {
    const std::uint64_t offset = here();
    text_.clear();
    for (int code = cursor().next(); code != Cursor::end; code = cursor().next()) {
        if (Syntax::wordEnd.has(code)) {
            cursor().back();
            break;
        }
        text_.push_back(static_cast<char>(code));
    }
    canonical_.clear();
    for (std::string_view left = text_; !left.empty();) {
        if (left.front() == '#' && Spelling::encodedCode(left) <= 0) {
            damaged(offset, "in this name a number sign encodes nothing");
        }
        Spelling::appendNameCharacter(canonical_, Spelling::takeNameCharacter(left));
    }
}

/// The literal string whose parenthesis was read (ISO 32000-1, 7.3.4.2).
void ValueScanner::readLiteral() {
    const std::string_view ahead = cursor().ahead();
    const std::size_t plain = Syntax::notPlainInString.find(ahead);
    if (!hexadecimal_ && plain < ahead.size() && ahead[plain] == ')') {
        packer_.beginText();
        packer_.plainText(ahead.substr(0, plain));
        packer_.endText();
        cursor().skip(plain + 1);
        return;
    }
    completeLiteral();
    packString(text_);
}

void ValueScanner::completeLiteral() {
    const std::uint64_t offset = here();
    text_.clear();
    for (std::uint64_t depth = 0;;) {
        const std::string_view ahead = cursor().ahead();
        const std::size_t run = Syntax::stringStop.find(ahead);
        text_.append(ahead, 0, run);
        cursor().skip(run);
        const int code = cursor().next();
        if (code == ')' && depth == 0) return;
        switch (code) {
        case Cursor::end:
            damaged(offset, "this string does not end");
        case '\\':
            readEscape();
            continue;
        case '\r':
            skipLineFeed();
            text_.push_back('\n');
            continue;
        case '(':
            ++depth;
            break;
        case ')':
            --depth;
            break;
        default:
            break;
        }
        text_.push_back(static_cast<char>(code));
    }
}

/// What stands behind a backslash. One that makes no escape counts for nothing.
void ValueScanner::readEscape() {
    int code = cursor().next();
    if (code == Cursor::end || code == '\n') return;
    if (code == '\r') return skipLineFeed();
    if (!Spelling::isOctal(code)) {
        const char letter = static_cast<char>(code);
        text_.push_back(Spelling::escapedBy(letter).value_or(letter));
        return;
    }
    char digits[3];
    std::size_t count = 0;
    for (; count < sizeof(digits) && Spelling::isOctal(code); code = cursor().next())
        digits[count++] = static_cast<char>(code);
    if (code != Cursor::end) cursor().back();
    text_.push_back(static_cast<char>(Spelling::octalValue({digits, count}) & 0xFFU));
}

void ValueScanner::skipLineFeed() noexcept {
    const int code = cursor().next();
    if (code != Cursor::end && code != '\n') cursor().back();
}

/// The hexadecimal string whose bracket, and `code` behind it, were read.
void ValueScanner::readHexadecimal(int code) {
    const std::uint64_t offset = here() - 1;
    packer_.beginHexadecimal();
    int high = -1;
    for (; code != '>'; code = cursor().next()) {
        if (Spelling::isReadAsWhite(code)) continue;
        const int digit = Spelling::hexValue(code);
        if (digit < 0) damaged(offset, "this string has something else than hexadecimal digits");
        if (high >= 0) packer_.byte(static_cast<std::uint8_t>(high << 4 | digit));
        high = high >= 0 ? -1 : digit;
    }
    if (high >= 0) packer_.byte(static_cast<std::uint8_t>(high << 4));
    packer_.endHexadecimal();
}

void ValueScanner::packString(std::string_view bytes) {
    if (!hexadecimal_ && Spelling::isLiteral(bytes)) {
        packer_.beginText();
        for (const char byte : bytes)
            packer_.character(Spelling::codeOf(byte));
        packer_.endText();
        return;
    }
    packer_.beginHexadecimal();
    for (const char byte : bytes)
        packer_.byte(static_cast<std::uint8_t>(byte));
    packer_.endHexadecimal();
}

} // namespace Libraries::Files::PDF
