#pragma once

#include "state/document_state.h"
#include "values/scalars.h"

#include <host/stream.h>
#include <host/stripe.h>

#include <cstdint>
#include <optional>

namespace Libraries::Files::PDF {

/// A stream of a document as it is stored: what those who encode it need of it. What cannot be had
/// is logged under the number of the stream's object, with the code set.
class StoredStream {
public:
    StoredStream(const DocumentState& state, StreamObj& stream, std::uint32_t id) noexcept
        : state_(state), stream_(stream), id_(id) {}
    /// The object is looked for when a message asks for its number.
    StoredStream(const DocumentState& state, StreamObj& stream) noexcept
        : state_(state), stream_(stream) {}

    [[nodiscard]] StreamObj& stream() const noexcept { return stream_; }
    /// 0 where no object holds the stream.
    [[nodiscard]] std::uint32_t id() const noexcept;

    [[nodiscard]] Ref<Dictionary> dict() const noexcept;
    /// The number that is the stream's Length, wherever it stands.
    [[nodiscard]] Ref<NumberObj> length(const Dictionary& dict) const;
    /// The data as it is encoded. Data of the file becomes attached to the stream.
    [[nodiscard]] Ref<Interfaces::Stripe> data() const;
    [[nodiscard]] Ref<Interfaces::BlockFilter> compressor() const noexcept;

private:
    const DocumentState& state_;
    StreamObj& stream_;
    std::optional<std::uint32_t> id_;
};

} // namespace Libraries::Files::PDF
