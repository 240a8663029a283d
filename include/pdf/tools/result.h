#pragma once

/// @file
/// What a tool gives: what was asked for, or why it is not there.

#include <pdf/tools/failure.h>

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

namespace Libraries::Files::PDF::Tools {

/// The error of a result to be, as `std::unexpected`.
template <class E>
class Unexpected {
public:
    /// Takes the error over.
    explicit Unexpected(E error) : error_(std::move(error)) {}

    /// The error.
    ///@{
    [[nodiscard]] const E& error() const& noexcept { return error_; }
    [[nodiscard]] E& error() & noexcept { return error_; }
    [[nodiscard]] E&& error() && noexcept { return std::move(error_); }
    ///@}
    /// Whether the errors are equal.
    [[nodiscard]] bool operator==(const Unexpected&) const = default;

private:
    E error_;
};

/// Asks for a result that holds an error made of the arguments that follow, as `std::unexpect`.
struct Unexpect {
    explicit Unexpect() = default;
};
/// The one value of that kind.
inline constexpr Unexpect unexpect{};

template <class E>
class BadResultAccess;

/// What all that `Result::value` throws can be caught as.
template <>
class BadResultAccess<void> : public std::exception {};

/// What `Result::value` throws where there is no value, as `std::bad_expected_access`.
template <class E>
class BadResultAccess : public BadResultAccess<void> {
public:
    /// Takes the error over.
    explicit BadResultAccess(E error) : error_(std::move(error)) {}

    /// The text of a `Failure`.
    [[nodiscard]] const char* what() const noexcept override {
        if constexpr (std::is_same_v<E, Failure>) return error_.text();
        return "a result holds no value";
    }
    /// Why there is no value.
    [[nodiscard]] const E& error() const noexcept { return error_; }

private:
    E error_;
};

template <class T, class E = Failure>
class Result;

namespace Detail {

/// Whether a type is a result.
///@{
template <class T>
inline constexpr bool isResult = false;
template <class T, class E>
inline constexpr bool isResult<Result<T, E>> = true;
///@}

/// What is no plain value: a result takes it in another way.
///@{
template <class T>
inline constexpr bool isSpecial = isResult<T>;
template <class E>
inline constexpr bool isSpecial<Unexpected<E>> = true;
template <>
inline constexpr bool isSpecial<std::in_place_t> = true;
template <>
inline constexpr bool isSpecial<Unexpect> = true;
///@}

/// Calls `call` with `argument`; a member of it may be what is called, as for `std::invoke`.
template <class Call, class Argument>
decltype(auto) invoke(Call&& call, Argument&& argument) {
    using Plain = std::remove_cvref_t<Call>;
    if constexpr (std::is_member_function_pointer_v<Plain>) {
        return (std::forward<Argument>(argument).*call)();
    } else if constexpr (std::is_member_object_pointer_v<Plain>) {
        return (std::forward<Argument>(argument).*call);
    } else {
        return std::forward<Call>(call)(std::forward<Argument>(argument));
    }
}

/// What a result holds that has nothing to give.
struct Nothing {
    /// Always true.
    [[nodiscard]] bool operator==(const Nothing&) const = default;
};

} // namespace Detail

/// What an operation gave, or why it gave nothing: `std::expected<T, E>` of C++23 in names and
/// meaning, for compilers that lack it. `value()` throws where there is no value; `*` and `->` ask
/// to look first, and end the program where nobody did. One thing is safer: what both take out of a
/// result that goes is a value of its own, so that `for (const auto& page : Pages::of(d).value())`
/// loops over what is there.
template <class T, class E>
class [[nodiscard]] Result {
    using Held = std::conditional_t<std::is_void_v<T>, Detail::Nothing, T>;
    static constexpr bool isVoid = std::is_void_v<T>;

public:
    ///@{
    /// As in `std::expected`.
    using value_type = T;
    using error_type = E;
    using unexpected_type = Unexpected<E>;
    template <class U>
    using rebind = Result<U, E>;
    ///@}

