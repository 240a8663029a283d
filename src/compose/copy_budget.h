#pragma once

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// What there is to copy in a document. Nobody knows for one of an application's own class.
struct CopySource {
    std::uint64_t objects = UINT64_MAX;
    /// Of the file, and of the stream data that was put into its place.
    std::uint64_t bytes = UINT64_MAX;
};

[[nodiscard]] CopySource copySourceOf(const Document& document) noexcept;

/// How much one operation may still copy.
///
/// Copying follows each reference as often as it is met, so that a few objects may lead
/// to any number of copies. What is shared within a sound document is shared by some
/// tens of users at most: forms that have the same fonts, images of the same colour space.
class CopyBudget {
public:
    /// Without a bound.
    CopyBudget() noexcept = default;
    /// For copying from `source` once for each of `users`, all of it `copiesOfEach` times at most.
    CopyBudget(const CopySource& source, std::uint64_t users) noexcept;

    [[nodiscard]] bool takeObject() noexcept { return take(objects_, 1); }
    /// A value that takes so many bytes in a file, beside what any value takes.
    [[nodiscard]] bool takeValue(std::uint64_t bytes) noexcept {
        return take(bytes_, perValue) && take(bytes_, bytes);
    }

    static constexpr std::uint64_t copiesOfEach = 64;

private:
    static constexpr std::uint64_t perValue = 8;

    static bool take(std::uint64_t& left, std::uint64_t wanted) noexcept {
        if (wanted > left) return false;
        left -= wanted;
        return true;
    }

    std::uint64_t objects_ = UINT64_MAX;
    std::uint64_t bytes_ = UINT64_MAX;
};

} // namespace Libraries::Files::PDF
