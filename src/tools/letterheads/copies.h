#pragma once

#include "tools/changes.h"

#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Copies objects of one document into another, each once, with all that they refer to: rings too.
/// What leads nowhere becomes null, and so does what leads into the page tree, at which everything
/// hangs. Throws `std::bad_alloc`.
class Copies {
public:
    /// `changes` are of the document that gets the copies.
    Copies(Document& from, Changes& changes) noexcept : from_(from), changes_(changes) {}

    /// The reference to the copy. Null with the code set.
    [[nodiscard]] Ref<ObjectRef> of(const Ref<ObjectRef>& ref);

private:
    /// A container whose elements are still to be copied, so deep within its object.
    struct Pending {
        Ref<Value> source;
        Ref<Value> copy;
        unsigned depth;
    };

    [[nodiscard]] Ref<Value> begun(const Ref<Value>& value, unsigned depth);
    [[nodiscard]] Ref<Value> begunObject(const Ref<Value>& ref);
    [[nodiscard]] Ref<Value> begunStream(const Ref<Value>& value, unsigned depth);
    [[nodiscard]] bool fill(const Pending& pending);
    [[nodiscard]] bool fillDictionary(const Dictionary& source, Dictionary& copy, unsigned depth);
    [[nodiscard]] bool isOfPageTree(const Ref<Value>& value) const;

    Document& from_;
    Changes& changes_;
    std::unordered_map<std::uint32_t, Ref<ObjectRef>> copied_; ///< by their former numbers
    std::vector<Pending> pending_;
};

} // namespace Libraries::Files::PDF::Tools
