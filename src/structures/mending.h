#pragma once

#include "packed/packed_value.h"
#include "state/document_state.h"

#include <pdf/version.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF {

/// Gives what is sound, and stored as the exact rules do not look for it, the form in which they
/// do: catalog and page tree (ISO 32000-1, 7.7.2, 7.7.3) are objects that say what they are, Kids
/// is an array in its node, and each kid is an object; Filter and DecodeParms stand in their
/// stream. The trailer keeps nothing of how the file was stored. All of that on packed spellings.
class Mending {
public:
    explicit Mending(DocumentState& state) noexcept : state_(state) {}

    /// Throws `Flaw` where there is no page tree, or parts of it lead nowhere, or more than 8 times
    /// the packed objects and 1 MiB would be looked through and written.
    void mend(const PackedValue& trailer);

    /// The trailer; its bytes are kept in the document's store.
    [[nodiscard]] PackedValue trailer() const noexcept { return trailer_; }
    /// What the catalog says; `Unsupported` where it says nothing.
    [[nodiscard]] PdfVersion version() const noexcept;

private:
    void take(std::uint64_t bytes);
    [[nodiscard]] PackedValue packed(std::uint32_t id) const noexcept;
    /// The value of an entry, or what the reference that it is leads to.
    [[nodiscard]] PackedValue resolve(const PackedValue& holder,
                                      std::string_view key) const noexcept;
    [[nodiscard]] std::string_view entry(std::uint32_t id, std::string_view key) const noexcept;
    void set(std::uint32_t id, std::string_view key, const PackedValue& value);
    [[nodiscard]] PackedValue with(const PackedValue& dict, std::string_view key,
                                   const PackedValue& value);
    [[nodiscard]] std::uint32_t makeObject(const PackedValue& value);
    [[nodiscard]] std::uint32_t asObject(const PackedValue& holder, std::string_view value);

    void mendTrailer(const PackedValue& trailer);
    void mendCatalog();
    void mendTree();
    void mendKids(std::uint32_t node);
    [[nodiscard]] std::uint32_t mendKid(const PackedValue& kids, std::string_view kid);
    [[nodiscard]] bool hasKids(std::uint32_t id) const noexcept;
    void addNode(std::uint32_t id);
    void setType(std::uint32_t id, std::string_view type);
    void mendStreams();
    void makeDirect(const ObjectTable::Slot& slot, std::string_view key);

    DocumentState& state_;
    PackedValue trailer_;
    std::uint32_t catalog_ = 0;
    std::vector<std::uint32_t> nodes_; // of the page tree, each behind its parent
    std::vector<bool> seen_;           // the catalog and the nodes
    std::string text_;
    std::uint64_t left_ = 0; // bytes
};

} // namespace Libraries::Files::PDF
