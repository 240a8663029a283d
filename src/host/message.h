#pragma once

#include <host/error.h>
#include <host/log.h>
#include <host/ref.h>
#include <host/string.h>

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Host {

/// A piece of a message: 8-bit codes, each of which prints as the character of its code.
struct Codes {
    std::string_view bytes;
};

/// Puts the text of one log message together from its pieces.
class Message {
public:
    void add(std::string_view text) { text_ += text; }
    void add(const char* text) { text_ += text; }
    void add(const String& text) { text_ += text.utf8(); }
    void add(char32_t character);
    void add(Codes codes);

    /// A number prints as 508h (1288).
    template <std::unsigned_integral Number>
    void add(Number number) {
        addNumber(number);
    }
    template <class Kind>
    requires std::is_enum_v<Kind>
    void add(Kind kind) { addNumber(static_cast<std::uint64_t>(kind)); }
    /// A text prints as it is. Any other object prints in its text form.
    template <class T>
    void add(const Ref<T>& object) {
        if (!object) return;
        if constexpr (requires { object->asText(); }) {
            if (const Ref<String> text = object->asText()) add(*text);
        } else {
            add(*object);
        }
    }

    [[nodiscard]] std::string_view text() const noexcept { return text_; }

private:
    void addNumber(std::uint64_t number);

    std::string text_;
};

/// Writes one message if the log takes it. Otherwise it does not even put the message together.
/// When memory is exhausted the message is lost.
template <class... Pieces>
void log(std::uint32_t filter, LogLevel level, const Pieces&... pieces) noexcept {
    if (!SysLogStream::takes(filter, level)) return;
    const std::uint32_t code = Error::get();
    try {
        Message message;
        (message.add(pieces), ...);
        message.add("\n");
        SysLogStream::printer().print(filter, level, message.text());
    } catch (const std::exception&) {
    }
    Error::set(code);
}

/// The result of a failed operation. It converts to the "no result" of any result type.
struct NoResult {
    template <class T>
    operator Ref<T>() const noexcept {
        return nullptr;
    }
    template <class T>
    operator std::vector<T>() const noexcept {
        return {};
    }
    operator bool() const noexcept { return false; }
};

} // namespace Host