    /// A result that holds `T()`; of void a success.
    Result() = default;
    /// A result that holds a value.
    template <class U = Held>
    requires(!isVoid && !Detail::isSpecial<std::remove_cvref_t<U>> &&
             std::is_constructible_v<Held, U>) explicit(!std::is_convertible_v<U, Held>)
        Result(U&& value) // NOLINT: it converts
        : held_(std::in_place_index<0>, std::forward<U>(value)) {}
    /// A result that holds an error.
    template <class G>
    requires std::is_constructible_v<E, G>
    explicit(!std::is_convertible_v<G, E>) Result(Unexpected<G> error) // NOLINT: it converts
        : held_(std::in_place_index<1>, std::move(error).error()) {}
    /// What another result holds, converted.
    template <class U, class G>
    requires(!std::is_same_v<Result<U, G>, Result> && isVoid == std::is_void_v<U> &&
             (isVoid || std::is_convertible_v<U, Held>)&&std::is_convertible_v<G, E>)
        Result(Result<U, G> other) // NOLINT: it converts
        : held_(convert(std::move(other))) {}
    /// A result that holds what is made of the arguments.
    ///@{
    template <class... Arguments>
    requires std::is_constructible_v<Held, Arguments...>
    explicit Result(std::in_place_t /*value*/, Arguments&&... arguments)
        : held_(std::in_place_index<0>, std::forward<Arguments>(arguments)...) {}
    template <class... Arguments>
    requires std::is_constructible_v<E, Arguments...>
    explicit Result(Unexpect /*error*/, Arguments&&... arguments)
        : held_(std::in_place_index<1>, std::forward<Arguments>(arguments)...) {}
    ///@}

    /// Whether there is a value.
    ///@{
    [[nodiscard]] bool has_value() const noexcept { return held_.index() == 0; }
    explicit operator bool() const noexcept { return has_value(); }
    ///@}

    /// The value, which must be there.
    ///@{
    std::add_lvalue_reference_t<const T> operator*() const& noexcept { return get(*this); }
    std::add_lvalue_reference_t<T> operator*() & noexcept { return get(*this); }
    T operator*() && noexcept { return get(std::move(*this)); }
    const Held* operator->() const noexcept requires(!isVoid) { return &get(*this); }
    Held* operator->() noexcept requires(!isVoid) { return &get(*this); }
    ///@}
    /// The value. Throws `BadResultAccess<E>`, which holds the error, where there is none.
    ///@{
    std::add_lvalue_reference_t<const T> value() const& { return checked(*this); }
    std::add_lvalue_reference_t<T> value() & { return checked(*this); }
    T value() && { return checked(std::move(*this)); }
    ///@}
    /// The error, which must be there.
    ///@{
    [[nodiscard]] const E& error() const& noexcept { return std::get<1>(held_); }
    [[nodiscard]] E& error() & noexcept { return std::get<1>(held_); }
    [[nodiscard]] E&& error() && noexcept { return std::get<1>(std::move(held_)); }
    ///@}
    /// The value, or the error, or what stands in for it.
    ///@{
    template <class U>
    [[nodiscard]] Held value_or(U&& otherwise) const& requires(!isVoid) {
        return has_value() ? **this : static_cast<Held>(std::forward<U>(otherwise));
    }
    template <class U>
        [[nodiscard]] Held value_or(U&& otherwise) && requires(!isVoid) {
        return has_value() ? *std::move(*this) : static_cast<Held>(std::forward<U>(otherwise));
    }
    template <class G = E>
    [[nodiscard]] E error_or(G&& otherwise) const& {
        return has_value() ? static_cast<E>(std::forward<G>(otherwise)) : error();
    }
    ///@}

    /// What `next` makes of the value, a result too; an error is passed on.
    ///@{
    template <class Next>
    auto and_then(Next&& next) const& {
        return andThen(*this, std::forward<Next>(next));
    }
    template <class Next>
    auto and_then(Next&& next) && {
        return andThen(std::move(*this), std::forward<Next>(next));
    }
    ///@}
    /// A result with what `change` makes of the value; an error is passed on.
    ///@{
    template <class Change>
    auto transform(Change&& change) const& {
        return transformed(*this, std::forward<Change>(change));
    }
    template <class Change>
    auto transform(Change&& change) && {
        return transformed(std::move(*this), std::forward<Change>(change));
    }
    ///@}
    /// This result, or what `mend`, which gives a result of the same value, makes of the error.
    ///@{
    template <class Mend>
    auto or_else(Mend&& mend) const& {
        return orElse(*this, std::forward<Mend>(mend));
    }
    template <class Mend>
    auto or_else(Mend&& mend) && {
        return orElse(std::move(*this), std::forward<Mend>(mend));
    }
    ///@}
    /// A result with what `change` makes of the error; a value is passed on.
    ///@{
    template <class Change>
    auto transform_error(Change&& change) const& {
        return errorTransformed(*this, std::forward<Change>(change));
    }
    template <class Change>
    auto transform_error(Change&& change) && {
        return errorTransformed(std::move(*this), std::forward<Change>(change));
    }
    ///@}

