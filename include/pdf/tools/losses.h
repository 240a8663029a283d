#pragma once

/// @file
/// What a rewrite of a document would not keep, told before it is written.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/loss.h>
#include <pdf/tools/result.h>

#include <cstdint>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// One kind of loss that a document has.
struct LossFound {
    Loss kind;                 ///< what is lost
    std::uint64_t count;       ///< how often it was met; at least 1
    std::uint32_t firstObject; ///< number of the first one concerned; 0: the trailer or the file
};

/// The kinds of which `document` has any, in the order of `Loss`. Numbers that are written as they
/// were read (`Document::faithfulNumbers`) are no loss. Costs next to nothing: reading has counted;
/// where lines end in a carriage return alone the first byte of each stream is read.
[[nodiscard]] FILES_PDF_EXPORT Result<std::vector<LossFound>>
losses(const Ref<Document>& document) noexcept;

/// Whether what is written would be no sound document any more: parts of the file were not read, or
/// are ciphertext; data loses bytes, or what it takes to understand it.
[[nodiscard]] FILES_PDF_EXPORT bool isGrave(Loss kind) noexcept;

/// A short English text for people: what is lost. Never null.
[[nodiscard]] FILES_PDF_EXPORT const char* lossText(Loss kind) noexcept;

} // namespace Libraries::Files::PDF::Tools
