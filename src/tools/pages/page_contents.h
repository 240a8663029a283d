#pragma once

#include "tools/changes.h"
#include "tools/pages/state_balance.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// The streams that a page's contents consist of, by their objects, in order. What is no stream is
/// left out: it draws nothing. Throws `std::bad_alloc`.
[[nodiscard]] std::vector<Ref<Object>> contentStreams(const Document& document,
                                                      const Dictionary& page);

/// Streams to put around a page's contents, so that what is drawn behind them finds the graphics
/// state in which the page began (ISO 32000-1, 8.4.2): Contents become the opening one, what they
/// were, the closing one. Pages share these streams. Null with the code set on failure. Throws
/// `std::bad_alloc`.
class PageContents {
public:
    PageContents(Document& document, Changes& changes) noexcept
        : document_(document), changes_(changes) {}

    /// Saves the state.
    [[nodiscard]] Ref<ObjectRef> opening();
    /// Takes back what that saved and what the page's contents, as they are now, leave open. Data
    /// that cannot be decoded, or that becomes far too long, counts as leaving nothing open.
    [[nodiscard]] Ref<ObjectRef> closing(const Dictionary& page);

private:
    /// Bytes that streams may take, when they are decoded, beyond what their stored ones allow.
    static constexpr std::uint64_t mostExpansion = std::uint64_t{16} << 20;

    [[nodiscard]] StateBalance readBalance(const Ref<Stream>& stream, const Dictionary& entries);
    [[nodiscard]] const StateBalance& balanceOf(const Ref<Object>& object);
    [[nodiscard]] Ref<ObjectRef> added(std::string_view operators);

    Document& document_;
    Changes& changes_;
    Ref<ObjectRef> opening_;
    std::unordered_map<std::uint64_t, Ref<ObjectRef>> closings_;
    std::unordered_map<std::uint32_t, StateBalance> balances_;
    std::uint64_t expansionLeft_ = mostExpansion;
};

} // namespace Libraries::Files::PDF::Tools
