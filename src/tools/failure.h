#pragma once

#include "host/guard.h"

#include <host/error.h>
#include <host/held_log.h>
#include <host/ref.h>
#include <pdf/tools/result.h>
#include <pdf/values.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// How tools fail: a step throws, and the guard around the operation makes a `Failure` of it. So no
/// step in between looks, and destructors take back what was changed.
namespace Libraries::Files::PDF::Tools {

using Host::makeOrThrow;
using Host::orThrow;

/// What a step throws that fails, exhausted memory apart, which is `std::bad_alloc`.
struct FailedStep {
    std::uint32_t code;
    std::string text{};       ///< empty: what the library logged says it
    std::uint32_t object = 0; ///< the first one that the text names
    std::string where{};      ///< what stands in front of the text

    void add(std::string_view piece) { text += piece; }
    void add(std::uint64_t number) { text += std::to_string(number); }
    /// An object, or a reference to one.
    template <class T>
    void add(const Ref<T>& named) {
        text += std::to_string(named->id()) + " (" + std::to_string(named->generation()) + ")";
        if (object == 0) object = named->id();
    }
};

/// Fails. Pieces are texts, numbers, objects and references.
template <class... Pieces>
[[noreturn]] void fail(std::uint32_t code, const Pieces&... pieces) {
    FailedStep step{code};
    (step.add(pieces), ...);
    throw step;
}

/// Fails with `NullArgument` where `what` was not given.
template <class T>
void requireArgument(const Ref<T>& given, std::string_view what) {
    if (!given) fail(Host::NullArgument, "No ", what, " was given");
}

/// Fails as the last operation of the library did, which has set the thread's code.
[[noreturn]] void failAsBefore();

/// What an operation of the library gave; where it gave nothing, this fails as that did.
template <class T>
T orFail(T given) {
    if (!given) failAsBefore();
    return given;
}

/// Runs a step; what fails in it says where that was, in front. `where` is a text, or gives one.
template <class Where, class Step>
auto at(const Where& where, Step step) {
    try {
        return step();
    } catch (FailedStep& failed) {
        std::string place;
        if constexpr (std::is_invocable_v<const Where&>) {
            place = where();
        } else {
            place = where;
        }
        failed.where = place + ": " + failed.where;
        throw;
    }
}

/// Runs a step on an object; what fails in it names that.
template <class Step>
auto atObject(std::uint32_t id, Step step) {
    try {
        return at([id] { return "Object " + std::to_string(id); }, step);
    } catch (FailedStep& failed) {
        if (failed.object == 0) failed.object = id;
        throw;
    }
}

/// What a look-up finds, which may be nothing. Throws `std::bad_alloc` where that is why.
template <class Look>
[[nodiscard]] auto quietly(Look look) {
    Host::Error::set(Host::NoError);
    auto found = look();
    if (!found && Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
    return found;
}

/// Around an operation: it leaves the thread's code as it was, and the log where it fails.
class Boundary {
public:
    Boundary() noexcept = default;
    Boundary(const Boundary&) = delete;
    Boundary& operator=(const Boundary&) = delete;
    ~Boundary();

    /// Why the operation failed: of the exception that is being handled.
    [[nodiscard]] Failure failure() noexcept;

private:
    [[nodiscard]] Failure failure(const FailedStep& step) const noexcept;

    bool failed_ = false;
    std::uint32_t code_ = Host::Error::get();
    Host::HeldLog log_{Host::HeldLog::Keep::AllErrors};
};

/// Runs an operation: what `body` gives, or why it failed.
template <class Body>
auto guarded(Body&& body) noexcept -> Result<std::invoke_result_t<Body>> {
    using Given = std::invoke_result_t<Body>;
    Boundary boundary;
    try {
        if constexpr (std::is_void_v<Given>) {
            std::forward<Body>(body)();
            return {};
        } else {
            return Result<Given>(std::in_place, std::forward<Body>(body)());
        }
    } catch (...) {
        return Unexpected(boundary.failure());
    }
}

} // namespace Libraries::Files::PDF::Tools
