#pragma once

#include "compose/cloning.h"

#include <pdf/document.h>
#include <pdf/values.h>

#include <cstdint>
#include <map>
#include <vector>

namespace Libraries::Files::PDF {

/// A page of the foreign document, and the object numbers of its content streams in order.
struct ForeignPage {
    Ref<Dictionary> dict;
    std::uint64_t index = 0;
    std::vector<std::uint32_t> contents;
};

/// Foreign content streams by object number, each once.
using StreamTable = std::map<std::uint32_t, Ref<Stream>>;

/// Enters a page's content streams into its record and into `streams`.
[[nodiscard]] bool collectContents(const Document& foreign, ForeignPage& page,
                                   StreamTable& streams);

/// The copies of foreign content streams that were added to a document.
class AddedStreams {
public:
    /// Copies every stream of the table. On failure, exhausted memory included, it removes the
    /// copies made so far; objects that were added for their dictionaries stay.
    [[nodiscard]] bool copy(const StreamTable& streams, const Ref<Document>& foreign,
                            DocumentState& state, Cloner& cloner);

    /// The reference to the copy of a foreign stream, or null.
    [[nodiscard]] Ref<ObjectRef> find(std::uint32_t foreignId) const noexcept;

    /// Enters a copy. Calls come in ascending order of the foreign numbers.
    void add(std::uint32_t foreignId, Ref<ObjectRef> ref) {
        entries_.push_back({foreignId, std::move(ref)});
    }
    /// Removes the copies from the document. Takes no memory.
    void removeFrom(DocumentState& state) noexcept;

private:
    struct Entry {
        std::uint32_t foreignId;
        Ref<ObjectRef> ref;
    };

    bool copyAll(const StreamTable& streams, const Ref<Document>& foreign, Cloner& cloner);

    std::vector<Entry> entries_;
};

} // namespace Libraries::Files::PDF