    /// Makes the value anew. Throws nothing, as its arguments must not.
    template <class... Arguments>
    requires std::is_nothrow_constructible_v<Held, Arguments...>
    decltype(auto) emplace(Arguments&&... arguments) noexcept {
        held_.template emplace<0>(std::forward<Arguments>(arguments)...);
        return **this;
    }
    /// Exchanges what the two hold.
    void swap(Result& other) noexcept(std::is_nothrow_swappable_v<std::variant<Held, E>>) {
        held_.swap(other.held_);
    }
    /// Whether both hold equal values, or equal errors; whether it holds this value, or this error.
    ///@{
    [[nodiscard]] bool operator==(const Result& other) const = default;
    template <class U>
    requires(!isVoid && !Detail::isSpecial<U>) [[nodiscard]] bool operator==(const U& other) const {
        return has_value() && **this == other;
    }
    template <class G>
    [[nodiscard]] bool operator==(const Unexpected<G>& other) const {
        return !has_value() && error() == other.error();
    }
    ///@}

private:
    template <class U, class G>
    friend class Result;

    using Either = std::variant<Held, E>;

    template <class Self>
    static decltype(auto) get(Self&& self) noexcept {
        if constexpr (!isVoid) {
            return std::get<0>(std::forward<Self>(self).held_);
        } else {
            static_cast<void>(std::get<0>(self.held_));
        }
    }
    template <class Self>
    static decltype(auto) checked(Self&& self) {
        if (!self.has_value()) throw BadResultAccess<E>(std::forward<Self>(self).error());
        return get(std::forward<Self>(self));
    }
    template <class Self, class Next>
    static decltype(auto) call(Self&& self, Next&& next) {
        if constexpr (isVoid) {
            return std::forward<Next>(next)();
        } else {
            return Detail::invoke(std::forward<Next>(next), get(std::forward<Self>(self)));
        }
    }
    template <class Self, class Next>
    static auto andThen(Self&& self, Next&& next) {
        using Given =
            std::remove_cvref_t<decltype(call(std::forward<Self>(self), std::forward<Next>(next)))>;
        static_assert(Detail::isResult<Given>, "what follows gives a result");
        if (!self.has_value()) return Given(unexpect, std::forward<Self>(self).error());
        return call(std::forward<Self>(self), std::forward<Next>(next));
    }
    template <class Self, class Change>
    static auto transformed(Self&& self, Change&& change) {
        using Given = std::remove_cv_t<std::remove_reference_t<decltype(call(
            std::forward<Self>(self), std::forward<Change>(change)))>>;
        using Changed = Result<Given, E>;
        if (!self.has_value()) return Changed(unexpect, std::forward<Self>(self).error());
        if constexpr (std::is_void_v<Given>) {
            call(std::forward<Self>(self), std::forward<Change>(change));
            return Changed();
        } else {
            return Changed(std::in_place,
                           call(std::forward<Self>(self), std::forward<Change>(change)));
        }
    }
    template <class Self, class Mend>
    static auto orElse(Self&& self, Mend&& mend) {
        using Given = std::remove_cvref_t<decltype(Detail::invoke(
            std::forward<Mend>(mend), std::forward<Self>(self).error()))>;
        static_assert(Detail::isResult<Given>, "what mends gives a result");
        if (!self.has_value()) {
            return Detail::invoke(std::forward<Mend>(mend), std::forward<Self>(self).error());
        }
        if constexpr (isVoid) {
            return Given();
        } else {
            return Given(std::in_place, get(std::forward<Self>(self)));
        }
    }
    template <class Self, class Change>
    static auto errorTransformed(Self&& self, Change&& change) {
        using Given = std::remove_cvref_t<decltype(Detail::invoke(
            std::forward<Change>(change), std::forward<Self>(self).error()))>;
        using Changed = Result<T, Given>;
        if (!self.has_value()) {
            return Changed(unexpect, Detail::invoke(std::forward<Change>(change),
                                                    std::forward<Self>(self).error()));
        }
        if constexpr (isVoid) {
            return Changed();
        } else {
            return Changed(std::in_place, get(std::forward<Self>(self)));
        }
    }
    template <class U, class G>
    static Either convert(Result<U, G> other) {
        if (!other) return Either(std::in_place_index<1>, std::move(other).error());
        if constexpr (isVoid) {
            return Either();
        } else {
            return Either(std::in_place_index<0>, *std::move(other));
        }
    }

    Either held_;
};

} // namespace Libraries::Files::PDF::Tools
