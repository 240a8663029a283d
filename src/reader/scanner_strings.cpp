#include "host/numbers.h"
#include "reader/scanner.h"
#include "spelling/digits.h"
#include "spelling/strings.h"
#include "values/failure.h"

#include <string>

namespace Libraries::Files::PDF {

using Host::Cursor;

namespace {

/// Reads the inside of a literal string (ISO 32000-1, 7.3.4.2), with two differences: line endings
/// must be escaped, and there is no escape for a backslash.
class LiteralReader {
public:
    LiteralReader(Cursor& cursor, Packer& packer) noexcept : cursor_(cursor), packer_(packer) {}

    /// Reads up to the closing parenthesis.
    [[nodiscard]] bool read();

private:
    enum class Step { Go, Close, Fail };

    [[nodiscard]] Step take(int code);
    [[nodiscard]] Step takeEscaped(int code);
    [[nodiscard]] Step takeLineEnding(int code, bool afterCarriageReturn) noexcept;
    [[nodiscard]] Step takePlain(int code);
    [[nodiscard]] bool completeOctal();
    void takeRun();
    void add(int code) { packer_.character(static_cast<std::uint32_t>(code)); }

    Cursor& cursor_;
    Packer& packer_;
    std::uint64_t depth_ = 0;
    bool escaped_ = false;
    bool continued_ = false;
    std::string octal_;
};

bool LiteralReader::read() {
    for (;;) {
        if (!escaped_ && !continued_ && octal_.empty()) takeRun();
        const int code = cursor_.next();
        if (code == Cursor::end) return false;
        const Step step = take(code);
        if (step != Step::Go) return step == Step::Close;
    }
}

void LiteralReader::takeRun() {
    const std::string_view ahead = cursor_.ahead();
    const std::size_t run = Spelling::notPlainInLiteral.find(ahead);
    packer_.plainText(ahead.substr(0, run));
    cursor_.skip(run);
}

LiteralReader::Step LiteralReader::take(int code) {
    const bool continued = continued_;
    continued_ = false;
    if (Spelling::isLineEnding(code)) return takeLineEnding(code, continued);
    if (code == '\\') {
        if (!completeOctal()) return Step::Fail;
        if (escaped_) packer_.lostBackslash();
        escaped_ = true;
        return Step::Go;
    }
    if (escaped_) return takeEscaped(code);
    if (octal_.size() < 3 && !octal_.empty() && Spelling::isOctal(code)) {
        octal_.push_back(static_cast<char>(code));
        return Step::Go;
    }
    return completeOctal() ? takePlain(code) : Step::Fail;
}

LiteralReader::Step LiteralReader::takeLineEnding(int code, bool afterCarriageReturn) noexcept {
    if (!escaped_ && !(code == '\n' && afterCarriageReturn)) return Step::Fail;
    continued_ = code == '\r';
    escaped_ = false;
    return Step::Go;
}

LiteralReader::Step LiteralReader::takeEscaped(int code) {
    escaped_ = false;
    if (Spelling::isOctal(code)) {
        octal_.push_back(static_cast<char>(code));
        return Step::Go;
    }
    const auto character = Spelling::escapedBy(static_cast<char>(code));
    if (!character) {
        report(LogLevel::Error, "Invalid escape character ", static_cast<char32_t>(code),
               " at offset ", cursor_.position() - 1);
        return Step::Fail;
    }
    add(*character);
    return Step::Go;
}

LiteralReader::Step LiteralReader::takePlain(int code) {
    if (code == ')' && depth_ == 0) return Step::Close;
    if (code == '(') ++depth_;
    if (code == ')') --depth_;
    add(code);
    return Step::Go;
}

bool LiteralReader::completeOctal() {
    if (octal_.empty()) return true;
    const auto code = Host::StrConv::num<std::uint32_t>(octal_, 8);
    if (!code) {
        return refuse("Invalid octal escape sequence ", octal_, "; offset ",
                      cursor_.position() - 1 - octal_.size());
    }
    packer_.character(*code);
    octal_.clear();
    return true;
}

} // namespace

bool Scanner::readLiteralString() {
    packer_.beginText();
    if (!LiteralReader(cursor_, packer_).read()) return false;
    packer_.endText();
    return true;
}

bool Scanner::readHexString(int firstDigit) {
    packer_.beginHexadecimal();
    int high = -1;
    for (int code = firstDigit; code != '>'; code = cursor_.next()) {
        if (code == Cursor::end) return false;
        const int digit = Spelling::hexValue(code);
        if (digit < 0) continue;
        if (high >= 0) packer_.byte(static_cast<std::uint8_t>(high << 4 | digit));
        high = high >= 0 ? -1 : digit;
    }
    if (high >= 0) packer_.byte(static_cast<std::uint8_t>(high << 4));
    packer_.endHexadecimal();
    return true;
}

} // namespace Libraries::Files::PDF
