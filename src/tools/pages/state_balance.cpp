#include "tools/pages/state_balance.h"

#include "spelling/characters.h"

#include <algorithm>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

namespace {

using Spelling::isRegular;
using Spelling::isWhite;

/// Walks the operators of a content stream, and what stands between them.
class Operators {
public:
    explicit Operators(std::string_view content) noexcept : content_(content) {}

    /// The next word that is no name; empty at the end.
    std::string_view next() noexcept {
        while (at_ < content_.size()) {
            const char code = content_[at_];
            if (isRegular(code)) return word();
            ++at_;
            if (code == '%') skipTo("\r\n");
            if (code == '/') word();
            if (code == '(') skipText();
            if (code == '<' && !take('<')) skipTo(">");
        }
        return {};
    }

    /// Goes behind the data of an inline image (ISO 32000-1, 8.9.7), to which ID leads.
    void skipImage() noexcept {
        constexpr std::string_view end = "EI";
        for (std::size_t place = at_;; place += end.size()) {
            place = content_.find(end, place);
            if (place == std::string_view::npos) {
                at_ = content_.size();
                return;
            }
            if (isWhite(content_[place - 1]) && isContent(content_.substr(place + end.size()))) {
                at_ = place + end.size();
                return;
            }
        }
    }

private:
    std::string_view word() noexcept {
        const std::size_t begin = at_;
        while (at_ < content_.size() && isRegular(content_[at_]))
            ++at_;
        return content_.substr(begin, at_ - begin);
    }

    bool take(char code) noexcept {
        if (at_ == content_.size() || content_[at_] != code) return false;
        ++at_;
        return true;
    }

    void skipTo(std::string_view stops) noexcept {
        at_ = std::min(content_.find_first_of(stops, at_), content_.size());
    }

    void skipText() noexcept {
        for (std::uint64_t depth = 1; depth != 0 && at_ < content_.size(); ++at_) {
            const char code = content_[at_];
            if (code == '\\' && at_ + 1 < content_.size()) ++at_;
            if (code == '(') ++depth;
            if (code == ')') --depth;
        }
    }

    /// Whether that may follow an image, which may hold the letters of its end itself.
    static bool isContent(std::string_view rest) noexcept {
        constexpr std::size_t enough = 10;
        if (!rest.empty() && isRegular(rest.front())) return false;
        return std::ranges::all_of(rest.substr(0, enough), [](char code) {
            return isWhite(code) || (code > ' ' && code <= '~');
        });
    }

    std::string_view content_;
    std::size_t at_ = 0;
};

/// Calls `visit` with each word that may be an operator.
template <class Visit>
void visitOperators(std::string_view content, Visit visit) noexcept {
    Operators operators(content);
    bool inImage = false;
    for (auto word = operators.next(); !word.empty(); word = operators.next()) {
        visit(word);
        if (word == "BI") inImage = true;
        if (word == "ID" && inImage) {
            operators.skipImage();
            inImage = false;
        }
    }
}

} // namespace

StateBalance stateBalanceOf(std::string_view content) noexcept {
    StateBalance balance;
    visitOperators(content, [&](std::string_view word) {
        if (word == "q") ++balance.saved;
        if (word == "Q" && balance.saved == 0) {
            ++balance.restored;
        } else if (word == "Q") {
            --balance.saved;
        }
    });
    return balance;
}

void dropSurplus(std::string& content, std::uint64_t open) noexcept {
    visitOperators(content, [&](std::string_view word) {
        if (word == "q") ++open;
        if (word == "Q" && open == 0) {
            content[static_cast<std::size_t>(word.data() - content.data())] = ' ';
        } else if (word == "Q") {
            --open;
        }
    });
}

} // namespace Libraries::Files::PDF::Tools
