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
/// It follows a reference as often as it meets it, and makes a new object of the target each time.
/// It keeps no record of references, so three bounds end rings and heavily shared values: 512
/// levels of containers and references, `addedLimit` objects for each value copied, and the budget
/// of the operation. It copies stream data as it is stored; all copies of one stream share its
/// bytes.
///
/// A copy that fails, also for lack of memory, takes its objects out of the table again. Their
/// numbers are not used again, and `modified` stays set.
class Cloner {
public:
    /// The most objects that copying one value may add.
    static constexpr std::size_t addedLimit = 1'048'576;

    /// Copies into `target`.
    explicit Cloner(OwnDocument& target) noexcept : self_(target), target_(target.state()) {}

    /// Sets the budget of all copies from now on.
    void budget(const CopyBudget& budget) noexcept { budget_ = budget; }

    /// A copy of `value`, which belongs to `source`. If that is the target itself references stay.
    [[nodiscard]] Ref<Value> cloneValue(const Ref<Value>& value, const Ref<Document>& source);
    /// A reference to a new object that holds a copy of `value`, which belongs to `source`.
    [[nodiscard]] Ref<ObjectRef> addClonedObject(const Ref<Value>& value,
                                                 const Ref<Document>& source);

private:
    template <class Copy>
    auto undoneOnFailure(Copy copy);

    Ref<Value> clone(const Ref<Value>& value, Document& source);
    /// Takes this number of bytes of `source` from the budget; bytes of the target are free. False,
    /// logged, if the budget has fewer left.
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
    /// The size of the object table when copying the current value began.
    std::size_t start_ = 0;
};

} // namespace Libraries::Files::PDF
