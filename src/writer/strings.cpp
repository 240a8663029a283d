#include "writer/strings.h"

#include "host/windows_1252.h"
#include "values/failure.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace Libraries::Files::PDF {

using Libraries::Strings::Encodings::ANSI::Windows_1252;

namespace {

constexpr std::string_view escaped = "\r\b\t\n\f()\\";
constexpr std::string_view escapes = "rbtnf()\\";

constexpr std::array<bool, 0x7F> plainCodes = [] {
    std::array<bool, 0x7F> plain{};
    for (std::size_t code = 0; code < plain.size(); ++code) {
        plain[code] = escaped.find(static_cast<char>(code)) == std::string_view::npos;
    }
    return plain;
}();

bool isPlain(char32_t code) noexcept {
    return code < plainCodes.size() && plainCodes[code];
}

bool writeOctal(Output& output, unsigned code) noexcept {
    const char text[] = {'\\', static_cast<char>('0' + (code >> 6)),
                         static_cast<char>('0' + (code >> 3 & 7U)),
                         static_cast<char>('0' + (code & 7U))};
    return output.append(std::string_view(text, sizeof(text)));
}

bool writeSpecial(Output& output, char32_t code) noexcept {
    if (code < 0x7F) {
        const std::size_t known = escaped.find(static_cast<char>(code));
        return output.append('\\') && output.append(escapes[known]);
    }
    if (code <= 0xFF) return writeOctal(output, code);
    const std::optional<std::uint8_t> byte = Windows_1252::fromUnicode(code);
    if (byte) return writeOctal(output, *byte);
    report(LogLevel::Error, "Failed to convert character: ", std::uint32_t{code});
    return fail(InvalidArgument, "Failed to convert string to PDF compatible string");
}

} // namespace

bool writeLiteralString(Output& output, const Host::String& text) noexcept {
    bool written = output.append('(');
    const std::uint64_t length = text.length();
    const std::string_view narrow = text.narrow();
    for (std::uint64_t index = 0; index < length && written;) {
        std::size_t run = 0;
        while (index + run < narrow.size() &&
               isPlain(static_cast<unsigned char>(narrow[index + run]))) {
            ++run;
        }
        written = output.append(narrow.substr(std::min<std::size_t>(index, narrow.size()), run));
        index += run;
        if (index == length || !written) break;
        const char32_t code = text[index++];
        written =
            isPlain(code) ? output.append(static_cast<char>(code)) : writeSpecial(output, code);
    }
    return written && output.append(')');
}

bool writeHexString(Output& output, std::span<const std::uint8_t> bytes) noexcept {
    constexpr std::string_view digits = "0123456789ABCDEF";
    bool written = output.append('<');
    for (std::uint8_t byte : bytes) {
        const char pair[] = {digits[byte >> 4], digits[byte & 0x0FU]};
        written = written && output.append(std::string_view(pair, 2));
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
