#pragma once

#include <host/error.h>
#include <host/ref.h>
#include <pdf/values.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace Libraries::Files::PDF::Tools {

/// Logs a message as an error through the filter "PDF", if the log lets it pass; where memory does
/// not suffice the message is lost. Leaves the thread's code alone.
void logError(std::string_view message) noexcept;
/// Whether such a message would be seen at all.
[[nodiscard]] bool errorsPass() noexcept;

/// What a failed operation gives.
struct Failure {
    template <class T>
    operator Ref<T>() const noexcept {
        return nullptr;
    }
    operator bool() const noexcept { return false; }
    /// Of what tells more than that.
    template <class Result>
    requires requires { Result::Failed; }
    operator Result() const noexcept { return Result::Failed; }
};

/// Logs an error, sets the code and gives "no result". Pieces are texts, numbers and objects.
template <class... Pieces>
Failure fail(std::uint32_t code, const Pieces&... pieces) noexcept;

/// Runs `body` at the boundary: exhausted memory is an ordinary failure.
template <class Body>
auto guarded(Body&& body) noexcept -> decltype(body()) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    Host::Error::set(Host::OutOfMemory);
    return decltype(body())();
}

/// Passes on what can only be null where memory ran out; throws `std::bad_alloc` then.
template <class T>
[[nodiscard]] Ref<T> orThrow(Ref<T> object) {
    if (!object) throw std::bad_alloc();
    return object;
}

/// What a look-up finds, which may be nothing: the code stays as it was. Throws `std::bad_alloc`
/// where that is why.
template <class Look>
[[nodiscard]] auto quietly(Look look) {
    const std::uint32_t former = Host::Error::get();
    Host::Error::set(Host::NoError);
    auto found = look();
    const bool exhausted = !found && Host::Error::get() == Host::OutOfMemory;
    Host::Error::set(former);
    if (exhausted) throw std::bad_alloc();
    return found;
}

inline void addPiece(std::string& text, std::string_view piece) {
    text += piece;
}
inline void addPiece(std::string& text, std::uint64_t number) {
    text += std::to_string(number);
}
inline void addPiece(std::string& text, const Ref<Object>& object) {
    text += std::to_string(object->id()) + " (" + std::to_string(object->generation()) + ")";
}

template <class... Pieces>
Failure fail(std::uint32_t code, const Pieces&... pieces) noexcept {
    if constexpr (sizeof...(pieces) != 0) {
        try {
            std::string text;
            if (errorsPass()) (addPiece(text, pieces), ...);
            logError(text);
        } catch (const std::exception&) {
        }
    }
    Host::Error::set(code);
    return {};
}

} // namespace Libraries::Files::PDF::Tools
