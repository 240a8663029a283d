#pragma once

#include <pdf/document.h>

#include <cstdint>

namespace Libraries::Files::PDF {

/// The size of a document that is copied from. Unknown for one of an application's own class.
struct CopySource {
    std::uint64_t objects = UINT64_MAX;
    /// Bytes of the file, and of stream data that was attached later.
    std::uint64_t bytes = UINT64_MAX;
};

[[nodiscard]] CopySource copySourceOf(const Document& document) noexcept;

/// The objects and bytes that one operation may still copy.
///
/// Copying follows each reference as often as it meets it, so that a few objects may lead to any
/// number of copies. In a sound document a value has a few tens of users at most, such as forms
/// with the same font or images of the same colour space.
class CopyBudget {
public:
    /// A budget without a bound.
    CopyBudget() noexcept = default;
    /// The budget of `users` that copy from `source`. Each may copy all of it `copiesOfEach` times.
    CopyBudget(const CopySource& source, std::uint64_t users) noexcept;

    [[nodiscard]] bool takeObject() noexcept { return take(objects_, 1); }
    /// Takes a value from the budget. `bytes` is its size in a file beyond that of any value.
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
