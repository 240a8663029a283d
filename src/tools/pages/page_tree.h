#pragma once

#include <pdf/document.h>
#include <pdf/tools/pages.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// What pages inherit (ISO 32000-1, table 30).
inline constexpr std::array<std::string_view, 4> inheritable = {"Resources", "MediaBox", "CropBox",
                                                                "Rotate"};

/// The entries by those keys, as they stand, and which of them are a node's own.
struct Attributes {
    std::array<Ref<Value>, inheritable.size()> values;
    std::array<bool, inheritable.size()> own{};
};

/// A page as it was found.
struct FoundPage {
    Page page;
    Attributes attributes;
};

/// The root of the tree and all pages below it.
struct PageTree {
    Ref<Object> root;
    Ref<Dictionary> rootEntries;
    std::vector<FoundPage> pages;
};

/// Fails for a tree of which a page cannot be found.
[[nodiscard]] PageTree readPageTree(const Document& document);

/// The pages of the tree, as `Pages` has them.
[[nodiscard]] std::vector<Page> pagesOf(const Document& document);

/// Fails with `OutOfRange`: none of so many pages has that index.
[[noreturn]] void failWithoutPage(std::uint64_t index, std::uint64_t pages);

/// A box of its own, and a number, both direct; null where the value is none.
///@{
[[nodiscard]] Ref<Array> directBox(const Document& document, const Ref<Value>& value);
[[nodiscard]] Ref<Number> directNumber(const Document& document, const Ref<Value>& value);
///@}

} // namespace Libraries::Files::PDF::Tools
