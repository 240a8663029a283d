#pragma once

#include "packed/packed_store.h"
#include "packed/packed_value.h"
#include "state/object_obj.h"

#include <pdf/values.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

/// The indirect objects of a document, in ascending order of their numbers, which is that of
/// loading and appending. Each number is there once.
///
/// An object that was loaded is a packed spelling until somebody asks for the object itself.
class ObjectTable {
public:
    /// What there is to know of an object without asking for it. As small as can be: there is one
    /// for each object of a file.
    class Slot {
    public:
        Slot(std::uint32_t id, std::uint16_t generation, const PackedValue& packed) noexcept
            : bytes_(packed.bytes),
              streamOffset_(packed.streamOffset),
              id_(id),
              generation_(generation),
              kind_(static_cast<std::uint8_t>(packed.kind)),
              spelled_(packed.spelled),
              unwritable_(packed.unwritable) {}
        explicit Slot(Ref<ObjectObj> object) noexcept
            : object_(std::move(object)), id_(object_->id()), generation_(object_->generation()) {}

        [[nodiscard]] std::uint32_t id() const noexcept { return id_; }
        [[nodiscard]] std::uint16_t generation() const noexcept { return generation_; }
        /// Whether the object's value is there, or it never was packed: then it is what counts.
        [[nodiscard]] bool touched() const noexcept { return object_ && object_->touched(); }
        /// Whether that is the very object.
        [[nodiscard]] bool is(const Object& object) const noexcept {
            return object_.get() == &object;
        }
        /// The value of an object that was touched; null for any other, and where it has none.
        [[nodiscard]] Ref<Value> touchedValue() const noexcept {
            return touched() ? object_->value() : nullptr;
        }
        /// Whether it is known, without a value, that the value is of another kind.
        [[nodiscard]] bool holdsOther(Value::Type kind) const noexcept {
            return !touched() && kind_ != static_cast<std::uint8_t>(kind);
        }
        /// Of an object that was not touched. The bytes are the table's.
        [[nodiscard]] PackedValue packed() const noexcept {
            return {bytes_, static_cast<Value::Type>(kind_), spelled_, unwritable_, streamOffset_};
        }

    private:
        friend class ObjectTable;

        std::string_view bytes_;
        std::uint64_t streamOffset_ = Stream::noOffset;
        mutable Ref<ObjectObj> object_;
        std::uint32_t id_;
        std::uint16_t generation_;
        std::uint8_t kind_ = 0;
        bool spelled_ : 1 = false;
        bool unwritable_ : 1 = false;
    };

    /// The value's bytes lie in the table's store. Ids ascend. Throws `std::bad_alloc`, as does
    /// what follows.
    void append(std::uint32_t id, std::uint16_t generation, const PackedValue& packed);
    void append(std::uint32_t id, std::uint16_t generation, Ref<Value> value);
    /// Has the object's value be of no document any more.
    void release(const Slot& slot) const noexcept {
        if (store_) unsettle(slot.touchedValue(), store_->home());
    }
    /// Puts another object in the place of one, under its number.
    void replace(const Slot& slot, const PackedValue& packed) noexcept;
    void reserve(std::size_t size) { slots_.reserve(size); }
    [[nodiscard]] const Ref<ObjectObj>& object(const Slot& slot) const;
    /// The object's value, which makes it a touched one; null where it has none.
    [[nodiscard]] Ref<Value> value(const Slot& slot) const;

    /// Erases every object that `unwanted` accepts, asked about each slot once and in order, and
    /// keeps the order of the rest.
    template <class Unwanted>
    void removeIf(Unwanted unwanted) noexcept {
        std::erase_if(slots_, unwanted);
    }
    /// Cuts the table off behind its first `size` objects.
    void truncate(std::size_t size) noexcept;

    /// Borrowed: valid until the table changes. Null where there is none.
    [[nodiscard]] const Slot* find(std::uint32_t id, std::uint16_t generation) const noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return slots_.size(); }
    [[nodiscard]] const std::vector<Slot>& slots() const noexcept { return slots_; }
    [[nodiscard]] const Ref<PackedStore>& store() const;
    /// Whether values of its objects have this home.
    [[nodiscard]] bool has(HomeNumber home) const noexcept {
        return store_ && store_->home() == home;
    }

private:
    std::vector<Slot> slots_;
    mutable Ref<PackedStore> store_;
};

} // namespace Libraries::Files::PDF
