#include "writer/strings.h"

#include "host/windows_1252.h"
#include "spelling/digits.h"
#include "spelling/strings.h"
#include "values/failure.h"

#include <algorithm>
#include <string_view>

namespace Libraries::Files::PDF {

using Libraries::Strings::Encodings::ANSI::Windows_1252;

namespace {

bool writeCode(Output& output, char32_t code) noexcept {
    const auto byte =
        code > 0xFF ? Windows_1252::fromUnicode(code) : static_cast<std::uint8_t>(code);
    if (byte) return output.append(Spelling::literalCodes[*byte]);
    report(LogLevel::Error, "Failed to convert character: ", std::uint32_t{code});
    return fail(InvalidArgument, "Failed to convert string to PDF compatible string");
}

} // namespace

bool writeLiteralString(Output& output, const Host::String& text) noexcept {
    bool written = output.append('(');
    const std::uint64_t length = text.length();
    const std::string_view narrow = text.narrow();
    for (std::uint64_t index = 0; index < length && written;) {
        const auto rest = narrow.substr(std::min<std::size_t>(index, narrow.size()));
        const std::size_t run = Spelling::notPlainInLiteral.find(rest);
        written = output.append(rest.substr(0, run));
        index += run;
        if (index == length || !written) break;
        written = writeCode(output, text[index++]);
    }
    return written && output.append(')');
}

bool writeHexString(Output& output, std::span<const std::uint8_t> bytes) noexcept {
    bool written = output.append('<');
    for (std::uint8_t byte : bytes) {
        const auto pair = Spelling::hexOf(byte);
        written = written && output.append(std::string_view(pair.data(), pair.size()));
    }
    return written && output.append('>');
}

bool writeCodes(Output& output, const Host::String& text) noexcept {
    if (text.isNarrow()) return output.append(text.narrow());
    for (std::uint64_t index = 0; index < text.length(); ++index) {
        if (!output.append(static_cast<char>(text[index]))) return false;
    }
    return true;
}

} // namespace Libraries::Files::PDF
