#include "structures/tokens.h"

#include "host/numbers.h"
#include "spelling/digits.h"
#include "structures/flaw.h"
#include "structures/syntax.h"

namespace Libraries::Files::PDF {

using Host::Cursor;

std::uint64_t Tokens::skipSpace() noexcept {
    int code = cursor_.next();
    while (Spelling::isReadAsWhite(code) || code == '%') {
        while (code == '%') {
            do {
                code = cursor_.next();
            } while (code != Cursor::end && !Spelling::isLineEnding(code));
        }
        if (code != Cursor::end) code = cursor_.next();
    }
    if (code != Cursor::end) cursor_.back();
    return cursor_.position();
}

std::string_view Tokens::word() {
    wordOffset_ = skipSpace();
    word_.clear();
    // What is at hand may be nothing yet.
    const int first = cursor_.next();
    if (first == Cursor::end) return {};
    if (Syntax::wordEnd.has(first)) {
        cursor_.back();
        return {};
    }
    const std::string_view ahead = cursor_.ahead();
    const std::size_t rest = Syntax::wordEnd.find(ahead);
    if (rest < ahead.size()) {
        const std::string_view word = cursor_.lastAndAhead(rest);
        cursor_.skip(rest);
        return word;
    }
    for (int code = first; code != Cursor::end; code = cursor_.next()) {
        if (Syntax::wordEnd.has(code)) {
            cursor_.back();
            break;
        }
        word_.push_back(static_cast<char>(code));
    }
    return word_;
}

std::uint64_t Tokens::number(const char* expected) {
    const auto number = wholeNumber(word());
    if (!number) damaged(wordOffset_, expected);
    return *number;
}

void Tokens::keyword(std::string_view keyword, const char* expected) {
    if (word() != keyword) damaged(wordOffset_, expected);
}

std::optional<std::uint64_t> wholeNumber(std::string_view digits) noexcept {
    if (digits.empty() || !Spelling::isDigit(digits.front())) return std::nullopt;
    return Host::StrConv::num<std::uint64_t>(digits);
}

std::optional<std::uint64_t> wholePacked(std::string_view packed) noexcept {
    // Many streams may have one Length, of thousands of zeros.
    constexpr std::size_t longest = 1024;
    if (packed.size() > longest) return std::nullopt;
    if (packed.find('.') != std::string_view::npos) return std::nullopt;
    return wholeNumber(packed.substr(packed.find('\n') + 1));
}

} // namespace Libraries::Files::PDF
