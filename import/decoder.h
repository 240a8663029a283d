#pragma once

#include "filter_chain.h"
#include "libqpdf.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Libraries::Files::PDF::Import {

/// How decoding ended.
struct Decoded {
    bool known = false;      ///< whether libqpdf decodes all of the chain without loss
    bool whole = false;      ///< whether the data was decoded to its end
    bool doubted = false;    ///< whether a filter found something wrong with it all the same
    bool exceeded = false;   ///< whether it was stopped, because it takes more than allowed
    std::uint64_t given = 0; ///< what the last filter gave, in bytes
};

/// Decodes streams by libqpdf's filters, one behind the other, so that what each of them gives can
/// be counted: libqpdf itself lets any stage of a chain grow without bound.
class Decoder {
public:
    Decoder();

    /// Decodes what `stream` holds as `chain` says, into `next`. Takes off `left` what each filter
    /// gives, and the rows of predictors, and stops where that does not suffice.
    [[nodiscard]] Decoded decode(const QPDFObjectHandle& stream, const FilterChain& chain,
                                 std::uint64_t& left, Pipeline* next);

private:
    struct Run;

    [[nodiscard]] bool add(const Filter& filter, std::size_t index, Run& run);

    std::shared_ptr<QPDF> scratch_; // holds the stages, which are streams of their own
    std::vector<QPDFObjectHandle> stages_;
};

} // namespace Libraries::Files::PDF::Import
