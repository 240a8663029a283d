#pragma once

#include "packed/name_table.h"
#include "values/dictionary.h"
#include "values/home.h"

#include <host/byte_buffer.h>
#include <host/ref.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

/// Where the packed spellings of a document's objects lie: chunks that never move. Counted, since
/// an object that was handed out may outlive its document before anybody asks for its value.
class PackedStore final : public Host::RefCount {
public:
    /// Keeps a copy. Throws `std::bad_alloc`.
    [[nodiscard]] std::string_view keep(std::string_view bytes);
    /// Whether so many bytes get a chunk of their own, for which `adopt` needs no copy.
    [[nodiscard]] static bool isLarge(std::size_t size) noexcept { return size > chunkSize / 4; }
    [[nodiscard]] std::string_view adopt(Host::ByteBuffer bytes);
    /// What the values of the document's objects have as their home.
    [[nodiscard]] HomeNumber home() const noexcept { return home_; }
    /// Bytes kept in all.
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

    /// What the values that are unpacked share.
    struct Shared {
        NameTable names;
        Ref<Value> null;
        Ref<Value> truth;
        Ref<Value> falsehood;
        /// Memory for the lists that are being unpacked; empty in between.
        std::vector<Ref<Value>> elements;
        std::vector<DictionaryObj::Entry> entries;
    };
    [[nodiscard]] Shared& shared() noexcept { return shared_; }

private:
    static constexpr std::size_t chunkSize = std::size_t{256} << 10;

    [[nodiscard]] static HomeNumber nextHome() noexcept;

    const HomeNumber home_ = nextHome();
    std::vector<Host::ByteBuffer> chunks_;
    std::size_t left_ = 0; // room in the last chunk that is filled bit by bit
    std::size_t filling_ = 0;
    std::uint64_t size_ = 0;
    Shared shared_;
};

} // namespace Libraries::Files::PDF
