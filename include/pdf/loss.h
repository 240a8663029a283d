#pragma once

/// @file
/// The things in a document's file that a rewrite does not keep.

#include <cstdint>

namespace Libraries::Files::PDF {

/// The kinds of things that a rewrite does not keep. `docs/what-a-rewrite-does-not-keep.md` shows
/// each with an example; `Tools::losses` finds them.
enum class Loss : std::uint32_t {
    Revisions,   ///< earlier revisions, or a hybrid table: the trailer has Prev or XRefStm
    Subsections, ///< further subsections or entries of the cross-reference table
    Encryption,  ///< the trailer has Encrypt: strings and data are ciphertext
    PageTree,    ///< the catalog or the pages are not among the objects that were read
    Gaps,        ///< object numbers are missing: the written table is not true behind the first gap
    Fractions,   ///< numbers whose fraction begins with zeros, as 1.05: written without them
    Signs,       ///< numbers between -1 and 0: written without their sign
    EqualKeys,   ///< entries of a dictionary under a key that comes again: the last one counts
    Backslashes, ///< texts with a backslash: lost, or not to be read again once it is written
    Characters,  ///< texts with bytes that stand for no character: they became 0
    LineFeeds,   ///< data that begins with a line feed, where lines end in a carriage return alone
    Filters,     ///< streams whose filter or predictor `Document::setCompression` took away
    Signatures,  ///< signatures: they hold for the bytes of the file as it was, and for no other
    Superseded,  ///< earlier revisions of a file whose last one was read whole
};

/// Number of kinds.
inline constexpr std::uint32_t lossKinds = 14;

/// How often a kind occurs.
struct LossCount {
    std::uint64_t count = 0; ///< 0 if it does not occur
    /// Number of the first object concerned; 0 if that is the trailer or nothing.
    std::uint32_t firstObject = 0;
};

} // namespace Libraries::Files::PDF
