#pragma once

/// @file
/// The pages of a document as its reader sees them, whatever tree they stand in (ISO 32000-1,
/// 7.7.3). `Document::getPages` gives the direct kids of the tree's root, pages or not.

#include <host/containers.h>
#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/tools/editing.h>
#include <pdf/values.h>

#include <cstdint>

namespace Libraries::Files::PDF::Tools {

/// A page, and what holds for it: of its own entries and of those that it inherits from the nodes
/// above (ISO 32000-1, 7.7.3.4), with references followed.
struct Page {
    Ref<Object> object;         ///< the page's object
    Ref<Dictionary> dictionary; ///< its own entries, shared with the document
    Ref<Dictionary> resources;  ///< shared with the document; null where there are none
    Ref<Array> mediaBox;        ///< of its own, four direct numbers; null where there is none
    Ref<Array> cropBox;         ///< the same; null means that the media box counts
    Ref<Number> rotate;         ///< direct, in degrees; null means 0
    std::uint64_t depth = 0;    ///< 1 for a direct kid of the tree's root, more below other nodes
};

/// All pages of the tree, in their order, through trees of any depth. A page that is listed more
/// than once is given each time. A node without a Type is a page unless it has Kids.
///
/// Null with the codes of `Document::getPageCatalog`, `PageTreeInvalid` (Kids is no array; a kid is
/// no reference, leads nowhere, is no dictionary or has another Type; an intermediate node is
/// listed twice, as in a tree that leads back to itself), `PageInvalid` (Resources, a box or Rotate
/// is of another kind) or `OutOfRange` (nodes share their Kids, so that the tree lists more than
/// 4,096 and 4 for each kid) set; the log says which object it is.
[[nodiscard]] FILES_PDF_EXPORT Ref<Host::TVector<Page>> allPages(const Document& document) noexcept;

/// Makes every page a direct kid of the tree's root, so that `getPages`, `addBackground` and
/// whatever else looks there work on real pages. Inherited attributes are put into the pages and
/// taken from the root; a page without a Type gets one; Contents that refers to an array becomes
/// that array; a page that was listed more than once becomes as many. Pages that inherited a direct
/// dictionary of resources share it as an object. Former nodes stay as objects that nothing refers
/// to. A tree that is so already is left alone.
///
/// False as for `allPages`, or with `OutOfRange` (pages that are listed again, or contents that
/// pages share, would be copied to more than 64 times what they are and 1 MiB) or `OutOfMemory`
/// set.
[[nodiscard]] FILES_PDF_EXPORT bool flattenPages(Document& document) noexcept;

/// Puts a page in front of the one that is at the zero-based `index` now, or behind the last one.
/// `page` is a dictionary, for which an object is added, or a reference to one that is no page of
/// the tree (`removePage` made it so, perhaps). It gets its Type and Parent, and must have a
/// MediaBox. The tree is flattened before, and Count and Kids are set; each call walks the tree.
///
/// Gives the reference to the page. Null as for `flattenPages`, or with `NullArgument`,
/// `InvalidArgument` (neither of the two, or a page of the tree; a dictionary of another document,
/// or one that has a Parent and is no object's of this document), `OutOfRange` or `PageInvalid` (no
/// MediaBox) set. Whose a reference is nobody knows: one of another document stands for whatever
/// has that number here.
[[nodiscard]] FILES_PDF_EXPORT Ref<ObjectRef> insertPage(Document& document, std::uint64_t index,
                                                         const Ref<Value>& page) noexcept;

/// Adds a page behind the last one: it shows `content`, operators of a content stream (ISO 32000-1,
/// 7.8.2), which is stored deflated. `resources` may be a reference; null stands for none. Gives
/// the reference to the page. Null as for `insertPage`, `InvalidArgument` for a box or resources of
/// another document.
[[nodiscard]] FILES_PDF_EXPORT Ref<ObjectRef>
addPage(Document& document, Bytes content, const Ref<Array>& mediaBox,
        const Ref<Value>& resources = nullptr) noexcept;

/// Takes the page at the zero-based `index` out of the tree, which is flattened before. Its object
/// and all that it shows stay in the document, for `insertPage` to put it elsewhere: who means to
/// get rid of them calls `removeObject`. Gives the reference to it. Null as for `flattenPages`, or
/// with `OutOfRange` set.
FILES_PDF_EXPORT Ref<ObjectRef> removePage(Document& document, std::uint64_t index) noexcept;

} // namespace Libraries::Files::PDF::Tools
