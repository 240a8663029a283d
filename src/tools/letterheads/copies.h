#pragma once

#include "tools/budget.h"
#include "tools/changes.h"

#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF::Tools {

/// Copies objects of one document into another, each once, with all that they refer to: rings too.
/// What leads nowhere becomes null, and so does what leads into the page tree, at which everything
/// hangs. Direct values that several share are copied for each, within a budget: 64 times what was
/// read and 1 MiB.
class Copies {
public:
    /// `changes` are of the document that gets the copies.
    Copies(Document& from, Changes& changes) noexcept : from_(from), changes_(changes) {}

    /// The reference to the copy; null for what leads nowhere.
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
    [[nodiscard]] Ref<Value> begunStream(const Ref<Value>& value);
    [[nodiscard]] Ref<Value> begunInner(const Ref<Value>& stream);
    void fill(const Pending& pending);
    void fillArray(const Ref<Array>& source, Array& copy, unsigned depth);
    void fillDictionary(const Ref<Dictionary>& source, Dictionary& copy, unsigned depth);
    [[nodiscard]] bool isOfPageTree(const Ref<Value>& value) const;
    /// Takes so much of a container, about what it takes in a file, off the budget.
    void afford(const Ref<Value>& container, std::uint64_t bytes);

    Document& from_;
    Changes& changes_;
    std::unordered_map<std::uint32_t, Ref<ObjectRef>> copied_; ///< by their former numbers
    std::vector<Pending> pending_;
    std::unordered_map<const Value*, Ref<Value>> read_; ///< kept, so that their places are theirs
    Budget budget_;
};

} // namespace Libraries::Files::PDF::Tools
