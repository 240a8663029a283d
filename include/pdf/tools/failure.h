#pragma once

/// @file
/// Why a tool failed.

#include <host/containers.h>
#include <host/export.h>
#include <host/ref.h>
#include <pdf/errors.h>

#include <cstdint>
#include <string_view>

namespace Libraries::Files::PDF::Tools {

/// Why an operation failed. This is all that a tool tells: it leaves the thread's error code alone,
/// and what it would have logged as an error is in the text. Copying throws nothing.
class FILES_PDF_EXPORT Failure {
public:
    /// A failure with a copy of `text`. Where that is empty, or memory is exhausted, its text is
    /// `errorText(code)`.
    explicit Failure(std::uint32_t code, std::string_view text = {},
                     std::uint32_t object = 0) noexcept;

    /// One of the codes in `pdf/errors.h` and `host/error.h`.
    [[nodiscard]] std::uint32_t code() const noexcept { return code_; }
    /// The number of the object that is concerned; 0 where none is.
    [[nodiscard]] std::uint32_t object() const noexcept { return object_; }
    /// For people, in UTF-8: what failed, and where. Never null, never empty; it lives as long as
    /// any copy of this failure.
    [[nodiscard]] const char* text() const noexcept { return text_; }

    /// Whether the two tell the same.
    [[nodiscard]] bool operator==(const Failure& other) const noexcept {
        return code_ == other.code_ && object_ == other.object_ &&
               std::string_view(text_) == other.text_;
    }

private:
    std::uint32_t code_;
    std::uint32_t object_;
    const char* text_;
    Host::Ref<Host::TConstArray<char>> held_;
};

} // namespace Libraries::Files::PDF::Tools
