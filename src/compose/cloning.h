#pragma once

#include "compose/copied_data.h"
#include "compose/copy_budget.h"
#include "state/own_document.h"

#include <pdf/document.h>
#include <pdf/values.h>

#include <cstddef>
#include <cstdint>

namespace Libraries::Files::PDF {

/// Copies values of other documents into a document, for one operation of that document.
///
/// References are followed, each as often as it is met: what is referred to becomes an object of
/// its own each time. No record is kept of what was seen, so three bounds end what would have no
/// end: 512 levels of containers and references, `addedLimit` objects for each value copied, and
/// the budget of the operation.
/// Stream data is copied as it is stored; all copies of one stream share its bytes.
///
/// A copy that fails, be it for lack of memory, takes its objects out of the table again. Their
/// numbers are not given back, and `modified` stays set.
class Cloner {
public:
    /// Objects that copying one value may add.
    static constexpr std::size_t addedLimit = 1'048'576;

    /// Copies into `target`.
    explicit Cloner(OwnDocument& target) noexcept : self_(target), target_(target.state()) {}

    /// What all copies from now on may take.
    void budget(const CopyBudget& budget) noexcept { budget_ = budget; }

    /// A copy of `value`, which belongs to `source`. References of the document itself are kept.
    [[nodiscard]] Ref<Value> cloneValue(const Ref<Value>& value, const Ref<Document>& source);
    /// A reference to a new object that holds a copy of `value`, which belongs to `source`.
    [[nodiscard]] Ref<ObjectRef> addClonedObject(const Ref<Value>& value,
                                                 const Ref<Document>& source);

private:
    template <class Copy>
    auto undoneOnFailure(Copy copy);

    Ref<Value> clone(const Ref<Value>& value, Document& source);
    /// Whether so many bytes of `source` may be copied; those of the document itself always.
    [[nodiscard]] bool afford(std::uint64_t bytes, const Document& source) noexcept;
    Ref<Value> cloneName(const Name& name, const Document& source);
    Ref<Value> cloneString(const String& string, const Document& source);
    Ref<ObjectRef> add(const Ref<Value>& value, Document& source);
    Ref<Value> cloneReference(const Ref<ObjectRef>& ref, Document& source);
    Ref<Value> cloneDictionary(const Dictionary& dict, Document& source);
    bool cloneEntry(const Dictionary& dict, const Ref<Host::String>& key, Dictionary& result,
                    Document& source);
    Ref<Value> cloneArray(const Array& array, Document& source);
    Ref<Value> cloneStream(const Ref<Stream>& stream, Document& source);
    Ref<SharedBytes> dataOf(const Ref<Stream>& stream, Document& source);

    const Document& self_;
    DocumentState& target_;
    StreamBytes streamBytes_;
    CopyBudget budget_;
    unsigned depth_ = 0;
    /// Length of the object table when the copying of the current value began.
    std::size_t start_ = 0;
};

} // namespace Libraries::Files::PDF
