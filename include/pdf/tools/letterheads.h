#pragma once

/// @file
/// Letterheads, watermarks and stamps: pages of another document beneath or above pages of this
/// one, whatever names, resources, boxes and page trees the two have. `Document::addBackground`
/// lays contents beneath contents as they are.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Which page of a letterhead goes onto which page: the modes of `Document::addBackground`.
enum class LetterheadPages : std::uint32_t {
    FirstOnFirst = 0,      ///< the first onto the first one
    FirstOnAll = 1,        ///< the first onto every one
    PageByPage = 2,        ///< each onto its own; further pages get none
    PageByPageThenLast = 3 ///< each onto its own, the last one onto all further pages
};

/// Pages from one to another by their zero-based indexes, as in `Pages`; both belong to it.
struct PageRange {
    std::uint64_t first; ///< at most `last`
    std::uint64_t last;  ///< must be there
};

/// How a letterhead is laid.
struct LetterheadOptions {
    /// Which page goes where, counted among the pages that `ranges` choose.
    LetterheadPages mode = LetterheadPages::FirstOnAll;
    /// Whether the letterhead is drawn over the page: a stamp.
    bool above = false;
    /// Whether it keeps its coordinates: neither turned nor scaled nor moved.
    bool asIs = false;
    /// The pages that get one, each once and in their order, however often and wherever they are
    /// listed; all where there are none.
    std::vector<PageRange> ranges = {};
};

/// Lays pages of `letterhead` beneath or above pages of `document`, of those that a reader sees.
/// Each is turned upright, scaled evenly and centred, so that its visible box fills that of the
/// page as it is displayed. It comes as a form XObject under a name that no resources of the two
/// documents have: neither sees the names or the graphics state of the other, and a page may get
/// several. One copy serves all pages; fonts and images that pages of the letterhead share are
/// copied once. Annotations and form fields are not taken over.
///
/// The document's tree is flattened (`Pages::flatten`), and its version becomes the higher of the
/// two. Names are added to resources where they stand. Above, the page's contents are put between
/// operators that save and restore the graphics state, so that the stamp does not depend on what
/// they leave behind. Contents that take back more than they saved get streams without what is too
/// much, which readers pass over. Contents that `decodedBytes` does not decode, or that hold more
/// than 64 times what is stored and 1 MiB, in all that is looked through, count as balanced.
///
/// What is odd in the letterhead, a Filter that is no name for one, comes over as odd as it is.
/// What its pages share is copied for each of them only where they differ in box, resources or
/// group, and in all at most as 64 times what was read, and 1 MiB.
///
/// All or nothing: after a failure `document` writes what it would have written before.
/// `letterhead` does so in any case.
///
/// Fails with `InvalidArgument` (the same document twice; another mode; a range from a later page
/// to an earlier one), `OutOfRange` (a range behind the last page; more is to be copied or decoded
/// than that), `ForeignPageEmpty` (the letterhead has no page), `StepFailed` (values nest in more
/// than 512 levels, which no file that opens has), or a code of `Pages::flatten`,
/// `Pages::isolate` or `Document::readStreamData`.
FILES_PDF_EXPORT Result<void> letterhead(const Ref<Document>& document,
                                         const Ref<Document>& letterhead,
                                         const LetterheadOptions& options = {}) noexcept;

} // namespace Libraries::Files::PDF::Tools
