#pragma once

#include "values/home.h"
#include "values/kind.h"

#include <host/heap.h>
#include <pdf/values.h>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

class DictionaryObj final : public ValueObj<Dictionary, Value::Type::Dictionary> {
public:
    struct Entry {
        Ref<Host::String> key;
        Ref<Value> value;
    };

    using Entries = std::vector<Entry, Host::HeapAllocator<Entry>>;

    DictionaryObj() noexcept = default;
    /// Takes entries in any order; of equal keys the last one counts. Not modified.
    explicit DictionaryObj(Entries entries);
    /// Takes entries in ascending order of their keys, which differ. Not modified.
    struct InOrder {};
    static constexpr InOrder inOrder{};
    DictionaryObj(Entries entries, InOrder) noexcept : entries_(std::move(entries)) {}

    [[nodiscard]] Ref<Host::TVector<Ref<Host::String>>> keys() const noexcept override;
    [[nodiscard]] Ref<Value> find(const Ref<Host::String>& key) const noexcept override;
    bool set(Ref<Host::String> key, Ref<Value> value) noexcept override;
    [[nodiscard]] Ref<Host::String> asText() const noexcept override;
    [[nodiscard]] bool equal(Ref<Value> other) const noexcept override;
    [[nodiscard]] bool changed() const noexcept override;

    /// The entries in ascending order of their keys; valid until the next `set`.
    [[nodiscard]] std::span<const Entry> entries() const noexcept { return entries_; }
    /// Takes the mark of a change away, for an operation that has undone it.
    void resetModified() noexcept { modified_ = false; }
    [[nodiscard]] bool modified() const noexcept { return modified_; }

    HomeNumber home; // first, with the flag, since there is unused room beside the count

private:
    [[nodiscard]] std::size_t lowerBound(const Host::String& key) const noexcept;
    [[nodiscard]] bool holds(std::size_t place, const Host::String& key) const noexcept;

    bool modified_ = false;
    Entries entries_;
};

template <>
struct Kind<Dictionary> : KindOf<DictionaryObj, Value::Type::Dictionary> {};

} // namespace Libraries::Files::PDF
