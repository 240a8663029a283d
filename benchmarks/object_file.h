#pragma once

/// @file
/// Files put together from the texts of their objects.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Benchmarks {

/// A file whose objects begin at these offsets of `body`, numbered from 1. Its table is as short as
/// is accepted; its root is the first object.
[[nodiscard]] std::string fileOf(const std::string& body, const std::vector<std::size_t>& offsets);

/// A reference to an object, and a space.
[[nodiscard]] std::string reference(std::size_t number);

/// A text over and over again, until it has so many bytes at least.
[[nodiscard]] std::string repeated(std::string_view unit, std::size_t bytes);

/// A document whose streams have those behind them as their data, and no filter.
[[nodiscard]] std::string streamsInsideEachOther(std::size_t size);

/// Objects one behind the other, numbered from 1.
class ObjectFile {
public:
    /// Gives the object's number.
    std::size_t add(std::string_view value);
    /// A stream; `entries` are those beside Length.
    std::size_t addStream(std::string_view entries, std::string_view data);
    /// The number that the next object gets.
    [[nodiscard]] std::size_t next() const noexcept { return offsets_.size() + 1; }
    /// Bytes so far, with those that the table takes.
    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] std::string file() const;

private:
    std::string body_ = "%PDF-1.7\n";
    std::vector<std::size_t> offsets_;
};

} // namespace Benchmarks
