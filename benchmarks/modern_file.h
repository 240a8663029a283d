#pragma once

/// @file
/// Files whose objects lie in object streams too, and whose table is a stream.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Benchmarks {

/// Compressed as well as can be, for FlateDecode.
[[nodiscard]] std::string deflated(const std::string& text);

/// Objects numbered from 1, and a cross-reference stream (ISO 32000-1, 7.5.8).
class ModernFile {
public:
    /// Gives the object's number, as does what follows.
    std::size_t add(std::string_view value);
    std::size_t addStream(std::string_view entries, std::string_view data);
    /// The next number, for an object in an object stream that is added afterwards.
    std::size_t addMember(std::size_t stream, std::size_t index);
    /// An object stream with these objects, the first of them numbered `first`.
    std::size_t addObjects(std::size_t first, const std::vector<std::string>& values,
                           std::string_view entries = "");

    [[nodiscard]] std::size_t next() const noexcept { return entries_.size() + 1; }
    [[nodiscard]] std::size_t size() const noexcept { return body_.size() + 8 * entries_.size(); }
    /// Its root is the first object.
    [[nodiscard]] std::string file() const { return file(table(), "/W[1 4 2]"); }
    /// With other data, deflated, and other entries in its cross-reference stream.
    [[nodiscard]] std::string file(const std::string& table, std::string_view entries) const;
    /// The data of its cross-reference stream.
    [[nodiscard]] std::string table() const;

private:
    struct Entry {
        std::uint8_t kind;
        std::uint64_t place, index;
    };
    std::string body_ = "%PDF-1.7\n";
    std::vector<Entry> entries_;
};

} // namespace Benchmarks
