#pragma once

/// @file
/// The pages of a document as its reader sees them, whatever tree they stand in (ISO 32000-1,
/// 7.7.3). `Document::getPages` gives the direct kids of the tree's root, pages or not.

#include <host/export.h>
#include <host/ref.h>
#include <pdf/document.h>
#include <pdf/tools/editing.h>
#include <pdf/tools/result.h>
#include <pdf/values.h>

#include <cstdint>
#include <string_view>
#include <vector>

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

/// All pages of one document, which it keeps alive, in their order. They are what the tree was when
/// this was made, or last changed through it; a change goes by the tree as it is then. An index is
/// zero-based. Every change walks the tree and is all or nothing; all but `isolate` flatten it.
class FILES_PDF_EXPORT Pages {
public:
    /// Finds the pages, in trees of any depth. A page that is listed more than once is given each
    /// time. A node without a Type is a page unless it has Kids.
    ///
    /// Fails with a code of `Document::getPageCatalog`, `PageTreeInvalid` (Kids is no array; a kid
    /// is no reference, leads nowhere, is no dictionary or has another Type; an intermediate node
    /// is listed twice, as in a tree that leads back to itself), `PageInvalid` (Resources, a box or
    /// Rotate is of another kind) or `OutOfRange` (nodes share their Kids, so that the tree lists
    /// more than 4,096 and 4 for each kid).
    [[nodiscard]] static Result<Pages> of(const Ref<Document>& document) noexcept;

    /// The document.
    [[nodiscard]] const Ref<Document>& document() const noexcept { return document_; }

    /// @name As a range of pages
    ///@{
    [[nodiscard]] std::size_t size() const noexcept { return pages_.size(); }
    [[nodiscard]] bool empty() const noexcept { return pages_.empty(); }
    [[nodiscard]] auto begin() const noexcept { return pages_.begin(); }
    [[nodiscard]] auto end() const noexcept { return pages_.end(); }
    /// The page at an index, which must be below `size()`.
    [[nodiscard]] const Page& operator[](std::size_t index) const noexcept { return pages_[index]; }
    ///@}

    /// Makes every page a direct kid of the tree's root, so that `getPages`, `addBackground` and
    /// whatever else looks there work on real pages. Inherited attributes are put into the pages
    /// and taken from the root; a page without a Type gets one; Contents that refers to an array
    /// becomes that array; a page that was listed more than once becomes as many. Pages that
    /// inherited a direct dictionary of resources share it as an object. Former nodes stay as
    /// objects that nothing refers to. A tree that is so already is left alone.
    ///
    /// Fails as `of`, or with `OutOfRange` (pages that are listed again, or contents that pages
    /// share, would be copied to more than 64 times what they are and 1 MiB).
    Result<void> flatten() noexcept;

    /// Puts a page in front of the one that is at `index` now, or behind the last one. `page` is a
    /// dictionary, for which an object is added, or a reference to one that is no page of the tree
    /// (`remove` made it so, perhaps). It gets its Type and Parent, and must have a MediaBox. Count
    /// and Kids are set.
    ///
    /// Gives the reference to the page. Fails as `flatten`, or with `InvalidArgument` (neither of
    /// the two, or a page of the tree; a dictionary of another document, or one that has a Parent
    /// and is no object's of this document), `OutOfRange` or `PageInvalid` (no MediaBox). Whose a
    /// reference is nobody knows: one of another document stands for whatever has that number here.
    Result<Ref<ObjectRef>> insert(std::uint64_t index, const Ref<Value>& page) noexcept;

    /// Adds a page behind the last one: it shows `content`, operators of a content stream
    /// (ISO 32000-1, 7.8.2), which is stored deflated. `resources` may be a reference; null stands
    /// for none. Gives the reference to the page. Fails as `insert`, with `InvalidArgument` for a
    /// box or resources of another document.
    Result<Ref<ObjectRef>> add(Bytes content, const Ref<Array>& mediaBox,
                               const Ref<Value>& resources = nullptr) noexcept;

    /// Takes the page at `index` out of the tree. Its object and all that it shows stay in the
    /// document, for `insert` to put it elsewhere: who means to get rid of them calls
    /// `removeObject`. Gives the reference to it. Fails as `flatten`, or with `OutOfRange`.
    Result<Ref<ObjectRef>> remove(std::uint64_t index) noexcept;

    /// Makes what the page at `index` draws one form XObject (ISO 32000-1, 8.10), which draws it
    /// anywhere, and the page one that draws just that, under `name`: it looks as before. The tree
    /// is not flattened. The form has the resources that hold for the page, the page's visible box
    /// as its BBox (the crop box within the media box, US letter where there is none; in whole
    /// points around it, so that clipping leaves no soft edge), its turn as its Matrix, so that it
    /// is upright, and its Group. Contents of one stream become the form as they are stored,
    /// whatever their filter; several are decoded and joined, so that they must be plain or stored
    /// by FlateDecode alone (the import makes them so with `plainFilters`).
    ///
    /// The page keeps its boxes, Rotate, Group and annotations. Marked content in it (14.7) is no
    /// longer found by the structure tree of a tagged document.
    ///
    /// Gives the reference to the form. Fails as `of`, or with `OutOfRange` (no such page; several
    /// streams hold more than 64 times what is stored, and 1 MiB), `InvalidArgument` (a name that
    /// is empty or holds other characters than ASCII's printable ones without `#%()/<>[]{}` and
    /// space), `PageInvalid` (Contents of a wrong kind, or a stream that is no object) or, for
    /// several streams, a code of `decodedBytes`.
    Result<Ref<ObjectRef>> isolate(std::uint64_t index, std::string_view name) noexcept;

private:
    Pages(Ref<Document> document, std::vector<Page> pages) noexcept;

    template <class Change>
    auto change(Change change) noexcept;

    Ref<Document> document_;
    std::vector<Page> pages_;
};

} // namespace Libraries::Files::PDF::Tools
